// SPDX-License-Identifier: MIT
#pragma once

#include <initializer_list>
#include <string>
#include <utility>
#include <vector>

#include "base/Shared.h"

namespace vantorel {

/// An immutable list of paths that is cheap to copy, as a text is: somebody may copy a folder's
/// hundred thousand files.
class FilePaths {
 public:
  using List = std::vector<std::string>;
  using value_type = List::value_type;
  using const_iterator = List::const_iterator;
  using iterator = const_iterator;

  FilePaths() : FilePaths(List()) {}
  FilePaths(List paths) : paths_(std::move(paths)) {}  // NOLINT: a list is a list
  FilePaths(std::initializer_list<std::string> paths) : FilePaths(List(paths)) {}

  [[nodiscard]] const_iterator begin() const { return paths_->begin(); }
  [[nodiscard]] const_iterator end() const { return paths_->end(); }
  [[nodiscard]] std::size_t size() const { return paths_->size(); }
  [[nodiscard]] bool empty() const { return paths_->empty(); }
  [[nodiscard]] const std::string& front() const { return paths_->front(); }
  const std::string& operator[](std::size_t index) const { return (*paths_)[index]; }

  friend bool operator==(const FilePaths&, const FilePaths&) = default;

 private:
  Shared<List> paths_;
};

}  // namespace vantorel
