// SPDX-License-Identifier: MIT
#include "platform/linux/x11/ClipboardManagerRole.h"

#include <utility>

namespace vantorel {

ClipboardManagerRole::ClipboardManagerRole(X11Thread& thread, SelectionOwner& owner,
                                           xcb_window_t window)
    : connection_(thread.connection()),
      owner_(owner),
      window_(window),
      selection_(connection_.atom("CLIPBOARD_MANAGER")) {
  xcb_xfixes_select_selection_input(connection_.xcb(), window_, selection_,
                                    XCB_XFIXES_SELECTION_EVENT_MASK_SET_SELECTION_OWNER |
                                        XCB_XFIXES_SELECTION_EVENT_MASK_SELECTION_WINDOW_DESTROY |
                                        XCB_XFIXES_SELECTION_EVENT_MASK_SELECTION_CLIENT_CLOSE);
}

void ClipboardManagerRole::play(SelectionOffer::Save save, xcb_timestamp_t time) {
  SelectionOffer offer;
  offer.save = std::move(save);
  offer_ = std::make_shared<const SelectionOffer>(std::move(offer));
  takeIfFree(time);
}

void ClipboardManagerRole::leave() {
  offer_ = nullptr;
  owner_.release(selection_);
  connection_.flush();  // whoever asks the server from now on finds nobody
}

void ClipboardManagerRole::handle(const xcb_xfixes_selection_notify_event_t& event) {
  if (event.owner == XCB_WINDOW_NONE) takeIfFree(event.timestamp);
}

void ClipboardManagerRole::takeIfFree(xcb_timestamp_t time) {
  if (!offer_) return;
  const auto present = connection_.reply(xcb_get_selection_owner_reply,
                                         xcb_get_selection_owner(connection_.xcb(), selection_));
  if (!present || present->owner != XCB_WINDOW_NONE) return;
  if (owner_.acquire(selection_, offer_, time)) announce(time);
}

/// Programs that wait for a manager listen at the root window.
void ClipboardManagerRole::announce(xcb_timestamp_t time) const {
  xcb_client_message_event_t message{};
  message.response_type = XCB_CLIENT_MESSAGE;
  message.format = 32;
  message.window = connection_.root();
  message.type = connection_.atom("MANAGER");
  message.data.data32[0] = time;
  message.data.data32[1] = selection_;
  message.data.data32[2] = window_;
  xcb_send_event(connection_.xcb(), 0, connection_.root(), XCB_EVENT_MASK_STRUCTURE_NOTIFY,
                 reinterpret_cast<const char*>(&message));
}

}  // namespace vantorel
