// SPDX-License-Identifier: MIT
#include "platform/MenuRow.h"

#include <algorithm>
#include <cstddef>
#include <utility>

#include "text/Unicode.h"

namespace vantorel {
namespace {

constexpr std::size_t longestTitle = 80;  // characters
constexpr std::string_view ellipsis = "…";

bool breaksTheLine(char character) {
  return static_cast<unsigned char>(character) < 0x20 || character == 0x7f;
}

}  // namespace

std::string shownMenuTitle(std::string_view title) {
  auto shown = std::string(prefixOfCharacters(title, longestTitle));
  if (shown.size() < title.size()) {
    shown = std::string(prefixOfCharacters(title, longestTitle - 1)).append(ellipsis);
  }
  std::replace_if(shown.begin(), shown.end(), breaksTheLine, ' ');
  return validUtf8(std::move(shown));
}

}  // namespace vantorel
