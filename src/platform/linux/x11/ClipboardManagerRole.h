// SPDX-License-Identifier: MIT
#pragma once

#include <xcb/xfixes.h>

#include "platform/linux/x11/SelectionOwner.h"
#include "platform/linux/x11/X11Thread.h"

namespace vantorel {

/// The role of the clipboard manager: programs that end ask whoever has it to keep what they
/// copied, and do not ask when nobody has. It is taken where no other program has it, left to one
/// that takes it, and taken again when that one ends. On the X thread.
class ClipboardManagerRole {
 public:
  /// Serves as `window`, through `owner`. All that is named outlives the role.
  ClipboardManagerRole(X11Thread& thread, SelectionOwner& owner, xcb_window_t window);

  /// From now on, `time` being the server's present. `save` is called for each program that asks.
  void play(SelectionOffer::Save save, xcb_timestamp_t time);
  void leave();
  [[nodiscard]] xcb_atom_t selection() const { return selection_; }

  /// Somebody took or left the part.
  void handle(const xcb_xfixes_selection_notify_event_t& event);

 private:
  void takeIfFree(xcb_timestamp_t time);
  void announce(xcb_timestamp_t time) const;

  X11Connection& connection_;
  SelectionOwner& owner_;
  xcb_window_t window_;
  xcb_atom_t selection_;
  SelectionOwner::Offer offer_;  // null: the part is not wanted
};

}  // namespace vantorel
