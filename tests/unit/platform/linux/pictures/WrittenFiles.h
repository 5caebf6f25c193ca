// SPDX-License-Identifier: MIT
#pragma once

#include <chrono>
#include <filesystem>
#include <fstream>
#include <string>

#include "fakes/TemporaryDirectory.h"
#include "platform/posix/PosixFileSystem.h"

namespace vantorel {

/// Files that a test lays out on the disk.
class WrittenFiles {
 public:
  [[nodiscard]] const std::filesystem::path& root() const { return directory_.path(); }
  [[nodiscard]] std::filesystem::path operator/(const std::string& path) const {
    return root() / path;
  }

  std::filesystem::path write(const std::string& path, const std::string& text = {}) {
    const auto file = root() / path;
    std::filesystem::create_directories(file.parent_path());
    std::ofstream(file, std::ios::binary) << text;
    return file;
  }

  /// Sets a time apart from every earlier one, however coarse the clock is.
  void touch(const std::string& path) {
    time_ += std::chrono::seconds(10);
    std::filesystem::last_write_time(root() / path, time_);
  }

  PosixFileSystem system;

 private:
  TemporaryDirectory directory_;
  std::filesystem::file_time_type time_ = std::filesystem::file_time_type::clock::now();
};

}  // namespace vantorel
