// SPDX-License-Identifier: MIT
#pragma once

#include <optional>
#include <string>
#include <string_view>

#include "base/Bytes.h"

namespace vantorel {

/// What the conversion library calls the text encoding of old X11 programs.
inline constexpr const char* compoundTextCharset = "x11-compound-text";

/// `bytes` in the named charset as valid UTF-8, U+FFFD for what it has no meaning for. Absent for a
/// charset that nobody knows. Pure.
[[nodiscard]] std::optional<std::string> utf8FromCharset(ByteView bytes,
                                                         const std::string& charset);

/// `utf8`, which is valid, as compound text. Absent when that lacks one of the characters, and
/// for more than 4 MiB. Takes milliseconds. Pure.
[[nodiscard]] std::optional<std::string> compoundText(std::string_view utf8);

}  // namespace vantorel
