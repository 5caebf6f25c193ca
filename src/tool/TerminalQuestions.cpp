// SPDX-License-Identifier: MIT
#include "tool/TerminalQuestions.h"

#include <unistd.h>

#include <cstdio>
#include <iostream>

namespace vantorel {

Ask terminalQuestions() {
  if (::isatty(STDIN_FILENO) == 0 || ::isatty(STDERR_FILENO) == 0) return {};
  return [](const std::string& question) -> std::optional<std::string> {
    std::fputs(question.c_str(), stderr);
    std::string line;
    if (!std::getline(std::cin, line)) return std::nullopt;
    return line;
  };
}

}  // namespace vantorel
