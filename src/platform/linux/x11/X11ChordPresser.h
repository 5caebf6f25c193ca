#pragma once

#include <atomic>
#include <functional>
#include <memory>
#include <optional>
#include <vector>

#include "platform/KeyCodes.h"
#include "platform/Workspace.h"
#include "platform/linux/DesktopEntries.h"
#include "platform/linux/x11/KeyChord.h"
#include "platform/linux/x11/X11Applications.h"
#include "platform/linux/x11/X11Keyboard.h"
#include "platform/linux/x11/X11Thread.h"

namespace vantorel {

/// Makes PRIMARY hold what the pasteboard holds, and answers whether it does. Called on a thread
/// that is not the main one; waits for no other program than the X server.
using PrimaryOffer = std::function<bool()>;

struct ChordRequest {
  KeyCode keyCode = 0;
  EventFlags flags = 0;
};

/// Presses chords for other programs on a thread of its own. Between the check that the target has
/// the keyboard and the press the server listens to nobody else, so the keys cannot go astray; the
/// chord, and what it needs to have let go, is one write, so that even the end of this program in
/// the middle of it leaves nothing pressed.
class X11ChordPresser {
 public:
  /// `entries` outlives this.
  X11ChordPresser(std::unique_ptr<X11Connection> connection, const DesktopEntries& entries,
                  PrimaryOffer offerPrimary);
  ~X11ChordPresser();
  X11ChordPresser(const X11ChordPresser&) = delete;
  X11ChordPresser& operator=(const X11ChordPresser&) = delete;

  /// Whether the server lets programs press keys.
  [[nodiscard]] bool isAvailable() const;

  /// Presses the chord as soon as a window of `pid` is in front and has the keyboard; gives up when
  /// that takes longer than 0.6 s. Command-V becomes what the target pastes with. Returns at
  /// once. Main thread.
  void press(ChordRequest request, ProcessId pid);

 private:
  struct Attempt {
    ChordRequest request;
    ProcessId pid = 0;
    X11Thread::Clock::time_point deadline;
    bool primaryOffered = false;
  };
  struct Target {
    xcb_window_t focus = XCB_WINDOW_NONE;  // as the server names it, perhaps a part of the window
    WindowFacts facts;
  };
  enum class Outcome { done, notInFront };  // done: pressed, or it never can be

  void attempt(Attempt attempt);
  [[nodiscard]] std::optional<Target> target(ProcessId pid) const;
  [[nodiscard]] xcb_window_t inputFocus() const;
  [[nodiscard]] std::optional<KeyChord> chordOf(const ChordRequest& request, PasteKeys& keys);
  [[nodiscard]] PasteKeys keysFor(const ChordRequest& request, const Target& target) const;
  [[nodiscard]] Outcome tryToPress(Attempt& attempt, const Target& target);
  [[nodiscard]] Outcome pressUnderGrab(const KeyChord& chord, ProcessId pid, xcb_window_t focus);
  void send(const std::vector<KeyAction>& actions);
  void restore(const std::vector<X11KeyCode>& suspended, const KeyPresses& before);
  void watchRestored();
  void refreshMap();

  const DesktopEntries& entries_;
  PrimaryOffer offerPrimary_;
  X11Thread thread_;
  X11Applications applications_;
  X11Keyboard keyboard_;
  bool hasTest_;
  std::atomic<bool> lost_ = false;

  // On the thread.
  std::optional<KeyboardMap> map_;    // absent: to be read
  std::vector<X11KeyCode> restored_;  // pressed for fingers that still held them
  X11Thread::TimerId refreshTimer_ = 0;
  X11Thread::TimerId releaseTimer_ = 0;
};

}  // namespace vantorel
