// SPDX-License-Identifier: MIT
#pragma once

#include <string_view>
#include <system_error>

namespace vantorel::standardStreams {

/// Where the caller has closed one of the three, a file that is opened next would take its number,
/// and what is printed would go there. Puts the null device in such a place; to be called first.
/// False when it was the output, which is then nowhere.
[[nodiscard]] bool occupy();

/// Writes all of it to the standard output, bypassing buffers that nobody wipes.
[[nodiscard]] std::error_code write(std::string_view bytes);

/// One line about what went wrong, for a person.
void complain(std::string_view sentence);

}  // namespace vantorel::standardStreams
