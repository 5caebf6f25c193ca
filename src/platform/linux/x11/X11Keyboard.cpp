// SPDX-License-Identifier: MIT
#include "platform/linux/x11/X11Keyboard.h"

#include <xcb/xinput.h>
#include <xkbcommon/xkbcommon-x11.h>

// The keyboard extension's header uses a word of the language as a name.
#define explicit explicit_
#include <xcb/xkb.h>
#undef explicit

#include <array>
#include <string>
#include <string_view>

namespace vantorel {

namespace {

template <class Type, void (*release)(Type*)>
struct Release {
  void operator()(Type* object) const { release(object); }
};
using Context = std::unique_ptr<xkb_context, Release<xkb_context, xkb_context_unref>>;
using Keymap = std::unique_ptr<xkb_keymap, Release<xkb_keymap, xkb_keymap_unref>>;

constexpr std::string_view syntheticSuffix = " XTEST keyboard";

KeyboardMap::Key keyOf(xkb_keymap* keymap, xkb_keycode_t code) {
  KeyboardMap::Key key;
  const auto groups = xkb_keymap_num_layouts_for_key(keymap, code);
  for (xkb_layout_index_t group = 0; group < groups; ++group) {
    X11KeySymbol unshifted = 0;
    const auto levels = xkb_keymap_num_levels_for_key(keymap, code, group);
    for (xkb_level_index_t level = 0; level < levels; ++level) {
      const xkb_keysym_t* symbols = nullptr;
      const int count = xkb_keymap_key_get_syms_by_level(keymap, code, group, level, &symbols);
      key.all.insert(key.all.end(), symbols, symbols + count);
      if (level == 0 && count == 1) unshifted = symbols[0];
    }
    key.unshifted.push_back(unshifted);
  }
  return key;
}

PressedKeys bitsOf(const std::uint8_t* bytes) {
  PressedKeys keys;
  for (std::size_t code = 0; code < keys.size(); ++code) {
    keys[code] = (bytes[code / 8] >> (code % 8) & 1U) != 0;
  }
  return keys;
}

}  // namespace

X11Keyboard::X11Keyboard(X11Connection& connection) : connection_(connection) {
  const int ready = xkb_x11_setup_xkb_extension(
      connection.xcb(), XKB_X11_MIN_MAJOR_XKB_VERSION, XKB_X11_MIN_MINOR_XKB_VERSION,
      XKB_X11_SETUP_XKB_EXTENSION_NO_FLAGS, nullptr, nullptr, &firstEvent_, nullptr);
  if (ready != 0) deviceId_ = xkb_x11_get_core_keyboard_device_id(connection.xcb());
  if (connection.extension(xcb_input_id) != nullptr) {
    // Announces which version this connection speaks; without it no device can be asked.
    const auto version = connection.reply(xcb_input_xi_query_version_reply,
                                          xcb_input_xi_query_version(connection.xcb(), 2, 2));
  }
}

std::optional<KeyboardMap> X11Keyboard::readMap() const {
  if (!isAvailable()) return std::nullopt;
  const Context context(xkb_context_new(XKB_CONTEXT_NO_DEFAULT_INCLUDES));
  if (!context) return std::nullopt;
  const auto modifiers = xcb_get_modifier_mapping(connection_.xcb());
  const Keymap keymap(xkb_x11_keymap_new_from_device(context.get(), connection_.xcb(), deviceId_,
                                                     XKB_KEYMAP_COMPILE_NO_FLAGS));
  const auto reply = connection_.reply(xcb_get_modifier_mapping_reply, modifiers);
  if (!keymap || !reply) return std::nullopt;
  KeyboardMap map;
  for (std::size_t code = 0; code < map.keys.size(); ++code) {
    map.keys[code] = keyOf(keymap.get(), static_cast<xkb_keycode_t>(code));
  }
  const auto* codes = xcb_get_modifier_mapping_keycodes(reply.get());
  for (std::size_t modifier = 0; modifier < map.modifierKeys.size(); ++modifier) {
    for (std::size_t i = 0; i < reply->keycodes_per_modifier; ++i) {
      const auto code = codes[modifier * reply->keycodes_per_modifier + i];
      if (code != 0) map.modifierKeys[modifier].push_back(code);
    }
  }
  return map;
}

std::optional<KeyboardState> X11Keyboard::readState() const {
  if (!isAvailable()) return std::nullopt;
  const auto state = connection_.reply(
      xcb_xkb_get_state_reply, xcb_xkb_get_state(connection_.xcb(), XCB_XKB_ID_USE_CORE_KBD));
  if (!state) return std::nullopt;
  return KeyboardState{state->group, {state->latchedMods, state->lockedMods}};
}

X11Keyboard::Keyboards X11Keyboard::keyboards() const {
  Keyboards result;
  if (connection_.extension(xcb_input_id) == nullptr) return result;
  const auto devices =
      connection_.reply(xcb_input_xi_query_device_reply,
                        xcb_input_xi_query_device(connection_.xcb(), XCB_INPUT_DEVICE_ALL));
  if (!devices) return result;
  for (auto it = xcb_input_xi_query_device_infos_iterator(devices.get()); it.rem > 0;
       xcb_input_xi_device_info_next(&it)) {
    if (it.data->type != XCB_INPUT_DEVICE_TYPE_SLAVE_KEYBOARD) continue;
    const std::string_view name(xcb_input_xi_device_info_name(it.data),
                                static_cast<std::size_t>(it.data->name_len));
    const bool synthetic = name.size() >= syntheticSuffix.size() &&
                           name.substr(name.size() - syntheticSuffix.size()) == syntheticSuffix;
    auto& list = synthetic ? result.synthetic : result.real;
    list.push_back(static_cast<std::uint8_t>(it.data->deviceid));
  }
  return result;
}

PressedKeys X11Keyboard::pressedOn(const std::vector<std::uint8_t>& devices) const {
  std::vector<xcb_input_query_device_state_cookie_t> cookies;
  cookies.reserve(devices.size());
  for (const auto device : devices) {
    cookies.push_back(xcb_input_query_device_state(connection_.xcb(), device));
  }
  PressedKeys keys;
  for (const auto cookie : cookies) {
    const auto state = connection_.reply(xcb_input_query_device_state_reply, cookie);
    if (!state) continue;
    for (auto it = xcb_input_query_device_state_classes_iterator(state.get()); it.rem > 0;
         xcb_input_input_state_next(&it)) {
      if (it.data->class_id != XCB_INPUT_INPUT_CLASS_KEY) continue;
      const auto* data = reinterpret_cast<const xcb_input_key_state_t*>(it.data);
      keys |= bitsOf(data->keys);
    }
  }
  return keys;
}

KeyPresses X11Keyboard::presses() const {
  KeyPresses result;
  const auto asked = xcb_query_keymap(connection_.xcb());
  const auto devices = keyboards();
  result.physical = pressedOn(devices.real);
  result.synthetic = pressedOn(devices.synthetic);
  const auto keymap = connection_.reply(xcb_query_keymap_reply, asked);
  if (keymap) result.seen = bitsOf(keymap->keys);
  return result;
}

void X11Keyboard::clearSticky(X11Modifiers locked) const {
  constexpr X11Modifiers all = 0xFF;
  xcb_xkb_latch_lock_state(connection_.xcb(), XCB_XKB_ID_USE_CORE_KBD, locked, 0, 0, 0, all, 0, 0);
}

void X11Keyboard::lock(X11Modifiers locked) const {
  xcb_xkb_latch_lock_state(connection_.xcb(), XCB_XKB_ID_USE_CORE_KBD, locked, locked, 0, 0, 0, 0,
                           0);
}

void X11Keyboard::watchMap() const {
  if (!isAvailable()) return;
  constexpr std::uint16_t events =
      XCB_XKB_EVENT_TYPE_NEW_KEYBOARD_NOTIFY | XCB_XKB_EVENT_TYPE_MAP_NOTIFY;
  constexpr std::uint16_t parts =
      XCB_XKB_MAP_PART_KEY_SYMS | XCB_XKB_MAP_PART_MODIFIER_MAP | XCB_XKB_MAP_PART_KEY_TYPES;
  xcb_xkb_select_events(connection_.xcb(), XCB_XKB_ID_USE_CORE_KBD, events, 0, events, parts, parts,
                        nullptr);
}

bool X11Keyboard::isMapChange(const xcb_generic_event_t& event) const {
  const auto type = event.response_type & 0x7FU;
  if (type == XCB_MAPPING_NOTIFY) {
    return reinterpret_cast<const xcb_mapping_notify_event_t&>(event).request !=
           XCB_MAPPING_POINTER;
  }
  return isAvailable() && type == firstEvent_;
}

void X11Keyboard::makeRepeatDetectable() const {
  if (!isAvailable()) return;
  const auto flags = connection_.reply(
      xcb_xkb_per_client_flags_reply,
      xcb_xkb_per_client_flags(connection_.xcb(), XCB_XKB_ID_USE_CORE_KBD,
                               XCB_XKB_PER_CLIENT_FLAG_DETECTABLE_AUTO_REPEAT,
                               XCB_XKB_PER_CLIENT_FLAG_DETECTABLE_AUTO_REPEAT, 0, 0, 0));
}

}  // namespace vantorel
