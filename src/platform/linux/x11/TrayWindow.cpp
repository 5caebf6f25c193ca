// SPDX-License-Identifier: MIT
#include "platform/linux/x11/TrayWindow.h"

#include <xcb/xcb_icccm.h>

#include <algorithm>
#include <array>
#include <string_view>
#include <utility>

#include "platform/linux/x11/TrayInk.h"

namespace vantorel {

namespace {

// Fewer pixels show nothing; a tray that gives more has something else in mind than a tray.
constexpr int leastSide = 8;
constexpr int mostSide = 128;

constexpr std::uint32_t embeddingVersion = 0;
constexpr std::uint32_t embeddingMapped = 1;
constexpr std::string_view programClass("vantorel\0Vantorel\0", 18);

constexpr std::uint32_t events = XCB_EVENT_MASK_EXPOSURE | XCB_EVENT_MASK_STRUCTURE_NOTIFY |
                                 XCB_EVENT_MASK_BUTTON_PRESS | XCB_EVENT_MASK_BUTTON_RELEASE;

// Windows within windows that are looked at between the tray's outermost one and the icon.
constexpr int mostParents = 16;

}  // namespace

TrayWindow::TrayWindow(X11Connection& connection, const TrayPainter& painter,
                       const TrayManager& manager, const Wishes& wishes,
                       std::function<void(const TrayClick&)> onClick)
    : connection_(connection),
      painter_(painter),
      facts_(manager.facts()),
      onClick_(std::move(onClick)),
      window_(xcb_generate_id(connection.xcb())) {
  const int side = std::clamp(wishes.side, leastSide, mostSide);
  create(side);
  describe(side);
  setTitle(wishes.title);
  manager.dock(window_);
}

TrayWindow::~TrayWindow() {
  xcb_destroy_window(connection_.xcb(), window_);
  if (colormap_ != XCB_NONE) xcb_free_colormap(connection_.xcb(), colormap_);
}

/// Of the visual that the tray asks for where that lets its background through; else the tray's
/// background is copied into the window.
void TrayWindow::create(int side) {
  auto* xcb = connection_.xcb();
  width_ = height_ = side;
  const auto length = static_cast<std::uint16_t>(side);
  if (painter_.isTranslucent(facts_.visual)) {
    constexpr std::uint8_t depth = 32;
    visual_ = facts_.visual;
    colormap_ = xcb_generate_id(xcb);
    xcb_create_colormap(xcb, XCB_COLORMAP_ALLOC_NONE, colormap_, connection_.root(), visual_);
    const std::array<std::uint32_t, 4> values{0, 0, events, colormap_};
    xcb_create_window(xcb, depth, window_, connection_.root(), 0, 0, length, length, 0,
                      XCB_WINDOW_CLASS_INPUT_OUTPUT, visual_,
                      XCB_CW_BACK_PIXEL | XCB_CW_BORDER_PIXEL | XCB_CW_EVENT_MASK | XCB_CW_COLORMAP,
                      values.data());
    return;
  }
  visual_ = connection_.screen().root_visual;
  const std::array<std::uint32_t, 2> values{XCB_BACK_PIXMAP_PARENT_RELATIVE, events};
  xcb_create_window(xcb, XCB_COPY_FROM_PARENT, window_, connection_.root(), 0, 0, length, length, 0,
                    XCB_WINDOW_CLASS_INPUT_OUTPUT, visual_, XCB_CW_BACK_PIXMAP | XCB_CW_EVENT_MASK,
                    values.data());
}

void TrayWindow::describe(int side) const {
  auto* xcb = connection_.xcb();
  const auto embedding = connection_.atom("_XEMBED_INFO");
  const std::array<std::uint32_t, 2> info{embeddingVersion, embeddingMapped};
  xcb_change_property(xcb, XCB_PROP_MODE_REPLACE, window_, embedding, embedding, 32, info.size(),
                      info.data());
  xcb_change_property(xcb, XCB_PROP_MODE_REPLACE, window_, XCB_ATOM_WM_CLASS, XCB_ATOM_STRING, 8,
                      programClass.size(), programClass.data());
  xcb_size_hints_t hints{};
  xcb_icccm_size_hints_set_min_size(&hints, side, side);
  xcb_icccm_set_wm_normal_hints(xcb, window_, &hints);
}

void TrayWindow::setTitle(const std::string& title) const {
  const auto utf8 = connection_.atom("UTF8_STRING");
  for (const xcb_atom_t name : {connection_.atom("_NET_WM_NAME"), xcb_atom_t{XCB_ATOM_WM_NAME}}) {
    xcb_change_property(connection_.xcb(), XCB_PROP_MODE_REPLACE, window_, name, utf8, 8,
                        static_cast<std::uint32_t>(title.size()), title.data());
  }
}

void TrayWindow::handle(const xcb_generic_event_t& event) {
  const auto type = event.response_type & 0x7FU;
  // A window manager's account of where a window is, which anybody may send, is none of its size.
  const bool sent = (event.response_type & 0x80U) != 0;
  if (type == XCB_REPARENT_NOTIFY) {
    const auto& change = reinterpret_cast<const xcb_reparent_notify_event_t&>(event);
    if (change.window != window_) return;
    // Of a tray that ended the server hands the windows back, and shows them.
    state_ = change.parent == connection_.root() ? State::gone : State::embedded;
    damaged_ = true;
  } else if (type == XCB_DESTROY_NOTIFY) {
    if (reinterpret_cast<const xcb_destroy_notify_event_t&>(event).window == window_) {
      state_ = State::gone;
    }
  } else if (type == XCB_CONFIGURE_NOTIFY && !sent) {
    const auto& change = reinterpret_cast<const xcb_configure_notify_event_t&>(event);
    if (change.window != window_) return;
    width_ = change.width;
    height_ = change.height;
    damaged_ = true;
  } else if (type == XCB_EXPOSE) {
    const auto& part = reinterpret_cast<const xcb_expose_event_t&>(event);
    if (part.window == window_ && part.count == 0) damaged_ = true;
  } else if (type == XCB_BUTTON_RELEASE) {
    released(reinterpret_cast<const xcb_button_release_event_t&>(event));
  }
}

/// From the root down, each window says which of those in it has the pointer.
bool TrayWindow::hasPointer() const {
  if (!isEmbedded()) return false;
  xcb_window_t outer = connection_.root();
  for (int step = 0; step <= mostParents; ++step) {
    const auto pointer =
        connection_.reply(xcb_query_pointer_reply, xcb_query_pointer(connection_.xcb(), outer));
    if (!pointer || pointer->child == XCB_WINDOW_NONE) return false;
    if (pointer->child == window_) return true;
    outer = pointer->child;
  }
  return false;
}

void TrayWindow::released(const xcb_button_release_event_t& event) const {
  const bool within =
      event.event_x >= 0 && event.event_y >= 0 && event.event_x < width_ && event.event_y < height_;
  if (event.event != window_ || !within) return;
  constexpr std::array buttons{TrayClick::Button::left, TrayClick::Button::middle,
                               TrayClick::Button::right};
  if (event.detail == 0 || event.detail > buttons.size()) return;
  onClick_({.button = buttons.at(event.detail - 1U),
            .x = event.root_x - event.event_x,
            .y = event.root_y - event.event_y,
            .width = width_,
            .height = height_});
}

int TrayWindow::pictureSide() const {
  const int side = std::min({width_, height_, mostSide});
  return side < leastSide ? 0 : side;
}

bool TrayWindow::takeDamage() { return std::exchange(damaged_, false); }

void TrayWindow::paint(const SharedBitmap& picture) const {
  xcb_clear_area(connection_.xcb(), 0, window_, 0, 0, 0, 0);
  const int side = pictureSide();
  if (!picture || side == 0 || picture->pixelSize != PixelSize{side, side}) return;
  const auto length = static_cast<std::uint16_t>(side);
  const PixelArea area{static_cast<std::int16_t>((width_ - side) / 2),
                       static_cast<std::int16_t>((height_ - side) / 2), length, length};
  const auto background = backgroundOf(whatIsBehind(area));
  const auto ink = background ? inkOn(*background) : facts_.ink.value_or(inkAnywhere);
  painter_.draw(window_, visual_, area, inked(*picture, ink));
}

/// The window has just been cleared: what it shows is the tray's background, or nothing when that
/// is seen through it.
std::vector<std::uint32_t> TrayWindow::whatIsBehind(PixelArea area) const {
  return colormap_ == XCB_NONE ? painter_.pixels(window_, visual_, area) : whatIsAround();
}

/// The columns beside the icon and the rows above and below it, in the tray's outermost window.
std::vector<std::uint32_t> TrayWindow::whatIsAround() const {
  auto* xcb = connection_.xcb();
  xcb_window_t outermost = window_;
  for (int step = 0; step < mostParents; ++step) {
    const auto tree = connection_.reply(xcb_query_tree_reply, xcb_query_tree(xcb, outermost));
    if (!tree) return {};
    if (tree->parent == XCB_WINDOW_NONE || tree->parent == tree->root) break;
    outermost = tree->parent;
  }
  const auto place = connection_.reply(xcb_translate_coordinates_reply,
                                       xcb_translate_coordinates(xcb, window_, outermost, 0, 0));
  const auto attributes =
      connection_.reply(xcb_get_window_attributes_reply, xcb_get_window_attributes(xcb, outermost));
  if (!place || !attributes || outermost == window_) return {};
  const std::int16_t x = place->dst_x;
  const std::int16_t y = place->dst_y;
  const auto width = static_cast<std::uint16_t>(std::min(width_, mostSide));
  const auto height = static_cast<std::uint16_t>(std::min(height_, mostSide));
  const auto after = [](std::int16_t start, int length) {
    return static_cast<std::int16_t>(start + length);
  };
  std::vector<std::uint32_t> seen;
  for (const PixelArea strip :
       {PixelArea{after(x, -1), y, 1, height}, PixelArea{after(x, width_), y, 1, height},
        PixelArea{x, after(y, -1), width, 1}, PixelArea{x, after(y, height_), width, 1}}) {
    const auto pixels = painter_.pixels(outermost, attributes->visual, strip);
    // Transparent where the tray ends, too: that says nothing about it.
    std::copy_if(pixels.begin(), pixels.end(), std::back_inserter(seen),
                 [](std::uint32_t pixel) { return pixel >> 24U != 0; });
  }
  return seen;
}

}  // namespace vantorel
