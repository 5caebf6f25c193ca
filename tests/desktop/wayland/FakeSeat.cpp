// SPDX-License-Identifier: MIT
#include "desktop/wayland/FakeSeat.h"

#include <sys/mman.h>
#include <unistd.h>
#include <wayland-server.h>

#include <stdexcept>

#include "base/FileDescriptor.h"

namespace vantorel {

/// What clients call.
struct FakeSeat::Protocols {
  static FakeSeat& of(wl_resource* resource) {
    return *static_cast<FakeSeat*>(wl_resource_get_user_data(resource));
  }
  static void keyboardGone(wl_resource* keyboard) { std::erase(of(keyboard).keyboards_, keyboard); }
  static void getKeyboard(wl_client* client, wl_resource* seat, std::uint32_t id) {
    auto& self = of(seat);
    if (self.keymap_.empty()) {
      wl_resource_post_error(seat, 0, "there is no keyboard");
      return;
    }
    auto* const made = wl_resource_create(client, &wl_keyboard_interface, 1, id);
    wl_resource_set_implementation(made, nullptr, &self, keyboardGone);
    self.keyboards_.push_back(made);
    self.tellKeymap(made);
  }
  static void pointerGone(wl_resource* pointer) { std::erase(of(pointer).pointers_, pointer); }
  static void getPointer(wl_client* client, wl_resource* seat, std::uint32_t id) {
    auto* const made = wl_resource_create(client, &wl_pointer_interface, 1, id);
    wl_resource_set_implementation(made, nullptr, &of(seat), pointerGone);
    of(seat).pointers_.push_back(made);
  }
  static void touchGone(wl_resource* touch) { std::erase(of(touch).touches_, touch); }
  static void getTouch(wl_client* client, wl_resource* seat, std::uint32_t id) {
    auto* const made = wl_resource_create(client, &wl_touch_interface, 1, id);
    wl_resource_set_implementation(made, nullptr, &of(seat), touchGone);
    of(seat).touches_.push_back(made);
  }
  static constexpr struct wl_seat_interface seatCalls {
    getPointer, getKeyboard, getTouch, nullptr
  };
  static void seatGone(wl_resource* seat) { std::erase(of(seat).seats_, seat); }
  static void bind(wl_client* client, void* self, std::uint32_t version, std::uint32_t id) {
    auto* const made =
        wl_resource_create(client, &wl_seat_interface, static_cast<int>(version), id);
    wl_resource_set_implementation(made, &seatCalls, self, seatGone);
    of(made).seats_.push_back(made);
    of(made).tell(made);
  }
};

FakeSeat::FakeSeat(wl_display* display) {
  wl_global_create(display, &wl_seat_interface, 1, this, Protocols::bind);
}

void FakeSeat::plugIn(const std::string& keymap) {
  keymap_ = keymap;
  for (auto* seat : seats_) tell(seat);
  for (auto* keyboard : keyboards_) tellKeymap(keyboard);
}

void FakeSeat::tell(wl_resource* seat) const {
  const std::uint32_t keyboard = keymap_.empty() ? 0 : WL_SEAT_CAPABILITY_KEYBOARD;
  const std::uint32_t others =
      hasMouseAndTouch_ ? WL_SEAT_CAPABILITY_POINTER | WL_SEAT_CAPABILITY_TOUCH : 0;
  wl_seat_send_capabilities(seat, keyboard | others);
}

void FakeSeat::plugInMouseAndTouch() {
  hasMouseAndTouch_ = true;
  for (auto* seat : seats_) tell(seat);
}

void FakeSeat::point(wl_resource* surface, int x, int y) {
  for (auto* pointer : pointers_) {
    wl_pointer_send_enter(pointer, 0, surface, wl_fixed_from_int(x), wl_fixed_from_int(y));
  }
}

void FakeSeat::press(std::uint32_t button, bool isDown) {
  for (auto* pointer : pointers_) {
    wl_pointer_send_button(
        pointer, 0, 0, button,
        isDown ? WL_POINTER_BUTTON_STATE_PRESSED : WL_POINTER_BUTTON_STATE_RELEASED);
  }
}

void FakeSeat::touch(wl_resource* surface, int x, int y) {
  for (auto* each : touches_) {
    wl_touch_send_down(each, 0, 0, surface, 0, wl_fixed_from_int(x), wl_fixed_from_int(y));
    wl_touch_send_frame(each);
    wl_touch_send_up(each, 0, 0, 0);
    wl_touch_send_frame(each);
  }
}

void FakeSeat::tellKeymap(wl_resource* keyboard) const {
  const FileDescriptor file(memfd_create("keymap", MFD_CLOEXEC));
  const auto size = keymap_.size() + 1;
  if (write(file.get(), keymap_.c_str(), size) != static_cast<ssize_t>(size)) {
    throw std::runtime_error("no keymap");
  }
  wl_keyboard_send_keymap(keyboard, WL_KEYBOARD_KEYMAP_FORMAT_XKB_V1, file.get(),
                          static_cast<std::uint32_t>(size));
}

}  // namespace vantorel
