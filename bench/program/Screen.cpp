// SPDX-License-Identifier: MIT
#include "program/Screen.h"

#include <poll.h>
#include <xcb/damage.h>
#include <xcb/xtest.h>

#include <algorithm>
#include <cstdlib>
#include <stdexcept>

namespace vantorel::bench {

namespace {

template <typename Reply>
using Owned = std::unique_ptr<Reply, decltype(&std::free)>;

template <typename Reply>
Owned<Reply> owned(Reply* reply) {
  return Owned<Reply>(reply, &std::free);
}

}  // namespace

void FreeEvent::operator()(xcb_generic_event_t* event) const noexcept { std::free(event); }

Screen::Screen() : connection_(xcb_connect(nullptr, nullptr)) {
  if (xcb_connection_has_error(connection_) != 0) {
    xcb_disconnect(connection_);
    throw std::runtime_error("there is no X server to measure on");
  }
  root_ = xcb_setup_roots_iterator(xcb_get_setup(connection_)).data->root;
  const auto* damage = xcb_get_extension_data(connection_, &xcb_damage_id);
  const auto* test = xcb_get_extension_data(connection_, &xcb_test_id);
  if (damage == nullptr || damage->present == 0 || test == nullptr || test->present == 0) {
    xcb_disconnect(connection_);
    throw std::runtime_error("the X server lacks the DAMAGE or the XTEST extension");
  }
  firstDamageEvent_ = damage->first_event;
  owned(xcb_damage_query_version_reply(connection_, xcb_damage_query_version(connection_, 1, 1),
                                       nullptr));
}

Screen::~Screen() { xcb_disconnect(connection_); }

xcb_atom_t Screen::atom(std::string_view name) const {
  const auto cookie =
      xcb_intern_atom(connection_, 0, static_cast<std::uint16_t>(name.size()), name.data());
  const auto reply = owned(xcb_intern_atom_reply(connection_, cookie, nullptr));
  return reply ? reply->atom : xcb_atom_t{XCB_ATOM_NONE};
}

void Screen::fakeKey(std::uint8_t type, std::uint8_t keycode) const {
  xcb_test_fake_input(connection_, type, keycode, XCB_CURRENT_TIME, XCB_NONE, 0, 0, 0);
  xcb_flush(connection_);
}

void Screen::pressKey(std::uint8_t keycode) const { fakeKey(XCB_KEY_PRESS, keycode); }
void Screen::releaseKey(std::uint8_t keycode) const { fakeKey(XCB_KEY_RELEASE, keycode); }

void Screen::tapKey(std::uint8_t keycode) const {
  pressKey(keycode);
  releaseKey(keycode);
}

Clock::time_point Screen::pressShortcut() const {
  pressKey(key::super);
  pressKey(key::shift);
  const auto moment = Clock::now();
  pressKey(key::v);
  for (const auto keycode : {key::v, key::shift, key::super}) releaseKey(keycode);
  return moment;
}

Event Screen::nextEvent(Clock::time_point deadline) const {
  for (;;) {
    if (Event event{xcb_poll_for_event(connection_)}) return event;
    const auto left = std::chrono::ceil<std::chrono::milliseconds>(deadline - Clock::now());
    if (left.count() <= 0) return nullptr;
    pollfd waiting{descriptor(), POLLIN, 0};
    if (poll(&waiting, 1, static_cast<int>(left.count())) < 0) return nullptr;
    if (xcb_connection_has_error(connection_) != 0)
      throw std::runtime_error("the X server is gone");
  }
}

void Screen::discardEvents() const {
  while (Event event{xcb_poll_for_event(connection_)}) {
  }
}

std::string Screen::title(xcb_window_t window) const {
  const auto cookie = xcb_get_property(connection_, 0, window, atom("_NET_WM_NAME"),
                                       XCB_GET_PROPERTY_TYPE_ANY, 0, 256);
  const auto reply = owned(xcb_get_property_reply(connection_, cookie, nullptr));
  if (!reply) return {};
  return {static_cast<const char*>(xcb_get_property_value(reply.get())),
          static_cast<std::size_t>(xcb_get_property_value_length(reply.get()))};
}

bool Screen::isVisible(xcb_window_t window) const {
  const auto cookie = xcb_get_window_attributes(connection_, window);
  const auto reply = owned(xcb_get_window_attributes_reply(connection_, cookie, nullptr));
  return reply && reply->map_state == XCB_MAP_STATE_VIEWABLE;
}

xcb_window_t Screen::focus() const {
  const auto reply =
      owned(xcb_get_input_focus_reply(connection_, xcb_get_input_focus(connection_), nullptr));
  return reply ? reply->focus : xcb_window_t{XCB_WINDOW_NONE};
}

xcb_window_t Screen::active() const {
  const auto cookie = xcb_get_property(connection_, 0, root_, atom("_NET_ACTIVE_WINDOW"),
                                       XCB_GET_PROPERTY_TYPE_ANY, 0, 1);
  const auto reply = owned(xcb_get_property_reply(connection_, cookie, nullptr));
  if (!reply || xcb_get_property_value_length(reply.get()) < 4) return XCB_WINDOW_NONE;
  return *static_cast<const xcb_window_t*>(xcb_get_property_value(reply.get()));
}

std::optional<xcb_window_t> Screen::visibleWindow(std::string_view title) const {
  return find(root_, title);
}

std::vector<xcb_window_t> Screen::children(xcb_window_t window) const {
  const auto tree =
      owned(xcb_query_tree_reply(connection_, xcb_query_tree(connection_, window), nullptr));
  if (!tree) return {};
  const auto* first = xcb_query_tree_children(tree.get());
  return {first, first + xcb_query_tree_children_length(tree.get())};
}

std::optional<xcb_window_t> Screen::find(xcb_window_t parent, std::string_view wanted) const {
  for (const auto child : children(parent)) {
    if (!isVisible(child)) continue;
    if (title(child) == wanted) return child;
    if (const auto inner = find(child, wanted)) return inner;
  }
  return std::nullopt;
}

std::vector<std::uint32_t> Screen::pixels(xcb_window_t window) const {
  const auto geometry =
      owned(xcb_get_geometry_reply(connection_, xcb_get_geometry(connection_, window), nullptr));
  if (!geometry) return {};
  const auto cookie = xcb_get_image(connection_, XCB_IMAGE_FORMAT_Z_PIXMAP, window, 0, 0,
                                    geometry->width, geometry->height, ~0U);
  const auto image = owned(xcb_get_image_reply(connection_, cookie, nullptr));
  if (!image) return {};
  const auto* data = xcb_get_image_data(image.get());
  const auto length = static_cast<std::size_t>(xcb_get_image_data_length(image.get()));
  std::vector<std::uint32_t> pixels(length / sizeof(std::uint32_t));
  std::copy(data, data + pixels.size() * sizeof(std::uint32_t),
            reinterpret_cast<std::uint8_t*>(pixels.data()));
  return pixels;
}

}  // namespace vantorel::bench
