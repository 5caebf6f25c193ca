// SPDX-License-Identifier: MIT
#include "base/SplitText.h"

namespace vantorel {

std::string_view takePart(std::string_view& rest, char separator) {
  const auto end = rest.find(separator);
  const auto part = rest.substr(0, end);
  rest.remove_prefix(end == std::string_view::npos ? rest.size() : end + 1);
  return part;
}

std::vector<std::string> splitList(std::string_view list, char separator) {
  std::vector<std::string> parts;
  while (!list.empty()) {
    if (const auto part = takePart(list, separator); !part.empty()) parts.emplace_back(part);
  }
  return parts;
}

std::vector<std::string> linesOf(std::string_view text) {
  std::vector<std::string> lines;
  while (!text.empty()) lines.emplace_back(takePart(text, '\n'));
  return lines;
}

std::string_view withoutBlanksAround(std::string_view text) {
  constexpr std::string_view blanks = " \t\r";
  const auto first = text.find_first_not_of(blanks);
  if (first == std::string_view::npos) return {};
  return text.substr(first, text.find_last_not_of(blanks) - first + 1);
}

}  // namespace vantorel
