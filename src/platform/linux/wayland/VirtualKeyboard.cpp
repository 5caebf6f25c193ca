// SPDX-License-Identifier: MIT
#include "platform/linux/wayland/VirtualKeyboard.h"

#include <linux/input-event-codes.h>
#include <sys/mman.h>
#include <virtual-keyboard-client.h>
#include <wayland-client.h>
#include <xkbcommon/xkbcommon.h>

#include <algorithm>
#include <cstdlib>
#include <cstring>
#include <utility>

#include "base/FileDescriptor.h"

namespace vantorel {

namespace {

constexpr std::uint32_t protocolVersion = 1;

struct Keymap {
  FileDescriptor file;
  std::uint32_t bytes = 0;  // with the 0 at its end
};

template <auto release>
struct Release {
  template <class Object>
  void operator()(Object* object) const {
    release(object);
  }
};

/// A plain keyboard, whatever the user's environment makes of layouts.
std::optional<Keymap> plainKeymap() {
  const std::unique_ptr<xkb_context, Release<xkb_context_unref>> context(
      xkb_context_new(XKB_CONTEXT_NO_ENVIRONMENT_NAMES));
  if (!context) return std::nullopt;
  const xkb_rule_names names{
      .rules = "evdev", .model = "pc105", .layout = "us", .variant = "", .options = ""};
  const std::unique_ptr<xkb_keymap, Release<xkb_keymap_unref>> map(
      xkb_keymap_new_from_names(context.get(), &names, XKB_KEYMAP_COMPILE_NO_FLAGS));
  if (!map) return std::nullopt;
  const std::unique_ptr<char, Release<std::free>> text(
      xkb_keymap_get_as_string(map.get(), XKB_KEYMAP_FORMAT_TEXT_V1));
  if (!text) return std::nullopt;
  Keymap made{FileDescriptor(memfd_create("keymap", MFD_CLOEXEC)),
              static_cast<std::uint32_t>(std::strlen(text.get()) + 1)};
  const auto written =
      retryingInterrupted([&] { return ::write(made.file.get(), text.get(), made.bytes); });
  return written == static_cast<ssize_t>(made.bytes) ? std::optional(std::move(made))
                                                     : std::nullopt;
}

/// The modifier that the key sets in the plain keymap, as its bit; 0 for other keys.
std::uint32_t modifierOf(KernelKey key) {
  switch (key) {
    case KEY_LEFTSHIFT:
      return 1U << 0U;
    case KEY_LEFTCTRL:
      return 1U << 2U;
    case KEY_LEFTALT:
      return 1U << 3U;
    default:
      return 0;
  }
}

/// In milliseconds of the clock that compositors stamp keys with.
std::uint32_t stamp() {
  return static_cast<std::uint32_t>(std::chrono::duration_cast<std::chrono::milliseconds>(
                                        std::chrono::steady_clock::now().time_since_epoch())
                                        .count());
}

}  // namespace

std::optional<std::string> VirtualKeyboard::protocol(const WaylandConnection& connection) {
  const auto* const name = zwp_virtual_keyboard_manager_v1_interface.name;
  const bool isThere =
      connection.version(name) >= protocolVersion && connection.version(wl_seat_interface.name) > 0;
  return isThere ? std::optional(name + (" " + std::to_string(protocolVersion))) : std::nullopt;
}

std::unique_ptr<VirtualKeyboard> VirtualKeyboard::open(
    WaylandThread& thread, std::unique_ptr<WaylandConnection> connection) {
  if (!connection || !protocol(*connection)) return nullptr;
  std::unique_ptr<VirtualKeyboard> made(new VirtualKeyboard(thread, std::move(connection)));
  if (!made->bind() || !made->keys_.listen()) return nullptr;
  return made;
}

bool VirtualKeyboard::bind() {
  const auto keymap = plainKeymap();
  if (!keymap) return false;
  seat_ = static_cast<wl_seat*>(keys_.connection().bind(wl_seat_interface, 1));
  manager_ = static_cast<zwp_virtual_keyboard_manager_v1*>(
      keys_.connection().bind(zwp_virtual_keyboard_manager_v1_interface, protocolVersion));
  keyboard_ = zwp_virtual_keyboard_manager_v1_create_virtual_keyboard(manager_, seat_);
  zwp_virtual_keyboard_v1_keymap(keyboard_, WL_KEYBOARD_KEYMAP_FORMAT_XKB_V1, keymap->file.get(),
                                 keymap->bytes);
  return keys_.settle();
}

VirtualKeyboard::~VirtualKeyboard() {
  keys_.leave();
  if (keyboard_ != nullptr) zwp_virtual_keyboard_v1_destroy(keyboard_);
  if (manager_ != nullptr) zwp_virtual_keyboard_manager_v1_destroy(manager_);
  if (seat_ != nullptr) wl_seat_destroy(seat_);
}

std::optional<KernelKey> VirtualKeyboard::keyOfV() const { return KEY_V; }

ChordKeyboard::Outcome VirtualKeyboard::press(const KernelChord& chord) {
  if (!keys_.isOpen()) return Outcome::failed;
  std::uint32_t held = 0;
  // Compositors take the modifiers from nowhere else than here.
  const auto send = [&](KernelKey key, wl_keyboard_key_state state) {
    zwp_virtual_keyboard_v1_key(keyboard_, stamp(), key, state);
    const auto modifier = modifierOf(key);
    if (modifier == 0) return;
    held = state == WL_KEYBOARD_KEY_STATE_PRESSED ? held | modifier : held & ~modifier;
    zwp_virtual_keyboard_v1_modifiers(keyboard_, held, 0, 0, 0);
  };
  for (const auto key : chord.modifiers) send(key, WL_KEYBOARD_KEY_STATE_PRESSED);
  send(chord.key, WL_KEYBOARD_KEY_STATE_PRESSED);
  send(chord.key, WL_KEYBOARD_KEY_STATE_RELEASED);
  std::for_each(chord.modifiers.rbegin(), chord.modifiers.rend(),
                [&](KernelKey key) { send(key, WL_KEYBOARD_KEY_STATE_RELEASED); });
  return keys_.settle() ? Outcome::pressed : Outcome::failed;
}

}  // namespace vantorel
