// SPDX-License-Identifier: MIT
#pragma once

#include <functional>
#include <optional>
#include <string>
#include <vector>

#include "platform/Bitmap.h"
#include "platform/linux/x11/TrayManager.h"
#include "platform/linux/x11/TrayPainter.h"

namespace vantorel {

/// A click on the icon, and where the icon is, in the screen's pixels.
struct TrayClick {
  enum class Button { left, middle, right };
  Button button = Button::left;
  int x = 0;
  int y = 0;
  int width = 0;
  int height = 0;
};

/// The window of one icon in one tray, which the tray takes in, places, sizes and shows; or never
/// does. Nothing here waits for the tray. The icon is square, so that it does not matter how the
/// tray lies. On one thread.
class TrayWindow {
 public:
  struct Wishes {
    int side = 22;           // pixels, until the tray says otherwise
    std::string title = {};  // which trays show as they like
  };

  /// All outlive this. `onClick` is called from `handle()`.
  TrayWindow(X11Connection& connection, const TrayPainter& painter, const TrayManager& manager,
             const Wishes& wishes, std::function<void(const TrayClick&)> onClick);
  ~TrayWindow();
  TrayWindow(const TrayWindow&) = delete;
  TrayWindow& operator=(const TrayWindow&) = delete;

  void handle(const xcb_generic_event_t& event);
  /// Whether a tray has it.
  [[nodiscard]] bool isEmbedded() const { return state_ == State::embedded; }
  /// Whether it was given back, or destroyed: there will be no icon by this window any more.
  [[nodiscard]] bool isGone() const { return state_ == State::gone; }
  /// Whether the pointer is on it, and on no other window that covers it there. Asks the server:
  /// while another client has the pointer grabbed nothing tells where it goes.
  [[nodiscard]] bool hasPointer() const;
  /// The side of the picture that fits, in pixels; 0 where none can be seen.
  [[nodiscard]] int pictureSide() const;

  /// Draws the picture, of `pictureSide()`, in a colour that is seen there. Null draws nothing.
  void paint(const SharedBitmap& picture) const;
  /// Whether what was drawn has been lost since this was last asked.
  [[nodiscard]] bool takeDamage();
  void setTitle(const std::string& title) const;

 private:
  void create(int side);
  void describe(int side) const;
  void released(const xcb_button_release_event_t& event) const;
  [[nodiscard]] std::vector<std::uint32_t> whatIsBehind(PixelArea area) const;
  [[nodiscard]] std::vector<std::uint32_t> whatIsAround() const;

  X11Connection& connection_;
  const TrayPainter& painter_;
  const TrayFacts facts_;
  std::function<void(const TrayClick&)> onClick_;
  xcb_window_t window_;
  xcb_visualid_t visual_ = 0;
  xcb_colormap_t colormap_ = XCB_NONE;  // none but for a translucent window
  enum class State { asked, embedded, gone } state_ = State::asked;
  bool damaged_ = false;
  int width_ = 0;
  int height_ = 0;
};

}  // namespace vantorel
