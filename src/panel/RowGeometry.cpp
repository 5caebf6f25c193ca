// SPDX-License-Identifier: MIT
#include "panel/RowGeometry.h"

namespace vantorel::RowGeometry {
namespace {

constexpr double inset = 8;
constexpr double imageGap = 9;
constexpr double titleTop = 6;
constexpr double titleHeight = 18;
constexpr double titleToPin = 6;
constexpr double iconSide = 13;
constexpr double iconBottom = 8;
constexpr double iconGap = 5;
constexpr double metadataHeight = 14;
constexpr double pinTrailing = 4;
constexpr double barTop = 12;
constexpr double lineThickness = 2;

double textStart(ClipKind kind) { return image(kind).maxX() + imageGap; }

double textEnd(double width) { return pin(width).x - titleToPin; }

}  // namespace

Rect image(ClipKind kind) {
  const bool text = kind == ClipKind::text;
  const double imageWidth = text ? 16 : 56;
  const double imageHeight = text ? 20 : 36;
  return {inset, (height - imageHeight) / 2, imageWidth, imageHeight};
}

Rect title(ClipKind kind, double width) {
  const double start = textStart(kind);
  return {start, titleTop, textEnd(width) - start, titleHeight};
}

Rect sourceIcon(ClipKind kind) {
  return {textStart(kind), height - iconBottom - iconSide, iconSide, iconSide};
}

Rect metadata(ClipKind kind, double width) {
  const Rect icon = sourceIcon(kind);
  const double start = icon.maxX() + iconGap;
  return {start, icon.midY() - metadataHeight / 2, textEnd(width) - start, metadataHeight};
}

Rect pin(double width) {
  return {width - pinTrailing - pinSide, (height - pinSide) / 2, pinSide, pinSide};
}

Rect divider(ClipKind kind, double width) {
  const double start = textStart(kind);
  return {start, height - 1, width - inset - start, 1};
}

Rect selectionBar() { return {1, barTop, 2, height - 2 * barTop}; }

Rect dropLine(DropPlace place, double width) {
  const double y = place == DropPlace::before ? 0 : height - lineThickness;
  return {inset, y, width - 2 * inset, lineThickness};
}

}  // namespace vantorel::RowGeometry
