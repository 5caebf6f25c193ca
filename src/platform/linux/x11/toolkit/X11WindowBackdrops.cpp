// SPDX-License-Identifier: MIT
#include "platform/linux/x11/toolkit/X11WindowBackdrops.h"

#include <cstdint>
#include <utility>

#include "platform/linux/x11/X11Connection.h"
#include "platform/linux/x11/toolkit/ToolkitConnection.h"

namespace vantorel {
namespace {

/// The window that window managers put around another one, or that one itself: what the server
/// stacks. None for a window that is gone.
xcb_window_t frameOf(xcb_connection_t* connection, xcb_window_t window) {
  for (;;) {
    const X11Reply<xcb_query_tree_reply_t> tree(
        xcb_query_tree_reply(connection, xcb_query_tree(connection, window), nullptr));
    if (!tree || tree->parent == XCB_WINDOW_NONE) return XCB_WINDOW_NONE;
    if (tree->parent == tree->root) return window;
    window = tree->parent;
  }
}

}  // namespace

Backdrop X11WindowBackdrops::available() const {
  if (preferences_.blurs()) return Backdrop::blurrable;
  return preferences_.composited() ? Backdrop::translucent : Backdrop::none;
}

std::unique_ptr<Observation> X11WindowBackdrops::observe(std::function<void()> changed) const {
  return preferences_.observe(std::move(changed));
}

void X11WindowBackdrops::blurBehind(WindowNumber window,
                                    const std::vector<PixelRect>& pixels) const {
  auto* connection = toolkitConnection();
  if (connection == nullptr) return;
  const auto target = static_cast<xcb_window_t>(window);
  const auto property = preferences_.blurProperty();
  if (pixels.empty()) {
    // An empty region would mean the whole window.
    xcb_delete_property(connection, target, property);
  } else {
    std::vector<std::uint32_t> numbers;
    constexpr std::size_t numbersPerRectangle = 4;
    numbers.reserve(pixels.size() * numbersPerRectangle);
    for (const auto& each : pixels) {
      for (const int number : {each.x, each.y, each.width, each.height}) {
        numbers.push_back(static_cast<std::uint32_t>(number));
      }
    }
    xcb_change_property(connection, XCB_PROP_MODE_REPLACE, target, property, XCB_ATOM_CARDINAL, 32,
                        static_cast<std::uint32_t>(numbers.size()), numbers.data());
  }
  xcb_flush(connection);
}

void X11WindowBackdrops::placeBelow(WindowNumber window, WindowNumber other) const {
  auto* connection = toolkitConnection();
  if (connection == nullptr) return;
  const auto frame = frameOf(connection, static_cast<xcb_window_t>(other));
  if (frame == XCB_WINDOW_NONE) return;
  constexpr std::uint16_t mask = XCB_CONFIG_WINDOW_SIBLING | XCB_CONFIG_WINDOW_STACK_MODE;
  const std::uint32_t values[] = {frame, XCB_STACK_MODE_BELOW};
  // The frame may have gone by now, which is nobody's fault.
  const auto request =
      xcb_configure_window_checked(connection, static_cast<xcb_window_t>(window), mask, values);
  xcb_discard_reply(connection, request.sequence);
  xcb_flush(connection);
}

}  // namespace vantorel
