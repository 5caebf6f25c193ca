// SPDX-License-Identifier: MIT
#include "platform/linux/x11/toolkit/XwaylandScreens.h"

#include <xcb/xcb.h>

#include "platform/linux/x11/X11Connection.h"
#include "platform/linux/x11/toolkit/ToolkitConnection.h"

namespace vantorel {

Point XwaylandScreens::mouseLocation() const {
  auto* const connection = toolkitConnection();
  if (connection == nullptr) return unknownPlace;
  const auto* const screen = xcb_setup_roots_iterator(xcb_get_setup(connection)).data;
  const X11Reply<xcb_query_pointer_reply_t> pointer(
      xcb_query_pointer_reply(connection, xcb_query_pointer(connection, screen->root), nullptr));
  const bool isOverWindow = pointer && pointer->child != XCB_WINDOW_NONE;
  return isOverWindow ? QtScreens::mouseLocation() : unknownPlace;
}

}  // namespace vantorel
