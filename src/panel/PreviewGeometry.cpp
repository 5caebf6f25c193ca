// SPDX-License-Identifier: MIT
#include "panel/PreviewGeometry.h"

#include <algorithm>
#include <cmath>

namespace vantorel::PreviewGeometry {
namespace {

constexpr double minTextHeight = 92;
constexpr Size media{310, 320};

constexpr Rect screenWithoutScreens{0, 0, 1024, 768};
constexpr double screenMarginX = 40;
constexpr double screenMarginY = 60;
constexpr double leastMaximumWidth = 160;
constexpr double leastMaximumHeight = 120;

constexpr double rimClearance = 5;

constexpr double mediaInset = 12;
constexpr double captionHeight = 18;
constexpr double captionBottom = 10;
constexpr double captionGap = 8;

}  // namespace

Size textSize(double measuredHeight) {
  const double needed = std::ceil(measuredHeight + 2 * textInsetY);
  return {textWidth, std::min(std::max(needed, minTextHeight), maxTextHeight)};
}

Size mediaSize() { return media; }

Size maximumSize(const std::optional<Rect>& visibleFrame) {
  const Rect frame = visibleFrame.value_or(screenWithoutScreens);
  return {std::max(frame.width - screenMarginX, leastMaximumWidth),
          std::max(frame.height - screenMarginY, leastMaximumHeight)};
}

Size limited(Size size, Size maximum) {
  return {std::min(size.width, maximum.width), std::min(size.height, maximum.height)};
}

PopoverEdge edge(const Rect& window, const Rect& screen) {
  const double roomRight = screen.maxX() - window.maxX();
  const double roomLeft = window.x - screen.x;
  return roomLeft > roomRight ? PopoverEdge::left : PopoverEdge::right;
}

Rect anchor(const Rect& row) {
  return {row.x - rimClearance, row.y, row.width + 2 * rimClearance, row.height};
}

Rect mediaImage(Size size) {
  const double bottom = mediaCaption(size).y - captionGap;
  return {mediaInset, mediaInset, std::max(0.0, size.width - 2 * mediaInset),
          std::max(0.0, bottom - mediaInset)};
}

Rect mediaCaption(Size size) {
  return {mediaInset, size.height - captionBottom - captionHeight,
          std::max(0.0, size.width - 2 * mediaInset), captionHeight};
}

}  // namespace vantorel::PreviewGeometry
