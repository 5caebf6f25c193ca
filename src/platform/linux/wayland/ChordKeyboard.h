// SPDX-License-Identifier: MIT
#pragma once

#include <chrono>
#include <cstdint>
#include <optional>
#include <vector>

#include "platform/KeyCodes.h"
#include "platform/linux/windows/PasteKeys.h"

namespace vantorel {

/// A key by its place, as the kernel numbers it.
using KernelKey = std::uint32_t;

/// Keys that are pressed together.
struct KernelChord {
  std::vector<KernelKey> modifiers;
  KernelKey key = 0;
  friend bool operator==(const KernelChord&, const KernelChord&) = default;
};

/// What has to be pressed for `keys` where `v` yields a v. Where nothing does (absent) a paste is
/// Shift+Insert whatever was asked for, and `keys` says so afterwards.
[[nodiscard]] KernelChord kernelChordFor(PasteKeys& keys, std::optional<KernelKey> v);

/// The key at `keyCode`'s place with the modifiers in `flags`; Command is Control here. Absent for
/// a number that is no key.
[[nodiscard]] std::optional<KernelChord> kernelChordAt(KeyCode keyCode, EventFlags flags);

/// A keyboard of this program's own, whose keys go to the window that has the seat's keyboard. On
/// the thread of the windows, except where said.
class ChordKeyboard {
 public:
  /// held: the user holds keys that would become part of it, so nothing was pressed.
  enum class Outcome { pressed, held, failed };

  virtual ~ChordKeyboard() = default;

  /// Whether the compositor takes keys from this program. Any thread.
  [[nodiscard]] virtual bool isAvailable() const = 0;
  /// The key that yields a v; absent where none does.
  [[nodiscard]] virtual std::optional<KernelKey> keyOfV() const = 0;
  /// Presses the chord and lets it go. `pressed` when the compositor has dealt with all of it, with
  /// nothing left down. Waits for the compositor alone, `answerLimit` at most.
  [[nodiscard]] virtual Outcome press(const KernelChord& chord) = 0;

  static constexpr std::chrono::seconds answerLimit{1};
};

}  // namespace vantorel
