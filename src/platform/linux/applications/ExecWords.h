// SPDX-License-Identifier: MIT
#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace vantorel {

/// The words of a command line as desktop files write it: double quotes keep spaces, a backslash
/// keeps the next character. There is no shell in it.
[[nodiscard]] std::vector<std::string> execWords(std::string_view command);

}  // namespace vantorel
