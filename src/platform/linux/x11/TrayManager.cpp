// SPDX-License-Identifier: MIT
#include "platform/linux/x11/TrayManager.h"

#include <string>
#include <utility>

#include "platform/linux/x11/X11Property.h"

namespace vantorel {

namespace {

constexpr std::uint32_t requestDock = 0;
// Trays may follow one another faster than they are looked at, but not for ever.
constexpr int looks = 4;

}  // namespace

TrayManager::TrayManager(X11Connection& connection) : connection_(connection) {
  selection_ = connection_.atom("_NET_SYSTEM_TRAY_S" + std::to_string(connection_.screenNumber()));
  announcement_ = connection_.atom("MANAGER");
  visual_ = connection_.atom("_NET_SYSTEM_TRAY_VISUAL");
  colors_ = connection_.atom("_NET_SYSTEM_TRAY_COLORS");
  select(connection_.root(), XCB_EVENT_MASK_STRUCTURE_NOTIFY);
  read();
}

TrayManager::News TrayManager::handle(const xcb_generic_event_t& event) {
  const auto type = event.response_type & 0x7FU;
  if (type == XCB_CLIENT_MESSAGE) {
    const auto& message = reinterpret_cast<const xcb_client_message_event_t&>(event);
    if (message.type != announcement_ || message.data.data32[1] != selection_) return News::none;
    return read() == News::changed ? News::changed : News::announced;
  }
  if (type == XCB_DESTROY_NOTIFY) {
    const auto& end = reinterpret_cast<const xcb_destroy_notify_event_t&>(event);
    if (end.window != facts_.window) return News::none;
    // The next tray's window may have the number of this one.
    facts_ = {};
    read();
    return News::changed;
  }
  if (type == XCB_PROPERTY_NOTIFY) {
    const auto& change = reinterpret_cast<const xcb_property_notify_event_t&>(event);
    const bool ofTray = change.window == facts_.window;
    return ofTray && (change.atom == visual_ || change.atom == colors_) ? read() : News::none;
  }
  return News::none;
}

void TrayManager::dock(xcb_window_t window) const {
  xcb_client_message_event_t message{};
  message.response_type = XCB_CLIENT_MESSAGE;
  message.format = 32;
  message.window = facts_.window;
  message.type = connection_.atom("_NET_SYSTEM_TRAY_OPCODE");
  message.data.data32[0] = XCB_CURRENT_TIME;
  message.data.data32[1] = requestDock;
  message.data.data32[2] = window;
  xcb_send_event(connection_.xcb(), 0, facts_.window, XCB_EVENT_MASK_NO_EVENT,
                 reinterpret_cast<const char*>(&message));
}

/// One that ends between the question and the watching would never be heard to end.
TrayManager::News TrayManager::read() {
  TrayFacts found;
  for (int look = 0; look < looks; ++look) {
    const auto window = owner();
    if (window == found.window) break;
    found = {};
    if (window == XCB_WINDOW_NONE) break;
    select(window, XCB_EVENT_MASK_STRUCTURE_NOTIFY | XCB_EVENT_MASK_PROPERTY_CHANGE);
    found = factsOf(window);
  }
  return std::exchange(facts_, found) == found ? News::none : News::changed;
}

TrayFacts TrayManager::factsOf(xcb_window_t window) {
  TrayFacts facts{.window = window};
  if (const auto visual = values32Property(connection_, window, visual_); !visual.empty()) {
    facts.visual = visual.front();
  }
  // Red, green and blue of 16 bits, of symbols first.
  if (const auto colors = values32Property(connection_, window, colors_); colors.size() >= 3) {
    const auto channel = [&](std::size_t i) { return colors[i] >> 8U & 0xffU; };
    facts.ink = channel(0) << 16U | channel(1) << 8U | channel(2);
  }
  return facts;
}

xcb_window_t TrayManager::owner() const {
  const auto answer = connection_.reply(xcb_get_selection_owner_reply,
                                        xcb_get_selection_owner(connection_.xcb(), selection_));
  return answer ? answer->owner : xcb_window_t{XCB_WINDOW_NONE};
}

void TrayManager::select(xcb_window_t window, std::uint32_t mask) const {
  xcb_change_window_attributes(connection_.xcb(), window, XCB_CW_EVENT_MASK, &mask);
}

}  // namespace vantorel
