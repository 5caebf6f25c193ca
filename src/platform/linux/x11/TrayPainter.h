// SPDX-License-Identifier: MIT
#pragma once

#include <xcb/render.h>

#include <cstdint>
#include <map>
#include <optional>
#include <vector>

#include "platform/linux/x11/X11Connection.h"

namespace vantorel {

/// A rectangle of pixels in a window, from its top left.
struct PixelArea {
  std::int16_t x = 0;
  std::int16_t y = 0;
  std::uint16_t width = 0;
  std::uint16_t height = 0;
};

/// Pixels on their way into windows of any depth and out of them, by the RENDER extension. Pixels
/// are 0xAARRGGBB, multiplied by alpha. On one thread.
class TrayPainter {
 public:
  /// A server without the extension knows no visual.
  explicit TrayPainter(const X11Connection& connection);

  /// Whether windows of that visual can be drawn on.
  [[nodiscard]] bool knows(xcb_visualid_t visual) const { return formats_.contains(visual); }
  /// Whether what is behind windows of that visual is seen through them.
  [[nodiscard]] bool isTranslucent(xcb_visualid_t visual) const;

  /// What is shown there; what lies outside of the window is transparent. Empty when it cannot be
  /// told. Waits for the server.
  [[nodiscard]] std::vector<std::uint32_t> pixels(xcb_window_t window, xcb_visualid_t visual,
                                                  PixelArea area) const;
  /// Draws the pixels, rows from the top, over what is there.
  void draw(xcb_window_t window, xcb_visualid_t visual, PixelArea area,
            std::vector<std::uint32_t> pixels) const;

 private:
  struct Sheet;
  [[nodiscard]] Sheet sheet(PixelArea area) const;
  void drop(const Sheet& sheet) const;
  [[nodiscard]] xcb_render_picture_t picture(xcb_window_t window, xcb_visualid_t visual) const;
  /// The server's order of bytes and ours, in either direction.
  void swapIfForeign(std::vector<std::uint32_t>& pixels) const;

  const X11Connection& connection_;
  xcb_render_pictformat_t argb_ = 0;
  std::map<xcb_visualid_t, xcb_render_pictformat_t> formats_;
};

}  // namespace vantorel
