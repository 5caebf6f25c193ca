#include "platform/linux/windows/UriList.h"

#include <algorithm>

namespace vantorel {

namespace {

constexpr std::string_view scheme = "file:";

char lowered(char c) { return c >= 'A' && c <= 'Z' ? static_cast<char>(c - 'A' + 'a') : c; }

bool startsWithIgnoringCase(std::string_view text, std::string_view prefix) {
  return text.size() >= prefix.size() &&
         std::equal(prefix.begin(), prefix.end(), text.begin(),
                    [](char a, char b) { return lowered(a) == lowered(b); });
}

int hexValue(char c) {
  if (c >= '0' && c <= '9') return c - '0';
  const char letter = lowered(c);
  return letter >= 'a' && letter <= 'f' ? letter - 'a' + 10 : -1;
}

std::optional<std::string> percentDecoded(std::string_view text) {
  std::string decoded;
  decoded.reserve(text.size());
  for (std::size_t i = 0; i < text.size(); ++i) {
    const bool escape = text[i] == '%' && i + 2 < text.size() && hexValue(text[i + 1]) >= 0 &&
                        hexValue(text[i + 2]) >= 0;
    if (!escape) {
      if (text[i] == '\0') return std::nullopt;
      decoded += text[i];
      continue;
    }
    const auto value = static_cast<char>(hexValue(text[i + 1]) * 16 + hexValue(text[i + 2]));
    if (value == '\0' || value == '/') return std::nullopt;
    decoded += value;
    i += 2;
  }
  return decoded;
}

bool isUnreserved(char c) {
  return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z') || (c >= '0' && c <= '9') || c == '-' ||
         c == '.' || c == '_' || c == '~';
}

/// Cuts the first line off `rest`.
std::string_view nextLine(std::string_view& rest) {
  const auto end = rest.find_first_of("\r\n");
  const auto line = rest.substr(0, end);
  rest.remove_prefix(end == std::string_view::npos ? rest.size() : end + 1);
  return line;
}

std::string_view withoutBlanksAround(std::string_view line) {
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
  auto decoded = percentDecoded(uri);
  if (!decoded) return std::nullopt;
  while (decoded->size() > 1 && decoded->back() == '/') decoded->pop_back();
  return std::filesystem::path(std::move(*decoded));
}

std::string fileUri(const std::filesystem::path& path) {
  constexpr std::string_view digits = "0123456789ABCDEF";
  std::string uri = "file://";
  for (const char c : path.native()) {
    if (isUnreserved(c) || c == '/') {
      uri += c;
      continue;
    }
    const auto value = static_cast<unsigned char>(c);
    uri += '%';
    uri += digits[value >> 4U];
    uri += digits[value & 15U];
  }
  return uri;
}

std::vector<std::filesystem::path> filesFromUriList(std::string_view text) {
  std::vector<std::filesystem::path> files;
  while (!text.empty()) {
    const auto line = withoutBlanksAround(nextLine(text));
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
