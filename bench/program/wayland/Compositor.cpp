// SPDX-License-Identifier: MIT
#include "program/wayland/Compositor.h"

#include <poll.h>
#include <sys/mman.h>
#include <unistd.h>
#include <virtual-keyboard-client.h>
#include <wayland-client.h>

#include <algorithm>
#include <stdexcept>

namespace vantorel::bench {

namespace {

constexpr std::string_view keymap =
    "xkb_keymap { xkb_keycodes { include \"evdev+aliases(qwerty)\" };"
    " xkb_types { include \"complete\" }; xkb_compat { include \"complete\" };"
    " xkb_symbols { include \"pc+us+inet(evdev)\" }; };";

}  // namespace

/// What the compositor calls.
struct Compositor::Listeners {
  static constexpr wl_registry_listener registry{
      [](void* self, wl_registry* /*registry*/, std::uint32_t name, const char* interface,
         std::uint32_t /*version*/) {
        static_cast<Compositor*>(self)->globals_.emplace(interface, name);
      },
      [](void* /*self*/, wl_registry* /*registry*/, std::uint32_t /*name*/) {}};
};

Compositor::Compositor() : display_(wl_display_connect(nullptr)) {
  if (display_ == nullptr) throw std::runtime_error("there is no compositor to measure on");
  registry_ = wl_display_get_registry(display_);
  wl_registry_add_listener(registry_, &Listeners::registry, this);
  settle();
  seat_ = bind<wl_seat>(wl_seat_interface, 1);
  memory_ = bind<wl_shm>(wl_shm_interface, 1);
  output_ = bind<wl_output>(wl_output_interface, 1);
  plugIn();
}

Compositor::~Compositor() {
  zwp_virtual_keyboard_v1_destroy(keyboard_);
  zwp_virtual_keyboard_manager_v1_destroy(keyboards_);
  wl_output_destroy(output_);
  wl_shm_destroy(memory_);
  wl_seat_destroy(seat_);
  wl_registry_destroy(registry_);
  wl_display_disconnect(display_);
}

void* Compositor::bindAny(const wl_interface& interface, std::uint32_t version) const {
  const auto found = globals_.find(std::string_view(interface.name));
  if (found == globals_.end()) {
    throw std::runtime_error(std::string("the compositor lacks ") + interface.name);
  }
  return wl_registry_bind(registry_, found->second, &interface, version);
}

void Compositor::plugIn() {
  keyboards_ = bind<zwp_virtual_keyboard_manager_v1>(zwp_virtual_keyboard_manager_v1_interface, 1);
  keyboard_ = zwp_virtual_keyboard_manager_v1_create_virtual_keyboard(keyboards_, seat_);
  const int file = memfd_create("keymap", MFD_CLOEXEC);
  const auto size = keymap.size() + 1;  // it ends with a zero
  if (ftruncate(file, static_cast<off_t>(size)) != 0 ||
      write(file, keymap.data(), keymap.size()) != static_cast<ssize_t>(keymap.size())) {
    throw std::runtime_error("cannot describe a keyboard");
  }
  zwp_virtual_keyboard_v1_keymap(keyboard_, WL_KEYBOARD_KEYMAP_FORMAT_XKB_V1, file,
                                 static_cast<std::uint32_t>(size));
  settle();
  close(file);
}

int Compositor::descriptor() const { return wl_display_get_fd(display_); }

void Compositor::tapKey(std::uint32_t key) const {
  const auto now =
      std::chrono::duration_cast<std::chrono::milliseconds>(Clock::now().time_since_epoch())
          .count();
  for (const auto state : {WL_KEYBOARD_KEY_STATE_PRESSED, WL_KEYBOARD_KEY_STATE_RELEASED}) {
    zwp_virtual_keyboard_v1_key(keyboard_, static_cast<std::uint32_t>(now), key, state);
  }
  wl_display_flush(display_);
}

bool Compositor::listen(Clock::time_point deadline) const {
  while (wl_display_prepare_read(display_) != 0) {
    if (wl_display_dispatch_pending(display_) > 0) return true;
  }
  wl_display_flush(display_);
  const auto left = std::chrono::ceil<std::chrono::milliseconds>(deadline - Clock::now());
  pollfd waiting{descriptor(), POLLIN, 0};
  const auto span = static_cast<int>(std::max<std::int64_t>(left.count(), 0));
  if (poll(&waiting, 1, span) <= 0) {
    wl_display_cancel_read(display_);
    return false;
  }
  if (wl_display_read_events(display_) < 0 || wl_display_dispatch_pending(display_) < 0) {
    throw std::runtime_error("the compositor is gone");
  }
  return true;
}

void Compositor::listenUntil(std::string_view what, const std::function<bool()>& condition) const {
  const auto deadline = Clock::now() + std::chrono::seconds(10);
  while (!condition()) {
    if (!listen(deadline) && Clock::now() >= deadline) failWaiting(what);
  }
}

void Compositor::settle() const {
  if (wl_display_roundtrip(display_) < 0) throw std::runtime_error("the compositor is gone");
}

}  // namespace vantorel::bench
