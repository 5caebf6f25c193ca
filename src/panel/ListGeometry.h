// SPDX-License-Identifier: MIT
#pragma once

#include <cstddef>
#include <optional>
#include <vector>

#include "panel/RowGeometry.h"
#include "platform/Screens.h"
#include "store/ClipItem.h"

/// How the panel and its list are measured, in points, from the top left. Nothing here depends on
/// fonts: rows have a fixed height.
namespace vantorel::ListGeometry {

inline constexpr double panelWidth = 408;
inline constexpr double margin = 10;  // on every side of the panel's content
inline constexpr double listWidth = panelWidth - 2 * margin;
inline constexpr double rowHeight = RowGeometry::height;
inline constexpr double rowGap = 1;
inline constexpr double separatorSpace = 12;  // between the pins and the rest
inline constexpr double bottomSpace = 18;     // under the last row
inline constexpr double emptyHeight = 74;
inline constexpr double searchFieldHeight = 32;
inline constexpr double searchSpace = 39;   // the search bar and the gap below it
inline constexpr double searchSpacing = 4;  // between the field and the filter buttons
inline constexpr std::size_t maxRowsSeen = 9;
inline constexpr double revealMargin = 4;  // kept free above and below the selected row

enum class SearchBar { hidden, shown };

/// Where the pins end: the index of the first entry that is not pinned, when pins come before it.
[[nodiscard]] std::optional<std::size_t> pinBoundary(const std::vector<ClipItem>& items);

/// Of everything that scrolls: `count` rows, at least one.
[[nodiscard]] double documentHeight(std::size_t count, std::optional<std::size_t> boundary);

/// Of the part of it that is seen.
[[nodiscard]] double listHeight(std::size_t count, std::optional<std::size_t> boundary,
                                SearchBar searchBar);

[[nodiscard]] double panelHeight(double listHeight, SearchBar searchBar);

/// Within the document.
[[nodiscard]] Rect rowFrame(std::size_t index, std::optional<std::size_t> boundary);
[[nodiscard]] Rect separatorFrame(std::size_t boundary);

/// `frame` with another height around the same centre; unchanged when the heights differ by no
/// more than a point.
[[nodiscard]] Rect resized(const Rect& frame, double height);

/// `frame` moved to the middle of `area`; one that is too large for it keeps its top and its left
/// edge in it, where the search field is.
[[nodiscard]] Rect centred(const Rect& frame, const Rect& area);

/// Where the list has to be scrolled to, from `offset`, so that the row with its margin is seen in
/// `viewHeight`; nearest edge first, never beyond the document.
[[nodiscard]] double offsetRevealing(const Rect& row, double offset, double viewHeight,
                                     double documentHeight);

}  // namespace vantorel::ListGeometry
