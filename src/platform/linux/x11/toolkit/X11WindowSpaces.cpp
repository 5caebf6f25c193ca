// SPDX-License-Identifier: MIT
#include "platform/linux/x11/toolkit/X11WindowSpaces.h"

#include <algorithm>
#include <string_view>

#include "platform/linux/x11/X11Connection.h"
#include "platform/linux/x11/toolkit/ToolkitConnection.h"

namespace vantorel {
namespace {

constexpr std::uint32_t everyDesktop = 0xFFFFFFFF;
constexpr std::uint32_t maxStates = 32;

xcb_intern_atom_cookie_t askAtom(xcb_connection_t* connection, std::string_view name) {
  return xcb_intern_atom(connection, 0, static_cast<std::uint16_t>(name.size()), name.data());
}

xcb_atom_t atomIn(xcb_connection_t* connection, xcb_intern_atom_cookie_t question) {
  const X11Reply<xcb_intern_atom_reply_t> answer(
      xcb_intern_atom_reply(connection, question, nullptr));
  return answer ? answer->atom : xcb_atom_t{XCB_ATOM_NONE};
}

/// The states that the toolkit, or an earlier showing, has put there stay.
void addState(xcb_connection_t* connection, xcb_window_t window, xcb_atom_t states,
              xcb_atom_t added) {
  const X11Reply<xcb_get_property_reply_t> present(xcb_get_property_reply(
      connection, xcb_get_property(connection, 0, window, states, XCB_ATOM_ATOM, 0, maxStates),
      nullptr));
  if (!present) return;
  const auto* first = static_cast<const xcb_atom_t*>(xcb_get_property_value(present.get()));
  const auto* last = first + xcb_get_property_value_length(present.get()) / sizeof(xcb_atom_t);
  if (std::find(first, last, added) != last) return;
  xcb_change_property(connection, XCB_PROP_MODE_APPEND, window, states, XCB_ATOM_ATOM, 32, 1,
                      &added);
}

}  // namespace

void X11WindowSpaces::joinAll(WindowNumber window) const {
  auto* connection = toolkitConnection();
  if (connection == nullptr) return;
  if (desktop_ == XCB_ATOM_NONE) {
    const auto desktop = askAtom(connection, "_NET_WM_DESKTOP");
    const auto states = askAtom(connection, "_NET_WM_STATE");
    const auto sticky = askAtom(connection, "_NET_WM_STATE_STICKY");
    desktop_ = atomIn(connection, desktop);
    states_ = atomIn(connection, states);
    sticky_ = atomIn(connection, sticky);
  }
  if (desktop_ == XCB_ATOM_NONE) return;
  const auto number = static_cast<xcb_window_t>(window);
  xcb_change_property(connection, XCB_PROP_MODE_REPLACE, number, desktop_, XCB_ATOM_CARDINAL, 32, 1,
                      &everyDesktop);
  // Some take that number for the last desktop, unless the window says it in this way too.
  addState(connection, number, states_, sticky_);
}

void X11WindowSpaces::bringForward(WindowNumber window) const {
  auto* connection = toolkitConnection();
  if (connection == nullptr) return;
  constexpr std::uint32_t byTheUser = 2;  // a program's own wish may be refused as too old
  xcb_client_message_event_t message{};
  message.response_type = XCB_CLIENT_MESSAGE;
  message.format = 32;
  message.window = static_cast<xcb_window_t>(window);
  message.type = atomIn(connection, askAtom(connection, "_NET_ACTIVE_WINDOW"));
  message.data.data32[0] = byTheUser;
  message.data.data32[1] = XCB_CURRENT_TIME;
  const auto root = xcb_setup_roots_iterator(xcb_get_setup(connection)).data->root;
  xcb_send_event(connection, 0, root,
                 XCB_EVENT_MASK_SUBSTRUCTURE_REDIRECT | XCB_EVENT_MASK_SUBSTRUCTURE_NOTIFY,
                 reinterpret_cast<const char*>(&message));
  xcb_flush(connection);
}

}  // namespace vantorel
