// SPDX-License-Identifier: MIT
#pragma once

#include <map>
#include <string>
#include <string_view>
#include <vector>

namespace vantorel {

/// Values by key, as they stand in the file: valid UTF-8, stripped of white space around them,
/// escapes and quotes not yet read. The first of a repeated key counts.
using KeyGroup = std::map<std::string, std::string, std::less<>>;

/// Groups by name; a group that comes twice is one.
using KeyFile = std::map<std::string, KeyGroup, std::less<>>;

// The files of desktops: "[Group]" lines, each followed by "key=value" lines. Comments, lines that
// make no sense and values that are not UTF-8 are passed over: a library's parser refuses a whole
// file for one bad line, and installed files have such lines. Pure, any thread.

[[nodiscard]] KeyFile parseKeyFile(std::string_view text);

/// The group of that name alone, up to where it ends for the first time.
[[nodiscard]] KeyGroup parseKeyGroup(std::string_view text, std::string_view group);

/// Empty when there is no such key.
[[nodiscard]] std::string_view valueOf(const KeyGroup& keys, std::string_view key);

/// The parts between separators without the blanks around them; empty ones are left out.
[[nodiscard]] std::vector<std::string> listOf(std::string_view value, char separator);

}  // namespace vantorel
