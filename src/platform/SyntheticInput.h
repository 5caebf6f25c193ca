// SPDX-License-Identifier: MIT
#pragma once

#include <functional>
#include <optional>

#include "platform/KeyCodes.h"
#include "platform/Workspace.h"

namespace vantorel {

/// Whether the user may be asked. A desktop that never asks ignores it.
enum class TrustPrompt { none, ask };
enum class KeyDirection { down, up };

/// State that synthetic events are derived from: 1 is the hardware's. X11 knows no other and
/// ignores it; that there is one says that keys can be pressed.
struct EventSource {
  int stateId = 1;
};

struct SyntheticKeyEvent {
  KeyCode keyCode = 0;
  KeyDirection direction = KeyDirection::down;
  EventFlags flags = 0;
};

/// What became of an event.
enum class KeyDelivery { delivered, failed };

/// Key presses made by this program for another one. A paste comes as four events, each with its
/// own answer: Command down, V down and V up with Command in their flags, Command up. Main thread.
class SyntheticInput {
 public:
  virtual ~SyntheticInput() = default;

  /// Whether the desktop lets this program press keys for others. With `ask`, a desktop that can
  /// ask the user does so without waiting for the answer.
  [[nodiscard]] virtual bool isTrusted(TrustPrompt prompt) = 0;

  /// Absent when the desktop cannot be reached.
  [[nodiscard]] virtual std::optional<EventSource> createEventSource() = 0;

  /// Absent when the key has no place on this keyboard.
  [[nodiscard]] virtual std::optional<SyntheticKeyEvent> createKeyboardEvent(
      const EventSource& source, KeyCode keyCode, KeyDirection direction) = 0;

  /// Delivers the event to that application: only while the window that it was seen with has the
  /// input, so that no key ever lands elsewhere. The adapter presses what the application
  /// understands as this chord (paste is another key in a terminal), and does not let keys that the
  /// user still holds spoil it. `done` is called exactly once, on the main thread, perhaps in a
  /// later turn: `delivered` only when the keys were pressed into that window. An adapter that
  /// presses a chord as one answers `delivered` for the modifiers and releases around its key at
  /// once. A later event takes the place of one that still waits for the window.
  virtual void post(const SyntheticKeyEvent& event, const RunningApplication& target,
                    std::function<void(KeyDelivery)> done) = 0;

  /// What still waits for its window is not pressed any more: it fails.
  virtual void withdraw() = 0;
};

}  // namespace vantorel
