// SPDX-License-Identifier: MIT
#pragma once

#include <filesystem>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace vantorel {

// File lists as programs exchange them: "text/uri-list", and "x-special/gnome-copied-files", which
// says "copy" or "cut" before the same URIs. Pure, any thread.

/// The local file that a `file:` URI names, percent-decoded, without a slash at its end. A '%' that
/// begins no escape stands for itself. Absent for another scheme, another host than this one
/// (empty or "localhost"), a relative path, and an escaped slash or NUL, which no file name has.
[[nodiscard]] std::optional<std::filesystem::path> localFile(std::string_view uri);

/// The absolute path as a `file:` URI, byte for byte.
[[nodiscard]] std::string fileUri(const std::filesystem::path& path);

/// The local files in a "text/uri-list", in order. Lines may end in CR LF, LF or CR; comments,
/// empty lines and what names no local file are skipped.
[[nodiscard]] std::vector<std::filesystem::path> filesFromUriList(std::string_view text);

/// The local files in "x-special/gnome-copied-files" and its like of MATE, whichever of copy and
/// cut it says.
[[nodiscard]] std::vector<std::filesystem::path> filesFromCopiedFiles(std::string_view text);

/// The local files in the plain text that some file managers put on the clipboard in the place of a
/// list: its first line says what it is, the next one "copy" or "cut". Empty for any other text.
[[nodiscard]] std::vector<std::filesystem::path> filesFromPlainText(std::string_view text);

/// Each line ends in CR LF.
[[nodiscard]] std::string uriListOf(const std::vector<std::filesystem::path>& paths);

/// "copy" and one URI on each further line.
[[nodiscard]] std::string copiedFilesOf(const std::vector<std::filesystem::path>& paths);

}  // namespace vantorel
