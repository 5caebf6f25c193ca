// SPDX-License-Identifier: MIT
#pragma once

#include <xcb/xcb.h>

#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "program/Timing.h"

namespace vantorel::bench {

struct FreeEvent {
  void operator()(xcb_generic_event_t* event) const noexcept;
};
using Event = std::unique_ptr<xcb_generic_event_t, FreeEvent>;

/// Physical places of the keys that the measurements press (evdev keycodes).
namespace key {
inline constexpr std::uint8_t super = 133;
inline constexpr std::uint8_t shift = 50;
inline constexpr std::uint8_t v = 55;
inline constexpr std::uint8_t a = 38;
inline constexpr std::uint8_t enter = 36;
inline constexpr std::uint8_t escape = 9;
inline constexpr std::uint8_t backSpace = 22;
}  // namespace key

/// One connection to the X server and what every measurement does with it. One thread.
class Screen {
 public:
  /// Connects to $DISPLAY; throws std::runtime_error when there is none or an extension is missing.
  Screen();
  ~Screen();
  Screen(const Screen&) = delete;
  Screen& operator=(const Screen&) = delete;

  [[nodiscard]] xcb_connection_t* connection() const { return connection_; }
  [[nodiscard]] xcb_window_t root() const { return root_; }
  [[nodiscard]] int descriptor() const { return xcb_get_file_descriptor(connection_); }
  [[nodiscard]] std::uint8_t firstDamageEvent() const { return firstDamageEvent_; }
  [[nodiscard]] xcb_atom_t atom(std::string_view name) const;

  void pressKey(std::uint8_t keycode) const;
  void releaseKey(std::uint8_t keycode) const;
  void tapKey(std::uint8_t keycode) const;
  /// Super, Shift and V go down; answers the moment before V's press was sent. They come up again.
  Clock::time_point pressShortcut() const;

  /// The next event, waited for until `deadline`.
  [[nodiscard]] Event nextEvent(Clock::time_point deadline) const;
  void discardEvents() const;

  [[nodiscard]] std::string title(xcb_window_t window) const;
  [[nodiscard]] bool isVisible(xcb_window_t window) const;
  [[nodiscard]] xcb_window_t focus() const;
  /// What the window manager says is in front; it says so a moment after the focus has gone there.
  [[nodiscard]] xcb_window_t active() const;
  [[nodiscard]] std::vector<xcb_window_t> children(xcb_window_t window) const;
  /// The visible window with this title, frames of a window manager looked through.
  [[nodiscard]] std::optional<xcb_window_t> visibleWindow(std::string_view title) const;
  /// The window's pixels, 32 bits each; empty when it cannot be read now.
  [[nodiscard]] std::vector<std::uint32_t> pixels(xcb_window_t window) const;

 private:
  [[nodiscard]] std::optional<xcb_window_t> find(xcb_window_t parent, std::string_view title) const;
  void fakeKey(std::uint8_t type, std::uint8_t keycode) const;

  xcb_connection_t* connection_ = nullptr;
  xcb_window_t root_ = XCB_NONE;
  std::uint8_t firstDamageEvent_ = 0;
};

}  // namespace vantorel::bench
