// SPDX-License-Identifier: MIT
#pragma once

#include <optional>

#include "platform/KeyCodes.h"

namespace vantorel {

/// What a US keyboard prints, unshifted, at the place of `keyCode`; absent for a key without a
/// character.
[[nodiscard]] std::optional<char> latinCharacter(KeyCode keyCode);

/// The place in the main block of keys where a US keyboard has that character.
[[nodiscard]] std::optional<KeyCode> keyCodeOfLatin(char character);

}  // namespace vantorel
