// SPDX-License-Identifier: MIT
#pragma once

#include <filesystem>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace vantorel {

/// What one installed ".thumbnailer" says: a program that makes pictures of files of some types.
struct ThumbnailerEntry {
  std::vector<std::string> command;  // with field codes: %i path, %u URI, %o output, %s size
  std::string tryExec;               // a program without which the entry does not count; or empty
  std::vector<std::string> types;
};

/// Absent when it is none, or when its command does not take a file or does not say where the
/// picture goes.
[[nodiscard]] std::optional<ThumbnailerEntry> parseThumbnailer(std::string_view text);

struct ThumbnailerTask {
  std::filesystem::path file;
  std::string uri;
  std::filesystem::path output;
  int side = 0;  // pixels
};

/// The command's words with their field codes filled in; no shell will see them. Unknown codes
/// stand for nothing.
[[nodiscard]] std::vector<std::string> thumbnailerCommand(const ThumbnailerEntry& entry,
                                                          const ThumbnailerTask& task);

}  // namespace vantorel
