// SPDX-License-Identifier: MIT
#pragma once

#include <bitset>
#include <cstddef>
#include <cstdint>
#include <optional>
#include <vector>

#include "platform/linux/x11/KeyboardMap.h"
#include "platform/linux/x11/X11Connection.h"

namespace vantorel {

using PressedKeys = std::bitset<256>;  // by keycode

/// Keys that are down, each seen from another side.
struct KeyPresses {
  PressedKeys seen;       // as programs see them
  PressedKeys physical;   // held on real keyboards, whatever programs were made to see
  PressedKeys synthetic;  // held by synthetic input
};

/// What stays on after its key was released.
struct StickyModifiers {
  X11Modifiers latched = 0;
  X11Modifiers locked = 0;
};

struct KeyboardState {
  std::size_t group = 0;  // the active layout
  StickyModifiers sticky;
};

/// The server's keyboard through one connection. Every call waits for the server alone.
class X11Keyboard {
 public:
  /// `connection` outlives this.
  explicit X11Keyboard(X11Connection& connection);

  /// False when the server lacks the keyboard extension; nothing below works then.
  [[nodiscard]] bool isAvailable() const { return deviceId_ >= 0; }

  /// Absent when the server does not tell.
  [[nodiscard]] std::optional<KeyboardMap> readMap() const;
  [[nodiscard]] std::optional<KeyboardState> readState() const;

  [[nodiscard]] KeyPresses presses() const;

  /// Lets go what is latched, and these locked modifiers.
  void clearSticky(X11Modifiers locked) const;
  void lock(X11Modifiers locked) const;

  /// Tells this connection of new keyboards and layouts from now on.
  void watchMap() const;
  /// Whether `event` says that keyboards, keys or modifiers may have changed.
  [[nodiscard]] bool isMapChange(const xcb_generic_event_t& event) const;

  /// Repeats of a held key come to this connection as presses without releases between them.
  void makeRepeatDetectable() const;

 private:
  struct Keyboards {
    std::vector<std::uint8_t> real;
    std::vector<std::uint8_t> synthetic;
  };
  [[nodiscard]] Keyboards keyboards() const;
  [[nodiscard]] PressedKeys pressedOn(const std::vector<std::uint8_t>& devices) const;

  X11Connection& connection_;
  std::int32_t deviceId_ = -1;
  std::uint8_t firstEvent_ = 0;
};

}  // namespace vantorel
