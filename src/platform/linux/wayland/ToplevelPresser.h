// SPDX-License-Identifier: MIT
#pragma once

#include <chrono>
#include <cstdint>
#include <functional>
#include <optional>

#include "platform/SyntheticInput.h"
#include "platform/Workspace.h"
#include "platform/linux/applications/DesktopEntries.h"
#include "platform/linux/wayland/ChordKeyboard.h"
#include "platform/linux/wayland/ToplevelSource.h"

namespace vantorel {

/// Presses chords into windows of the compositor's, on their thread. No window can be meant there:
/// keys go to whichever has the keyboard. So the target is looked for right before the chord and
/// once more behind it, each time after all that the compositor had to say.
class ToplevelPresser {
 public:
  struct Services {
    ToplevelSource& windows;
    ChordKeyboard& keyboard;
    const DesktopEntries& entries;
    /// Makes PRIMARY hold what the pasteboard holds, and answers whether it does. Called on the
    /// thread; waits for the compositor alone.
    std::function<bool()> offerPrimary;
  };
  /// Whether the chord was pressed into the target. Called on the thread, once.
  using Completion = std::function<void(bool pressed)>;

  /// How long a window is in front before keys are pressed into it. Programs are told that they are
  /// active beside the keyboard, and take no shortcut before they have taken that in.
  static constexpr std::chrono::milliseconds settling{100};

  /// What `services` name outlives this.
  explicit ToplevelPresser(Services services);
  ~ToplevelPresser();
  ToplevelPresser(const ToplevelPresser&) = delete;
  ToplevelPresser& operator=(const ToplevelPresser&) = delete;

  /// Presses the chord of that key, which goes down, as soon as the window of `target` is in front
  /// and nothing that the user holds would spoil it; gives up when that takes longer than a second,
  /// and when another one is to be pressed. Command-V becomes what the target pastes with. Returns
  /// at once; `done` is dropped when this ends first. Main thread.
  void press(const SyntheticKeyEvent& key, const RunningApplication& target, Completion done);
  /// What waits for its target is not pressed any more. Main thread.
  void withdraw();

 private:
  struct Attempt {
    SyntheticKeyEvent key;
    WindowToken target = 0;
    Completion done;
    WorkLine::Clock::time_point deadline;
    bool primaryOffered = false;
    std::uint64_t timeInFront = 0;  // the time that it is in front now, as `Toplevel` counts them
    WorkLine::Clock::time_point settles = {};  // when it has been that for long enough
  };
  enum class Outcome { pressed, notYet, failed };

  void tryAgain();
  void finish(bool pressed);
  [[nodiscard]] Outcome tryToPress(Attempt& attempt);
  /// The target with all that the compositor has said by now, if it is in front.
  [[nodiscard]] std::optional<Toplevel> inFront(WindowToken target);
  [[nodiscard]] static bool hasSettled(Attempt& attempt, const Toplevel& target);
  [[nodiscard]] std::optional<KernelChord> chordFor(Attempt& attempt, const Toplevel& target);
  [[nodiscard]] PasteKeys keysOf(const Toplevel& target) const;

  const Services services_;
  WaylandThread& thread_;
  // On the thread.
  std::optional<Attempt> attempt_;
  WaylandThread::TimerId timer_ = 0;
};

}  // namespace vantorel
