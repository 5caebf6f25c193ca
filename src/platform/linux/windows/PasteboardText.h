// SPDX-License-Identifier: MIT
#pragma once

#include <optional>
#include <string>
#include <string_view>

#include "base/Bytes.h"

namespace vantorel {

/// How the bytes of an offered text are to be read. `unmarked` is UTF-8 where that fits, else
/// Latin-1: programs label UTF-8 as plain strings.
enum class TextEncoding { utf8, unmarked };

/// The offered text as valid UTF-8, without the NULs that some programs leave at its end. Pure.
[[nodiscard]] std::string decodedText(ByteView bytes, TextEncoding encoding);

/// The text that was answered when `target` was asked for and that the owner labelled with `type`,
/// as valid UTF-8. The label rules where it names one of X11's own text types; else the charset
/// that the target states. Absent when nobody knows that charset. Pure.
[[nodiscard]] std::optional<std::string> decodedAnswer(ByteView bytes, std::string_view target,
                                                       std::string_view type);

/// Latin-1 for programs that read nothing else; '?' for each character it lacks. Takes valid UTF-8.
/// Pure.
[[nodiscard]] std::string latin1(std::string_view utf8);

}  // namespace vantorel
