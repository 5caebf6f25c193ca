// SPDX-License-Identifier: MIT
#include "panel/ListGeometry.h"

#include <algorithm>
#include <cmath>

namespace vantorel::ListGeometry {
namespace {

constexpr double maxListHeight = 448;
constexpr double maxListHeightWhileSearching = 409;
constexpr double minPanelHeight = 94;

double rowsHeight(std::size_t count) {
  const auto rows = static_cast<double>(count);
  return rowHeight * rows + rowGap * (rows - 1);
}

}  // namespace

std::optional<std::size_t> pinBoundary(const std::vector<ClipItem>& items) {
  const auto first =
      std::find_if(items.begin(), items.end(), [](const ClipItem& item) { return !item.pinned(); });
  if (first == items.begin() || first == items.end()) return std::nullopt;
  return static_cast<std::size_t>(first - items.begin());
}

double documentHeight(std::size_t count, std::optional<std::size_t> boundary) {
  return rowsHeight(count) + (boundary ? separatorSpace : 0) + bottomSpace;
}

double listHeight(std::size_t count, std::optional<std::size_t> boundary, SearchBar searchBar) {
  if (count == 0) return emptyHeight;
  const auto seen = std::min(count, maxRowsSeen);
  const double height = rowsHeight(seen) + (boundary && *boundary < seen ? separatorSpace : 0);
  return std::min(height,
                  searchBar == SearchBar::shown ? maxListHeightWhileSearching : maxListHeight);
}

double panelHeight(double listHeight, SearchBar searchBar) {
  const double search = searchBar == SearchBar::shown ? searchSpace : 0;
  return std::max(listHeight + search + 2 * margin, minPanelHeight);
}

Rect rowFrame(std::size_t index, std::optional<std::size_t> boundary) {
  const double separator = boundary && index >= *boundary ? separatorSpace : 0;
  const double y = (rowHeight + rowGap) * static_cast<double>(index) + separator;
  return {0, y, listWidth, rowHeight};
}

Rect separatorFrame(std::size_t boundary) {
  constexpr double inset = 12;
  constexpr double middle = 5;
  const double y = (rowHeight + rowGap) * static_cast<double>(boundary) + middle;
  return {inset, y, listWidth - 2 * inset, 1};
}

Rect resized(const Rect& frame, double height) {
  if (std::abs(frame.height - height) <= 1) return frame;
  return {frame.x, frame.midY() - height / 2, frame.width, height};
}

Rect centred(const Rect& frame, const Rect& area) {
  return {std::max(area.x, area.midX() - frame.width / 2),
          std::max(area.y, area.midY() - frame.height / 2), frame.width, frame.height};
}

double offsetRevealing(const Rect& row, double offset, double viewHeight, double documentHeight) {
  const double top = row.y - revealMargin;
  const double bottom = row.maxY() + revealMargin;
  if (bottom > offset + viewHeight) offset = bottom - viewHeight;
  if (top < offset) offset = top;
  return std::clamp(offset, 0.0, std::max(0.0, documentHeight - viewHeight));
}

}  // namespace vantorel::ListGeometry
