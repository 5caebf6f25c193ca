// SPDX-License-Identifier: MIT
#pragma once

#include <chrono>
#include <deque>
#include <functional>
#include <map>
#include <vector>

#include "platform/linux/x11/X11Property.h"
#include "platform/linux/x11/X11Thread.h"

namespace vantorel {

/// refused: the owner said no, or said yes and gave nothing; silent: it did not answer or stalled;
/// aborted: nobody wants the answer any more.
enum class SelectionOutcome { received, refused, silent, tooLarge, aborted };

struct SelectionAnswer {
  SelectionOutcome outcome = SelectionOutcome::aborted;
  X11Property property;  // filled when received
};

struct SelectionQuery {
  xcb_atom_t selection = XCB_ATOM_NONE;
  xcb_atom_t target = XCB_ATOM_NONE;
  xcb_timestamp_t time = XCB_CURRENT_TIME;
  std::size_t maximumBytes = 0;
};

/// Asks selection owners for their contents, any number of questions at once. Every question has a
/// window of its own, so that a late answer never lands in another read. On the X thread.
class SelectionReader {
 public:
  /// How long an owner may be silent, before its first answer and between two pieces of it. Those
  /// that fetch over a network, or have been swapped out, take seconds. However long a whole answer
  /// takes, its pieces keep coming.
  static constexpr std::chrono::milliseconds usualPatience{5000};

  using Completion = std::function<void(SelectionAnswer)>;

  /// `thread` outlives the reader.
  explicit SelectionReader(X11Thread& thread, std::chrono::milliseconds patience = usualPatience);

  /// Completes exactly once, at once on a lost connection. What an owner says about the size of an
  /// answer is not believed: memory is taken only for what has come.
  void read(const SelectionQuery& query, Completion completion);
  /// Completes everything under way as aborted.
  void abortAll();

  void handle(const xcb_selection_notify_event_t& event);
  void handle(const xcb_property_notify_event_t& event);

 private:
  enum class Stage { asked, incremental };
  struct Transfer {
    SelectionQuery query;
    Completion completion;
    Stage stage = Stage::asked;
    X11Property received;
    X11Thread::TimerId silenceTimer = 0;
  };
  using Transfers = std::map<xcb_window_t, Transfer>;

  [[nodiscard]] xcb_window_t freshWindow();
  void startSilenceTimer(xcb_window_t window, Transfer& transfer);
  void finish(Transfers::iterator transfer, SelectionOutcome outcome);
  void retire(xcb_window_t window, SelectionOutcome outcome);
  void destroyOldestAbandoned();

  X11Thread& thread_;
  X11Connection& connection_;
  std::chrono::milliseconds patience_;
  xcb_atom_t property_;
  xcb_atom_t incr_;
  Transfers transfers_;
  std::deque<xcb_window_t> idle_;
  std::deque<xcb_window_t> abandoned_;  // an answer may still arrive
};

}  // namespace vantorel
