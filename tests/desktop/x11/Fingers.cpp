// SPDX-License-Identifier: MIT
#include "desktop/x11/Fingers.h"

#include <xcb/xinput.h>
#include <xcb/xtest.h>

#include <stdexcept>
#include <string_view>

#include "platform/linux/x11/X11Keyboard.h"

namespace vantorel {

Fingers::Fingers(X11Connection& connection) : connection_(connection) {
  const auto version = connection.reply(xcb_input_xi_query_version_reply,
                                        xcb_input_xi_query_version(connection.xcb(), 2, 2));
  const auto devices =
      connection.reply(xcb_input_xi_query_device_reply,
                       xcb_input_xi_query_device(connection.xcb(), XCB_INPUT_DEVICE_ALL));
  if (!version || !devices) throw std::runtime_error("no input devices");
  for (auto it = xcb_input_xi_query_device_infos_iterator(devices.get()); it.rem > 0;
       xcb_input_xi_device_info_next(&it)) {
    const std::string_view name(xcb_input_xi_device_info_name(it.data),
                                static_cast<std::size_t>(it.data->name_len));
    if (name == "Xvfb keyboard") hardware_ = static_cast<std::uint8_t>(it.data->deviceid);
  }
  if (hardware_ == 0) throw std::runtime_error("no keyboard");
}

void Fingers::fake(std::uint8_t type, X11KeyCode key, Keyboard keyboard) {
  std::uint8_t device = 0;
  if (keyboard == Keyboard::hardware) {
    const auto* extension = connection_.extension(xcb_input_id);
    const bool press = type == XCB_KEY_PRESS;
    type =
        static_cast<std::uint8_t>(extension->first_event + (press ? XCB_INPUT_DEVICE_KEY_PRESS
                                                                  : XCB_INPUT_DEVICE_KEY_RELEASE));
    device = hardware_;
  }
  xcb_test_fake_input(connection_.xcb(), type, key, XCB_CURRENT_TIME, XCB_WINDOW_NONE, 0, 0,
                      device);
  connection_.flush();
}

void Fingers::press(X11KeyCode key, Keyboard keyboard) { fake(XCB_KEY_PRESS, key, keyboard); }

void Fingers::release(X11KeyCode key, Keyboard keyboard) { fake(XCB_KEY_RELEASE, key, keyboard); }

void Fingers::strike(const std::vector<X11KeyCode>& keys, Keyboard keyboard) {
  for (const auto key : keys) press(key, keyboard);
  for (auto key = keys.rbegin(); key != keys.rend(); ++key) release(*key, keyboard);
}

void Fingers::click(std::uint8_t button) {
  constexpr std::uint8_t press = XCB_BUTTON_PRESS;
  constexpr std::uint8_t release = XCB_BUTTON_RELEASE;
  for (const auto type : {press, release}) {
    xcb_test_fake_input(connection_.xcb(), type, button, XCB_CURRENT_TIME, XCB_WINDOW_NONE, 0, 0,
                        0);
  }
  connection_.flush();
}

bool Fingers::isDown(X11KeyCode key) const { return X11Keyboard(connection_).presses().seen[key]; }

bool Fingers::isDown(X11KeyCode key, Keyboard keyboard) const {
  const auto presses = X11Keyboard(connection_).presses();
  return keyboard == Keyboard::hardware ? presses.physical[key] : presses.synthetic[key];
}

}  // namespace vantorel
