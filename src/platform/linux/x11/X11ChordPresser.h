// SPDX-License-Identifier: MIT
#pragma once

#include <functional>
#include <optional>
#include <vector>

#include "platform/KeyCodes.h"
#include "platform/Workspace.h"
#include "platform/linux/x11/KeyChord.h"
#include "platform/linux/x11/X11Applications.h"
#include "platform/linux/x11/X11Keyboard.h"
#include "platform/linux/x11/X11Thread.h"

namespace vantorel {

/// Makes PRIMARY hold what the pasteboard holds, and answers whether it does. Called on a thread
/// that is not the main one; waits for no other program than the X server.
using PrimaryOffer = std::function<bool()>;

/// Whether the program that made that window was told what the pasteboard holds now. Any thread.
using ListedTo = std::function<bool(xcb_window_t window)>;

struct ChordRequest {
  KeyCode keyCode = 0;
  EventFlags flags = 0;
};

/// Presses chords for other programs, on the thread of the applications. Between the check that the
/// target has the keyboard and the press the server listens to nobody else, so the keys cannot go
/// astray; the chord, and what it needs to have let go, is one write, so that even the end of this
/// program in the middle of it leaves nothing pressed.
class X11ChordPresser {
 public:
  /// Whether the chord was pressed into the target. Called on the thread, once.
  using Completion = std::function<void(bool pressed)>;

  /// `applications` outlives this. Without `isListedTo` nobody is given time to ask.
  X11ChordPresser(X11Applications& applications, PrimaryOffer offerPrimary, ListedTo isListedTo);
  ~X11ChordPresser();
  X11ChordPresser(const X11ChordPresser&) = delete;
  X11ChordPresser& operator=(const X11ChordPresser&) = delete;

  /// Whether the server lets programs press keys.
  [[nodiscard]] bool isAvailable() const;

  /// Presses the chord as soon as the window of `target` is in front and has the keyboard; gives up
  /// when that takes longer than 0.6 s, when there is no such chord on this keyboard, and when
  /// another one is to be pressed. Command-V becomes what the target pastes with. Returns at once;
  /// `done` is dropped when this ends first. Main thread.
  void press(ChordRequest request, const RunningApplication& target, Completion done);
  /// What waits for its target is not pressed any more. Main thread.
  void withdraw();

 private:
  struct Attempt {
    ChordRequest request;
    RunningApplication target;
    Completion done;
    X11Thread::Clock::time_point deadline;
    bool primaryOffered = false;
    /// Until when a target that asks before it pastes is waited for; absent before it is in front.
    std::optional<X11Thread::Clock::time_point> askingEnds = std::nullopt;
  };
  struct Target {
    xcb_window_t focus = XCB_WINDOW_NONE;  // as the server names it, perhaps a part of the window
    WindowFacts facts;
  };
  enum class Outcome { pressed, impossible, notInFront };

  void begin(Attempt attempt);
  void tryAgain();
  void finish(Outcome outcome);
  [[nodiscard]] std::optional<Target> targetInFront(const RunningApplication& target);
  [[nodiscard]] std::optional<KeyChord> chordOf(const ChordRequest& request, PasteKeys& keys);
  [[nodiscard]] PasteKeys keysFor(const ChordRequest& request, const Target& target) const;
  [[nodiscard]] bool mayPaste(Attempt& attempt, const Target& target) const;
  [[nodiscard]] Outcome tryToPress(Attempt& attempt, const Target& target);
  [[nodiscard]] Outcome pressUnderGrab(const KeyChord& chord, const RunningApplication& target,
                                       xcb_window_t focus);
  void send(const std::vector<KeyAction>& actions);
  void restore(const std::vector<X11KeyCode>& suspended, const KeyPresses& before);
  void watchRestored();
  void refreshMap();

  X11Applications& applications_;
  PrimaryOffer offerPrimary_;
  ListedTo isListedTo_;
  X11Thread& thread_;
  X11Keyboard keyboard_;
  bool hasTest_;

  // On the thread.
  std::optional<Attempt> attempt_;    // the one that waits for its target
  std::optional<KeyboardMap> map_;    // absent: to be read
  std::vector<X11KeyCode> restored_;  // pressed for fingers that still held them
  X11Thread::TimerId attemptTimer_ = 0;
  X11Thread::TimerId refreshTimer_ = 0;
  X11Thread::TimerId releaseTimer_ = 0;
};

}  // namespace vantorel
