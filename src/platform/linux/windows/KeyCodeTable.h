// SPDX-License-Identifier: MIT
#pragma once

#include <cstdint>
#include <optional>

#include "platform/KeyCodes.h"

namespace vantorel {

/// A key of the X keyboard by its place: the kernel's key number plus 8.
using X11KeyCode = std::uint8_t;
constexpr std::uint32_t x11KeyOffset = 8;

/// The X keycode at the same physical place as `keyCode` on a full-size keyboard; absent for a
/// number that is no key or a key that X cannot name. One to one with `keyCodeFromX11`. Where the
/// two worlds print different things at one place (Command and Super, Help and Insert, Clear and
/// NumLock) the place counts.
[[nodiscard]] std::optional<X11KeyCode> x11KeyCode(KeyCode keyCode);

/// Whether that key is one of those that are held while others are pressed.
[[nodiscard]] bool isModifierKey(KeyCode keyCode);

/// The other way; absent for X keycodes that have no number here.
[[nodiscard]] std::optional<KeyCode> keyCodeFromX11(std::uint32_t x11KeyCode);

}  // namespace vantorel
