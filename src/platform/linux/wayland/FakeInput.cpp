// SPDX-License-Identifier: MIT
#include "platform/linux/wayland/FakeInput.h"

#include <fake-input-client.h>
#include <keystate-client.h>
#include <linux/input-event-codes.h>
#include <sys/mman.h>
#include <wayland-client.h>
#include <xkbcommon/xkbcommon.h>

#include <algorithm>

#include "platform/linux/windows/KeyCodeTable.h"

namespace vantorel {

namespace {

constexpr std::uint32_t protocolVersion = 4;
/// Earlier ones tell of the Lock keys alone.
constexpr std::uint32_t modifiersVersion = 5;

constexpr std::array modifierKeys = {KEY_LEFTSHIFT, KEY_RIGHTSHIFT, KEY_LEFTCTRL, KEY_RIGHTCTRL,
                                     KEY_LEFTALT,   KEY_RIGHTALT,   KEY_LEFTMETA, KEY_RIGHTMETA};

/// The key that yields a v without modifiers in the keymap's layouts; absent where none does, and
/// where they disagree: which of them is in force is told to the window in front alone.
std::optional<KernelKey> keyYieldingV(xkb_keymap* keymap) {
  std::optional<KernelKey> found;
  for (xkb_layout_index_t layout = 0; layout < xkb_keymap_num_layouts(keymap); ++layout) {
    const auto last = xkb_keymap_max_keycode(keymap);
    for (auto key = xkb_keymap_min_keycode(keymap); key <= last; ++key) {
      const xkb_keysym_t* symbols = nullptr;
      const auto count = xkb_keymap_key_get_syms_by_level(keymap, key, layout, 0, &symbols);
      if (count != 1 || symbols[0] != XKB_KEY_v) continue;
      if (found && *found != key - x11KeyOffset) return std::nullopt;
      found = key - x11KeyOffset;
    }
  }
  return found;
}

}  // namespace

/// What the compositor calls.
struct FakeInput::Listeners {
  static FakeInput& of(void* self) { return *static_cast<FakeInput*>(self); }

  static constexpr wl_keyboard_listener keyboard{
      .keymap =
          [](void* self, wl_keyboard* /*keyboard*/, std::uint32_t format, std::int32_t file,
             std::uint32_t bytes) {
            const FileDescriptor keymap(file);
            if (format == WL_KEYBOARD_KEYMAP_FORMAT_XKB_V1) of(self).readKeymap(keymap, bytes);
          },
      .enter = [](void*, wl_keyboard*, std::uint32_t, wl_surface*, wl_array*) {},
      .leave = [](void*, wl_keyboard*, std::uint32_t, wl_surface*) {},
      .key = [](void*, wl_keyboard*, std::uint32_t, std::uint32_t, std::uint32_t, std::uint32_t) {},
      .modifiers = [](void*, wl_keyboard*, std::uint32_t, std::uint32_t, std::uint32_t,
                      std::uint32_t, std::uint32_t) {},
      .repeat_info = [](void*, wl_keyboard*, std::int32_t, std::int32_t) {}};
  static constexpr wl_seat_listener seat{
      .capabilities =
          [](void* self, wl_seat* seat, std::uint32_t capabilities) {
            auto*& keyboard = of(self).keyboard_;
            const bool isThere = (capabilities & WL_SEAT_CAPABILITY_KEYBOARD) != 0;
            if (!isThere || keyboard != nullptr) return;
            keyboard = wl_seat_get_keyboard(seat);
            wl_keyboard_add_listener(keyboard, &Listeners::keyboard, self);
          },
      .name = [](void*, wl_seat*, const char*) {}};
  static constexpr org_kde_kwin_keystate_listener states{
      .stateChanged = [](void* self, org_kde_kwin_keystate* /*states*/, std::uint32_t key,
                         std::uint32_t state) {
        auto& held = of(self).held_;
        if (key < held.size()) held[key] = state == ORG_KDE_KWIN_KEYSTATE_STATE_PRESSED;
      }};
};

std::optional<std::string> FakeInput::protocol(const WaylandConnection& connection) {
  const auto* const name = org_kde_kwin_fake_input_interface.name;
  const bool isThere =
      connection.version(name) >= protocolVersion && connection.version(wl_seat_interface.name) > 0;
  return isThere ? std::optional(name + (" " + std::to_string(protocolVersion))) : std::nullopt;
}

std::unique_ptr<FakeInput> FakeInput::open(WaylandThread& thread,
                                           std::unique_ptr<WaylandConnection> connection) {
  if (!connection || !protocol(*connection)) return nullptr;
  std::unique_ptr<FakeInput> made(new FakeInput(thread, std::move(connection)));
  if (!made->bind() || !made->keys_.listen()) return nullptr;
  return made;
}

bool FakeInput::bind() {
  auto& connection = keys_.connection();
  input_ = static_cast<org_kde_kwin_fake_input*>(
      connection.bind(org_kde_kwin_fake_input_interface, protocolVersion));
  org_kde_kwin_fake_input_authenticate(input_, "Vantorel", "pastes what was chosen");
  if (connection.version(org_kde_kwin_keystate_interface.name) >= modifiersVersion) {
    states_ = static_cast<org_kde_kwin_keystate*>(
        connection.bind(org_kde_kwin_keystate_interface, modifiersVersion));
    org_kde_kwin_keystate_add_listener(states_, &Listeners::states, this);
    org_kde_kwin_keystate_fetchStates(states_);
  }
  seat_ = static_cast<wl_seat*>(connection.bind(wl_seat_interface, 1));
  wl_seat_add_listener(seat_, &Listeners::seat, this);
  v_ = KEY_V;  // until a keymap says otherwise
  // The first answer says whether there is a keyboard, the second what is on it.
  return keys_.settle() && keys_.settle();
}

FakeInput::~FakeInput() {
  keys_.leave();
  if (keyboard_ != nullptr) wl_keyboard_destroy(keyboard_);
  if (seat_ != nullptr) wl_seat_destroy(seat_);
  if (states_ != nullptr) org_kde_kwin_keystate_destroy(states_);
  if (input_ != nullptr) org_kde_kwin_fake_input_destroy(input_);
}

void FakeInput::readKeymap(const FileDescriptor& file, std::uint32_t bytes) {
  v_.reset();
  auto* const text = mmap(nullptr, bytes, PROT_READ, MAP_PRIVATE, file.get(), 0);
  if (text == MAP_FAILED) return;
  auto* const context = xkb_context_new(XKB_CONTEXT_NO_DEFAULT_INCLUDES);
  xkb_context_set_log_level(context, XKB_LOG_LEVEL_CRITICAL);
  // Its last byte is a 0.
  auto* const keymap = xkb_keymap_new_from_buffer(
      context, static_cast<const char*>(text), bytes == 0 ? 0 : bytes - 1,
      XKB_KEYMAP_FORMAT_TEXT_V1, XKB_KEYMAP_COMPILE_NO_FLAGS);
  munmap(text, bytes);
  if (keymap != nullptr) v_ = keyYieldingV(keymap);
  xkb_keymap_unref(keymap);
  xkb_context_unref(context);
}

bool FakeInput::isSomethingHeld() const {
  return std::any_of(held_.begin() + ORG_KDE_KWIN_KEYSTATE_KEY_ALT, held_.end(),
                     [](bool held) { return held; });
}

void FakeInput::letGo() {
  for (const auto key : modifierKeys) {
    org_kde_kwin_fake_input_keyboard_key(input_, static_cast<KernelKey>(key),
                                         WL_KEYBOARD_KEY_STATE_RELEASED);
  }
}

ChordKeyboard::Outcome FakeInput::press(const KernelChord& chord) {
  if (!keys_.isOpen() || !keys_.settle()) return Outcome::failed;
  if (isSomethingHeld()) return Outcome::held;
  if (states_ == nullptr) letGo();
  const auto send = [this](KernelKey key, wl_keyboard_key_state state) {
    org_kde_kwin_fake_input_keyboard_key(input_, key, state);
  };
  for (const auto key : chord.modifiers) send(key, WL_KEYBOARD_KEY_STATE_PRESSED);
  send(chord.key, WL_KEYBOARD_KEY_STATE_PRESSED);
  send(chord.key, WL_KEYBOARD_KEY_STATE_RELEASED);
  std::for_each(chord.modifiers.rbegin(), chord.modifiers.rend(),
                [&](KernelKey key) { send(key, WL_KEYBOARD_KEY_STATE_RELEASED); });
  return keys_.settle() ? Outcome::pressed : Outcome::failed;
}

}  // namespace vantorel
