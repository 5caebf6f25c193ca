// SPDX-License-Identifier: MIT
#pragma once

#include <filesystem>

namespace vantorel {

/// Whether the operating system can be told that path as it is. It reads a path up to the first
/// NUL byte, so one with such a byte would name another file. Any thread.
[[nodiscard]] inline bool isNameable(const std::filesystem::path& path) {
  return path.native().find('\0') == std::filesystem::path::string_type::npos;
}

}  // namespace vantorel
