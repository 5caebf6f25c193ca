// SPDX-License-Identifier: MIT
#pragma once

#include <filesystem>

namespace vantorel {

/// A new, empty directory that nobody else may look into; it goes with this object, with all in it.
class PrivateDirectory {
 public:
  /// Below `place`. Its path is empty when it could not be made.
  explicit PrivateDirectory(const std::filesystem::path& place);
  ~PrivateDirectory();
  PrivateDirectory(const PrivateDirectory&) = delete;
  PrivateDirectory& operator=(const PrivateDirectory&) = delete;

  [[nodiscard]] const std::filesystem::path& path() const { return path_; }

 private:
  std::filesystem::path path_;
};

}  // namespace vantorel
