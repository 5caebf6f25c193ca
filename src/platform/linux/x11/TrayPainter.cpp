// SPDX-License-Identifier: MIT
#include "platform/linux/x11/TrayPainter.h"

#include <algorithm>
#include <bit>
#include <cstring>

namespace vantorel {

namespace {

constexpr std::uint8_t argbDepth = 32;

bool isArgb(const xcb_render_pictforminfo_t& format) {
  const auto& bits = format.direct;
  return format.type == XCB_RENDER_PICT_TYPE_DIRECT && format.depth == argbDepth &&
         bits.alpha_shift == 24 && bits.alpha_mask == 0xff && bits.red_shift == 16 &&
         bits.red_mask == 0xff && bits.green_shift == 8 && bits.green_mask == 0xff &&
         bits.blue_shift == 0 && bits.blue_mask == 0xff;
}

}  // namespace

/// Pixels of the server's that belong to no window.
struct TrayPainter::Sheet {
  xcb_pixmap_t pixmap;
  xcb_render_picture_t picture;
};

TrayPainter::TrayPainter(const X11Connection& connection) : connection_(connection) {
  if (connection_.extension(xcb_render_id) == nullptr) return;
  const auto version = connection_.reply(xcb_render_query_version_reply,
                                         xcb_render_query_version(connection_.xcb(), 0, 11));
  const auto formats = connection_.reply(xcb_render_query_pict_formats_reply,
                                         xcb_render_query_pict_formats(connection_.xcb()));
  if (!version || !formats) return;
  const auto* first = xcb_render_query_pict_formats_formats(formats.get());
  const auto* end = first + xcb_render_query_pict_formats_formats_length(formats.get());
  const auto* argb = std::find_if(first, end, isArgb);
  if (argb == end) return;
  argb_ = argb->id;
  auto screens = xcb_render_query_pict_formats_screens_iterator(formats.get());
  for (; screens.rem > 0; xcb_render_pictscreen_next(&screens)) {
    auto depths = xcb_render_pictscreen_depths_iterator(screens.data);
    for (; depths.rem > 0; xcb_render_pictdepth_next(&depths)) {
      auto visuals = xcb_render_pictdepth_visuals_iterator(depths.data);
      for (; visuals.rem > 0; xcb_render_pictvisual_next(&visuals)) {
        formats_.emplace(visuals.data->visual, visuals.data->format);
      }
    }
  }
}

bool TrayPainter::isTranslucent(xcb_visualid_t visual) const {
  const auto found = formats_.find(visual);
  return found != formats_.end() && found->second == argb_;
}

std::vector<std::uint32_t> TrayPainter::pixels(xcb_window_t window, xcb_visualid_t visual,
                                               PixelArea area) const {
  if (!knows(visual) || area.width == 0 || area.height == 0) return {};
  auto* xcb = connection_.xcb();
  const Sheet copy = sheet(area);
  const auto source = picture(window, visual);
  xcb_render_composite(xcb, XCB_RENDER_PICT_OP_SRC, source, XCB_RENDER_PICTURE_NONE, copy.picture,
                       area.x, area.y, 0, 0, 0, 0, area.width, area.height);
  const auto image = connection_.reply(
      xcb_get_image_reply, xcb_get_image(xcb, XCB_IMAGE_FORMAT_Z_PIXMAP, copy.pixmap, 0, 0,
                                         area.width, area.height, ~0U));
  xcb_render_free_picture(xcb, source);
  drop(copy);
  std::vector<std::uint32_t> pixels(static_cast<std::size_t>(area.width) * area.height);
  const auto bytes = pixels.size() * sizeof(std::uint32_t);
  if (!image || static_cast<std::size_t>(xcb_get_image_data_length(image.get())) < bytes) return {};
  std::memcpy(pixels.data(), xcb_get_image_data(image.get()), bytes);
  swapIfForeign(pixels);
  return pixels;
}

void TrayPainter::draw(xcb_window_t window, xcb_visualid_t visual, PixelArea area,
                       std::vector<std::uint32_t> pixels) const {
  if (!knows(visual) || pixels.size() != static_cast<std::size_t>(area.width) * area.height) return;
  auto* xcb = connection_.xcb();
  swapIfForeign(pixels);
  const Sheet sheet = this->sheet(area);
  const xcb_gcontext_t context = xcb_generate_id(xcb);
  xcb_create_gc(xcb, context, sheet.pixmap, 0, nullptr);
  xcb_put_image(xcb, XCB_IMAGE_FORMAT_Z_PIXMAP, sheet.pixmap, context, area.width, area.height, 0,
                0, 0, argbDepth, static_cast<std::uint32_t>(pixels.size() * sizeof pixels[0]),
                reinterpret_cast<const std::uint8_t*>(pixels.data()));
  xcb_free_gc(xcb, context);
  const auto target = picture(window, visual);
  xcb_render_composite(xcb, XCB_RENDER_PICT_OP_OVER, sheet.picture, XCB_RENDER_PICTURE_NONE, target,
                       0, 0, 0, 0, area.x, area.y, area.width, area.height);
  xcb_render_free_picture(xcb, target);
  drop(sheet);
}

TrayPainter::Sheet TrayPainter::sheet(PixelArea area) const {
  auto* xcb = connection_.xcb();
  const Sheet sheet{xcb_generate_id(xcb), xcb_generate_id(xcb)};
  xcb_create_pixmap(xcb, argbDepth, sheet.pixmap, connection_.root(), area.width, area.height);
  xcb_render_create_picture(xcb, sheet.picture, sheet.pixmap, argb_, 0, nullptr);
  // What is copied from outside of a window leaves nothing behind.
  const xcb_rectangle_t whole{0, 0, area.width, area.height};
  xcb_render_fill_rectangles(xcb, XCB_RENDER_PICT_OP_SRC, sheet.picture, {0, 0, 0, 0}, 1, &whole);
  return sheet;
}

void TrayPainter::drop(const Sheet& sheet) const {
  xcb_render_free_picture(connection_.xcb(), sheet.picture);
  xcb_free_pixmap(connection_.xcb(), sheet.pixmap);
}

xcb_render_picture_t TrayPainter::picture(xcb_window_t window, xcb_visualid_t visual) const {
  auto* xcb = connection_.xcb();
  const xcb_render_picture_t picture = xcb_generate_id(xcb);
  const std::uint32_t inferiors = XCB_SUBWINDOW_MODE_INCLUDE_INFERIORS;
  xcb_render_create_picture(xcb, picture, window, formats_.at(visual), XCB_RENDER_CP_SUBWINDOW_MODE,
                            &inferiors);
  return picture;
}

void TrayPainter::swapIfForeign(std::vector<std::uint32_t>& pixels) const {
  const bool serverIsLittle =
      xcb_get_setup(connection_.xcb())->image_byte_order == XCB_IMAGE_ORDER_LSB_FIRST;
  if (serverIsLittle == (std::endian::native == std::endian::little)) return;
  for (auto& pixel : pixels) pixel = __builtin_bswap32(pixel);
}

}  // namespace vantorel
