// SPDX-License-Identifier: MIT
#pragma once

#include <cstdint>
#include <functional>
#include <optional>
#include <string>

#include "platform/KeyCodes.h"

namespace vantorel {

/// Names a shortcut to whoever registered it; comes back with each press, and no desktop here looks
/// inside. The signature is four characters that stand for the program.
struct HotKeyId {
  std::uint32_t signature = 0;
  std::uint32_t id = 0;
  friend bool operator==(const HotKeyId&, const HotKeyId&) = default;
};

/// A key and modifiers. Some desktops know the key by its place, others by what is printed on it:
/// an upper-case letter or digit, or "Space".
struct HotKeyCombination {
  KeyCode keyCode = 0;
  HotKeyModifiers modifiers = 0;
  std::string label = {};
  friend bool operator==(const HotKeyCombination&, const HotKeyCombination&) = default;
};

/// A registration; meaningful only to the port that gave it.
using HotKeyRef = std::uint32_t;

/// What a desktop says that has to be asked by messages.
enum class HotKeyAnswer {
  held,     // the keys are this program's, until it gives them back
  taken,    // they cannot be had, or not any more; the registration is no more
  absent,   // none here reach a program over every window; likewise, unless it stays awaited
  refused,  // the user would have to agree, who said no or may not be asked; likewise
};

/// System-wide shortcuts. Main thread; the handlers are called there.
class HotKeys {
 public:
  virtual ~HotKeys() = default;

  /// Called once for each press (not for repeats while it is held) of a registered shortcut.
  /// False when shortcuts cannot be had here.
  [[nodiscard]] virtual bool installHandler(std::function<void(HotKeyId)> handler) = 0;
  virtual void removeHandler() = 0;

  /// Takes that key with exactly these modifiers (Lock keys aside) for this program, in every
  /// window, on every layout. Absent when another program has it or the key is not on this
  /// keyboard. It stays taken when keyboards or layouts change.
  [[nodiscard]] virtual std::optional<HotKeyRef> registerHotKey(
      const HotKeyCombination& combination, HotKeyId id) = 0;
  virtual void unregisterHotKey(HotKeyRef reference) = 0;

  /// The keys that are held in the place of those asked for, since the user chose them with the
  /// desktop's own means; where they are on the keyboard is not told. Absent: those asked for.
  [[nodiscard]] virtual std::optional<HotKeyCombination> heldInstead(
      HotKeyRef /*reference*/) const {
    return std::nullopt;
  }
  /// Whether the desktop has yet to answer to a registration.
  [[nodiscard]] virtual bool isAwaited(HotKeyRef /*reference*/) const { return false; }
  /// Called in a later turn than the registration, with the answer to one that is awaited; again
  /// when the desktop takes the keys away, gives others, or its user chooses others there.
  /// Replaces the previous handler; empty: none.
  virtual void setAnswerHandler(const std::function<void(HotKeyRef, HotKeyAnswer)>& /*handler*/) {}

  /// Whether the desktop may ask its user about registrations that follow, if it is one that does.
  /// It may until this says otherwise.
  virtual void setMayAsk(bool /*may*/) {}
  /// The keys of a registration that is held, in the symbols of this program's texts, where the
  /// desktop gives them and they may be others than those asked for; else empty.
  [[nodiscard]] virtual std::string given(HotKeyRef /*reference*/) const { return {}; }
};

}  // namespace vantorel
