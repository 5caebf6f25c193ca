// SPDX-License-Identifier: MIT
#include "platform/linux/applications/ExecWords.h"

#include <cstddef>
#include <utility>

namespace vantorel {

std::vector<std::string> execWords(std::string_view command) {
  std::vector<std::string> result;
  std::string word;
  bool quoted = false;
  bool begun = false;
  for (std::size_t i = 0; i < command.size(); ++i) {
    const char character = command[i];
    if (character == '\\' && i + 1 < command.size()) {
      word += command[++i];
      begun = true;
    } else if (character == '"') {
      quoted = !quoted;
      begun = true;
    } else if (!quoted && (character == ' ' || character == '\t')) {
      if (begun) result.push_back(std::exchange(word, {}));
      begun = false;
    } else {
      word += character;
      begun = true;
    }
  }
  if (begun) result.push_back(std::move(word));
  return result;
}

}  // namespace vantorel
