// SPDX-License-Identifier: MIT
#include "desktop/x11/ScriptedTray.h"

#include <array>
#include <stdexcept>

namespace vantorel {

namespace {

constexpr std::uint8_t argbDepth = 32;

xcb_visualid_t argbVisual(const xcb_screen_t& screen) {
  auto depths = xcb_screen_allowed_depths_iterator(&screen);
  for (; depths.rem > 0; xcb_depth_next(&depths)) {
    if (depths.data->depth == argbDepth && xcb_depth_visuals_length(depths.data) > 0) {
      return xcb_depth_visuals(depths.data)->visual_id;
    }
  }
  throw std::runtime_error("no visual of 32 bits");
}

}  // namespace

ScriptedTray::ScriptedTray(const std::string& display, Look look)
    : x11_(X11Connection::open(display)),
      window_(xcb_generate_id(x11_->xcb())),
      selection_(x11_->atom("_NET_SYSTEM_TRAY_S0")) {
  create(look);
  const auto say = [&](std::string_view property, xcb_atom_t type,
                       const std::vector<std::uint32_t>& values) {
    if (values.empty()) return;
    xcb_change_property(x11_->xcb(), XCB_PROP_MODE_REPLACE, window_, x11_->atom(property), type, 32,
                        static_cast<std::uint32_t>(values.size()), values.data());
  };
  const auto visual = look.translucent ? argbVisual(x11_->screen()) : look.visual;
  if (visual != 0) say("_NET_SYSTEM_TRAY_VISUAL", XCB_ATOM_VISUALID, {visual});
  say("_NET_SYSTEM_TRAY_COLORS", XCB_ATOM_CARDINAL, look.colors);
  xcb_set_selection_owner(x11_->xcb(), window_, selection_, XCB_CURRENT_TIME);
  announce();
}

ScriptedTray::~ScriptedTray() = default;

void ScriptedTray::create(const Look& look) {
  auto* xcb = x11_->xcb();
  std::uint8_t depth = XCB_COPY_FROM_PARENT;
  xcb_visualid_t visual = XCB_COPY_FROM_PARENT;
  xcb_colormap_t colormap = x11_->screen().default_colormap;
  if (look.translucent) {
    depth = argbDepth;
    visual = argbVisual(x11_->screen());
    colormap = xcb_generate_id(xcb);
    xcb_create_colormap(xcb, XCB_COLORMAP_ALLOC_NONE, colormap, x11_->root(), visual);
  }
  const std::array<std::uint32_t, 4> values{look.colour, 0, 1, colormap};
  xcb_create_window(
      xcb, depth, window_, x11_->root(), 0, 0, width, height, 0, XCB_WINDOW_CLASS_INPUT_OUTPUT,
      visual, XCB_CW_BACK_PIXEL | XCB_CW_BORDER_PIXEL | XCB_CW_OVERRIDE_REDIRECT | XCB_CW_COLORMAP,
      values.data());
  xcb_map_window(xcb, window_);
}

void ScriptedTray::announce() const {
  xcb_client_message_event_t message{};
  message.response_type = XCB_CLIENT_MESSAGE;
  message.format = 32;
  message.window = x11_->root();
  message.type = x11_->atom("MANAGER");
  message.data.data32[1] = selection_;
  message.data.data32[2] = window_;
  xcb_send_event(x11_->xcb(), 0, x11_->root(), XCB_EVENT_MASK_STRUCTURE_NOTIFY,
                 reinterpret_cast<const char*>(&message));
  x11_->flush();
}

const std::vector<xcb_window_t>& ScriptedTray::requests() {
  const auto opcode = x11_->atom("_NET_SYSTEM_TRAY_OPCODE");
  while (const X11Reply<xcb_generic_event_t> event{xcb_poll_for_event(x11_->xcb())}) {
    if ((event->response_type & 0x7fU) != XCB_CLIENT_MESSAGE) continue;
    const auto& message = reinterpret_cast<const xcb_client_message_event_t&>(*event);
    if (message.type == opcode && message.data.data32[1] == 0) {
      requests_.push_back(message.data.data32[2]);
    }
  }
  return requests_;
}

void ScriptedTray::embed(xcb_window_t window, int wide, int high, AfterDeath after) const {
  const auto mode = after == AfterDeath::handedBack ? XCB_SET_MODE_INSERT : XCB_SET_MODE_DELETE;
  xcb_change_save_set(x11_->xcb(), mode, window);
  xcb_reparent_window(x11_->xcb(), window, window_, 0, 0);
  xcb_map_window(x11_->xcb(), window);
  resize(window, wide, high);
}

void ScriptedTray::resize(xcb_window_t window, int wide, int high) const {
  const std::array<std::uint32_t, 2> size{static_cast<std::uint32_t>(wide),
                                          static_cast<std::uint32_t>(high)};
  xcb_configure_window(x11_->xcb(), window, XCB_CONFIG_WINDOW_WIDTH | XCB_CONFIG_WINDOW_HEIGHT,
                       size.data());
  x11_->flush();
}

void ScriptedTray::giveBack(xcb_window_t window) const {
  xcb_unmap_window(x11_->xcb(), window);
  xcb_reparent_window(x11_->xcb(), window, x11_->root(), 0, 0);
  x11_->flush();
}

void ScriptedTray::destroy(xcb_window_t window) const {
  xcb_destroy_window(x11_->xcb(), window);
  x11_->flush();
}

void ScriptedTray::killOwner(xcb_window_t window) const {
  xcb_kill_client(x11_->xcb(), window);
  x11_->flush();
}

void ScriptedTray::expose(xcb_window_t window) const {
  xcb_clear_area(x11_->xcb(), 1, window, 0, 0, 0, 0);
  x11_->flush();
}

void ScriptedTray::press(xcb_window_t window, std::uint8_t button, std::int16_t x,
                         std::int16_t y) const {
  xcb_button_release_event_t event{};
  for (const auto type : {XCB_BUTTON_PRESS, XCB_BUTTON_RELEASE}) {
    event.response_type = static_cast<std::uint8_t>(type);
    event.detail = button;
    event.root = x11_->root();
    event.event = window;
    event.event_x = x;
    event.event_y = y;
    event.root_x = x;
    event.root_y = y;
    event.same_screen = 1;
    xcb_send_event(x11_->xcb(), 0, window, XCB_EVENT_MASK_NO_EVENT,
                   reinterpret_cast<const char*>(&event));
  }
  x11_->flush();
}

void ScriptedTray::lieAboutSize(xcb_window_t window, std::uint16_t wide, std::uint16_t high) const {
  xcb_configure_notify_event_t event{};
  event.response_type = XCB_CONFIGURE_NOTIFY;
  event.event = window;
  event.window = window;
  event.width = wide;
  event.height = high;
  xcb_send_event(x11_->xcb(), 0, window, XCB_EVENT_MASK_NO_EVENT,
                 reinterpret_cast<const char*>(&event));
  x11_->flush();
}

bool ScriptedTray::exists(xcb_window_t window) const {
  return x11_->reply(xcb_get_window_attributes_reply,
                     xcb_get_window_attributes(x11_->xcb(), window)) != nullptr;
}

std::uint8_t ScriptedTray::depth(xcb_window_t window) const {
  const auto answer = x11_->reply(xcb_get_geometry_reply, xcb_get_geometry(x11_->xcb(), window));
  return answer ? answer->depth : 0;
}

std::uint32_t ScriptedTray::pixel(int x, int y) const {
  const auto image =
      x11_->reply(xcb_get_image_reply, xcb_get_image(x11_->xcb(), XCB_IMAGE_FORMAT_Z_PIXMAP,
                                                     window_, static_cast<std::int16_t>(x),
                                                     static_cast<std::int16_t>(y), 1, 1, ~0U));
  if (!image) throw std::runtime_error("the tray is not seen");
  const auto* bytes = xcb_get_image_data(image.get());
  return static_cast<std::uint32_t>(bytes[2]) << 16U | static_cast<std::uint32_t>(bytes[1]) << 8U |
         bytes[0];
}

}  // namespace vantorel
