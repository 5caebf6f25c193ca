// SPDX-License-Identifier: MIT
#pragma once

#include <cstdint>

namespace vantorel {

/// A key by its place on the keyboard, whatever the layout prints on it. The numbers are those of
/// the one desktop whose names the core speaks, and stored settings hold them; an adapter
/// translates them at its edge.
using KeyCode = std::uint32_t;

namespace keys {
inline constexpr KeyCode v = 9;
inline constexpr KeyCode returnKey = 36;
inline constexpr KeyCode space = 49;
inline constexpr KeyCode deleteKey = 51;  // backspace
inline constexpr KeyCode escape = 53;
inline constexpr KeyCode rightCommand = 54;
inline constexpr KeyCode command = 55;  // Super stands in this place
inline constexpr KeyCode shift = 56;
inline constexpr KeyCode capsLock = 57;
inline constexpr KeyCode option = 58;  // Alt
inline constexpr KeyCode control = 59;
inline constexpr KeyCode rightShift = 60;
inline constexpr KeyCode rightOption = 61;
inline constexpr KeyCode rightControl = 62;
inline constexpr KeyCode keypadEnter = 76;
inline constexpr KeyCode f10 = 109;
inline constexpr KeyCode menu = 110;
inline constexpr KeyCode home = 115;
inline constexpr KeyCode pageUp = 116;
inline constexpr KeyCode forwardDelete = 117;
inline constexpr KeyCode end = 119;
inline constexpr KeyCode pageDown = 121;
inline constexpr KeyCode downArrow = 125;
inline constexpr KeyCode upArrow = 126;
}  // namespace keys

/// Modifiers of a key event, one bit each.
using EventFlags = std::uint64_t;

namespace flags {
inline constexpr EventFlags capsLock = 1ULL << 16;
inline constexpr EventFlags shift = 1ULL << 17;
inline constexpr EventFlags control = 1ULL << 18;
inline constexpr EventFlags option = 1ULL << 19;
inline constexpr EventFlags command = 1ULL << 20;
}  // namespace flags

/// Modifiers of a registered hot key: other bits than an event's, and those that settings hold.
using HotKeyModifiers = std::uint32_t;

namespace hotkeys {
inline constexpr HotKeyModifiers command = 0x100;
inline constexpr HotKeyModifiers shift = 0x200;
inline constexpr HotKeyModifiers option = 0x800;
inline constexpr HotKeyModifiers control = 0x1000;
}  // namespace hotkeys

}  // namespace vantorel
