// SPDX-License-Identifier: MIT
#include "platform/linux/windows/UriList.h"

#include <algorithm>
#include <utility>

#include "base/Ascii.h"
#include "base/PercentCoding.h"

namespace vantorel {

namespace {

constexpr std::string_view scheme = "file:";

/// Absent for what no path holds: a NUL, or a slash that is written as an escape.
std::optional<std::string> decodedPath(std::string_view text) {
  auto path = percentDecoded(text);
  const bool isPath =
      path.find('\0') == std::string::npos &&
      std::count(path.begin(), path.end(), '/') == std::count(text.begin(), text.end(), '/');
  return isPath ? std::optional(std::move(path)) : std::nullopt;
}

/// Cuts the first line off `rest`.
std::string_view nextLine(std::string_view& rest) {
  const auto end = rest.find_first_of("\r\n");
  const auto line = rest.substr(0, end);
  rest.remove_prefix(end == std::string_view::npos ? rest.size() : end + 1);
  return line;
}

/// Some programs end the whole list with a NUL.
std::string_view stripped(std::string_view line) {
  constexpr std::string_view blanks(" \t\0", 3);
  const auto first = line.find_first_not_of(blanks);
  if (first == std::string_view::npos) return {};
  return line.substr(first, line.find_last_not_of(blanks) - first + 1);
}

}  // namespace

std::optional<std::filesystem::path> localFile(std::string_view uri) {
  if (!startsWithIgnoringCase(uri, scheme)) return std::nullopt;
  uri.remove_prefix(scheme.size());
  if (uri.substr(0, 2) == "//") {
    uri.remove_prefix(2);
    const auto slash = uri.find('/');
    if (slash == std::string_view::npos) return std::nullopt;
    const auto host = uri.substr(0, slash);
    constexpr std::string_view thisHost = "localhost";
    if (!host.empty() &&
        !(host.size() == thisHost.size() && startsWithIgnoringCase(host, thisHost)))
      return std::nullopt;
    uri.remove_prefix(slash);
  }
  if (uri.empty() || uri.front() != '/') return std::nullopt;
  auto decoded = decodedPath(uri);
  if (!decoded) return std::nullopt;
  while (decoded->size() > 1 && decoded->back() == '/') decoded->pop_back();
  return std::filesystem::path(std::move(*decoded));
}

std::string fileUri(const std::filesystem::path& path) {
  return "file://" + percentEncoded(path.native(), "-._~/");
}

std::vector<std::filesystem::path> filesFromUriList(std::string_view text) {
  std::vector<std::filesystem::path> files;
  while (!text.empty()) {
    const auto line = stripped(nextLine(text));
    if (line.empty() || line.front() == '#') continue;
    if (auto file = localFile(line)) files.push_back(std::move(*file));
  }
  return files;
}

std::vector<std::filesystem::path> filesFromCopiedFiles(std::string_view text) {
  // "copy" and "cut" are no URIs, so the list's own rules pass over them.
  return filesFromUriList(text);
}

std::vector<std::filesystem::path> filesFromPlainText(std::string_view text) {
  constexpr std::string_view title = "x-special/nautilus-clipboard";
  if (text.substr(0, title.size()) != title || nextLine(text) != title) return {};
  const auto action = nextLine(text);
  if (action != "copy" && action != "cut") return {};
  return filesFromUriList(text);
}

std::string uriListOf(const std::vector<std::filesystem::path>& paths) {
  std::string list;
  for (const auto& path : paths) list += fileUri(path) + "\r\n";
  return list;
}

std::string copiedFilesOf(const std::vector<std::filesystem::path>& paths) {
  std::string list = "copy";
  for (const auto& path : paths) {
    list += '\n';
    list += fileUri(path);
  }
  return list;
}

}  // namespace vantorel
