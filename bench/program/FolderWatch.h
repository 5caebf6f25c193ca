// SPDX-License-Identifier: MIT
#pragma once

#include <optional>
#include <string>

#include "program/Timing.h"

namespace vantorel::bench {

/// Notes when a file is begun in a folder and when the history takes its final name there.
class FolderWatch {
 public:
  /// Watches `folder` for the file `name`; throws std::runtime_error when it cannot.
  FolderWatch(const std::string& folder, std::string name);
  ~FolderWatch();
  FolderWatch(const FolderWatch&) = delete;
  FolderWatch& operator=(const FolderWatch&) = delete;

  [[nodiscard]] int descriptor() const { return descriptor_; }
  void reset();
  /// Reads what has happened since.
  void read();

  [[nodiscard]] std::optional<Clock::time_point> begun() const { return begun_; }
  [[nodiscard]] std::optional<Clock::time_point> finished() const { return finished_; }

 private:
  std::string name_;
  int descriptor_;
  std::optional<Clock::time_point> begun_;
  std::optional<Clock::time_point> finished_;
};

}  // namespace vantorel::bench
