// SPDX-License-Identifier: MIT
#pragma once

#include <string>
#include <vector>

namespace vantorel {

/// The texts as the system takes a program's arguments and environment; `texts` outlives the
/// result.
[[nodiscard]] inline std::vector<char*> argumentPointers(std::vector<std::string>& texts) {
  std::vector<char*> result;
  result.reserve(texts.size() + 1);
  for (auto& text : texts) result.push_back(text.data());
  result.push_back(nullptr);
  return result;
}

}  // namespace vantorel
