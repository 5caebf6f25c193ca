// SPDX-License-Identifier: MIT
#include "desktop/wayland/FakeKeyboards.h"

#include <sys/mman.h>
#include <unistd.h>
#include <virtual-keyboard-server.h>
#include <wayland-server.h>

#include <utility>

namespace vantorel {

/// What clients call.
struct FakeKeyboards::Protocols {
  static FakeKeyboards& of(wl_resource* resource) {
    return *static_cast<FakeKeyboards*>(wl_resource_get_user_data(resource));
  }
  static void destroy(wl_client* /*client*/, wl_resource* resource) {
    wl_resource_destroy(resource);
  }

  static void keymap(wl_client* /*client*/, wl_resource* keyboard, std::uint32_t /*format*/,
                     int file, std::uint32_t size) {
    const FileDescriptor end(file);
    auto* const text = mmap(nullptr, size, PROT_READ, MAP_PRIVATE, end.get(), 0);
    if (text == MAP_FAILED) return;
    of(keyboard).keymap_.assign(static_cast<const char*>(text), size);
    munmap(text, size);
  }
  static void key(wl_client* /*client*/, wl_resource* keyboard, std::uint32_t /*time*/,
                  std::uint32_t code, std::uint32_t state) {
    of(keyboard).key(keyboard, code, state == WL_KEYBOARD_KEY_STATE_PRESSED);
  }
  static void modifiers(wl_client* /*client*/, wl_resource* keyboard, std::uint32_t held,
                        std::uint32_t /*latched*/, std::uint32_t /*locked*/,
                        std::uint32_t /*group*/) {
    of(keyboard).pressed_.push_back("modifiers " + std::to_string(held));
  }
  static constexpr struct zwp_virtual_keyboard_v1_interface keyboardCalls {
    keymap, key, modifiers, destroy
  };

  static void makeKeyboard(wl_client* client, wl_resource* manager, wl_resource* /*seat*/,
                           std::uint32_t id) {
    auto& self = of(manager);
    if (self.manner_ == Manner::refusing) {
      wl_resource_post_error(manager, 0, "not you");
      return;
    }
    auto* const made = wl_resource_create(client, &zwp_virtual_keyboard_v1_interface, 1, id);
    wl_resource_set_implementation(made, &keyboardCalls, &self, nullptr);
  }
  static constexpr struct zwp_virtual_keyboard_manager_v1_interface managerCalls { makeKeyboard };
  static void bindManager(wl_client* client, void* self, std::uint32_t version, std::uint32_t id) {
    auto* const made = wl_resource_create(client, &zwp_virtual_keyboard_manager_v1_interface,
                                          static_cast<int>(version), id);
    wl_resource_set_implementation(made, &managerCalls, self, nullptr);
  }
};

FakeKeyboards::FakeKeyboards(FakeCompositor& compositor, Manner manner)
    : compositor_(compositor), manner_(manner) {
  compositor_.call([this] {
    wl_global_create(compositor_.display(), &zwp_virtual_keyboard_manager_v1_interface, 1, this,
                     Protocols::bindManager);
  });
}

void FakeKeyboards::key(wl_resource* keyboard, std::uint32_t code, bool isDown) {
  pressed_.push_back((isDown ? "down " : "up ") + std::to_string(code));
  if (manner_ == Manner::hangingUp) wl_resource_post_error(keyboard, 0, "no more");
  if (manner_ == Manner::silent) silence_.pass();
  if (isDown && !comesMeanwhile_.empty()) {
    compositor_.tellFront(std::exchange(comesMeanwhile_, {}));
  }
}

std::vector<std::string> FakeKeyboards::pressed() {
  std::vector<std::string> found;
  compositor_.call([&] { found = pressed_; });
  return found;
}

std::string FakeKeyboards::keymap() {
  std::string found;
  compositor_.call([&] { found = keymap_; });
  return found;
}

void FakeKeyboards::bringToFrontMeanwhile(const std::string& appId) {
  compositor_.call([&] { comesMeanwhile_ = appId; });
}

}  // namespace vantorel
