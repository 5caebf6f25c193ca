// SPDX-License-Identifier: MIT
#pragma once

#include <cstdint>
#include <memory>
#include <string>
#include <vector>

#include "platform/linux/x11/X11Connection.h"

namespace vantorel {

/// A tray that takes windows in when the test says so, and treats them as it says. Its window is at
/// the top left of the screen. It ends with this object, as a program that crashes does.
class ScriptedTray {
 public:
  struct Look {
    std::uint32_t colour = 0x202020;
    /// Tells of the visual that lets its background through, and has it itself.
    bool translucent = false;
    /// The visual that it tells of; 0 for none, or for what `translucent` says.
    std::uint32_t visual = 0;
    std::vector<std::uint32_t> colors = {};
  };

  static constexpr int width = 300;
  static constexpr int height = 60;

  /// Takes the place of whoever is the tray, and announces itself.
  ScriptedTray(const std::string& display, Look look);
  ~ScriptedTray();
  ScriptedTray(const ScriptedTray&) = delete;
  ScriptedTray& operator=(const ScriptedTray&) = delete;

  /// The windows that asked to be taken in, in order.
  [[nodiscard]] const std::vector<xcb_window_t>& requests();
  void announce() const;

  enum class AfterDeath { destroyed, handedBack };
  /// Takes the window in, so large, and shows it.
  void embed(xcb_window_t window, int wide, int high,
             AfterDeath after = AfterDeath::handedBack) const;
  void resize(xcb_window_t window, int wide, int high) const;
  void giveBack(xcb_window_t window) const;
  void destroy(xcb_window_t window) const;
  /// Ends the client that made the window.
  void killOwner(xcb_window_t window) const;
  /// Has a part of the window drawn again.
  void expose(xcb_window_t window) const;
  void press(xcb_window_t window, std::uint8_t button, std::int16_t x, std::int16_t y) const;
  /// Sends the window an account of its size that is not true.
  void lieAboutSize(xcb_window_t window, std::uint16_t wide, std::uint16_t high) const;

  [[nodiscard]] bool exists(xcb_window_t window) const;
  [[nodiscard]] std::uint8_t depth(xcb_window_t window) const;
  /// The pixel (0xRRGGBB) of the tray at that place, icons included.
  [[nodiscard]] std::uint32_t pixel(int x, int y) const;

 private:
  void create(const Look& look);

  std::unique_ptr<X11Connection> x11_;
  xcb_window_t window_;
  xcb_atom_t selection_;
  std::vector<xcb_window_t> requests_;
};

}  // namespace vantorel
