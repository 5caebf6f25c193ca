// SPDX-License-Identifier: MIT
#pragma once

#include <map>
#include <optional>
#include <string>
#include <utility>

#include "program/Screen.h"

namespace vantorel::bench {

/// Owns the clipboard and serves one target, in pieces of 256 KiB when it is long, as the common
/// toolkits do. It notes when its contents were first asked for and when they were handed over.
class ClipboardOwner {
 public:
  explicit ClipboardOwner(const Screen& screen);

  /// Takes the clipboard with new contents and answers the moment before it did.
  Clock::time_point own(std::string target, std::string contents);

  /// Serves an event; answers false when it is none of ours.
  bool handle(const xcb_generic_event_t& event);

  [[nodiscard]] std::optional<Clock::time_point> asked() const { return asked_; }
  [[nodiscard]] std::optional<Clock::time_point> served() const { return served_; }

 private:
  struct Transfer {
    std::string contents;
    std::size_t sent = 0;
  };

  void answer(const xcb_selection_request_event_t& request);
  void answerTargets(const xcb_selection_request_event_t& request);
  void answerContents(const xcb_selection_request_event_t& request);
  void proceed(const xcb_property_notify_event_t& event);
  void notify(const xcb_selection_request_event_t& request, xcb_atom_t property) const;

  const Screen& screen_;
  xcb_window_t window_;
  xcb_atom_t clipboard_;
  xcb_atom_t targets_;
  xcb_atom_t incr_;
  xcb_atom_t target_ = XCB_ATOM_NONE;
  std::string contents_;
  std::map<std::pair<xcb_window_t, xcb_atom_t>, Transfer> transfers_;
  std::optional<Clock::time_point> asked_;
  std::optional<Clock::time_point> served_;
};

}  // namespace vantorel::bench
