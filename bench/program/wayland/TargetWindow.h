// SPDX-License-Identifier: MIT
#pragma once

#include <optional>
#include <string>

#include "program/wayland/Compositor.h"

struct wl_buffer;
struct wl_compositor;
struct wl_data_device;
struct wl_data_device_manager;
struct wl_data_offer;
struct wl_keyboard;
struct wl_surface;
struct xdg_surface;
struct xdg_toplevel;
struct xdg_wm_base;

namespace vantorel::bench {

/// A window that does with a pressed Ctrl+V what a text field does: it asks for the clipboard.
class TargetWindow {
 public:
  /// Shows it, and waits until it has the keyboard.
  explicit TargetWindow(Compositor& compositor);
  ~TargetWindow();
  TargetWindow(const TargetWindow&) = delete;
  TargetWindow& operator=(const TargetWindow&) = delete;

  [[nodiscard]] bool hasKeyboard() const { return hasKeyboard_; }
  /// Waits until a text has arrived and answers when it did.
  Clock::time_point waitForText();

 private:
  struct Listeners;
  void show();
  void keyDown(std::uint32_t key);
  void paste();

  Compositor& compositor_;
  wl_compositor* surfaces_;
  xdg_wm_base* windows_;
  wl_surface* surface_;
  xdg_surface* role_;
  xdg_toplevel* window_;
  wl_buffer* buffer_ = nullptr;
  wl_keyboard* keyboard_;
  wl_data_device_manager* clipboards_;
  wl_data_device* clipboard_;
  wl_data_offer* offer_ = nullptr;
  bool hasKeyboard_ = false;
  bool isControlDown_ = false;
  std::optional<Clock::time_point> arrived_;
};

}  // namespace vantorel::bench
