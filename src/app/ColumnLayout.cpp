// SPDX-License-Identifier: MIT
#include "app/ColumnLayout.h"

#include <algorithm>
#include <cstddef>
#include <numeric>

namespace vantorel {

std::vector<int> columnTops(const std::vector<ColumnRow>& rows, int spacing, int room) {
  if (rows.empty()) return {};
  const auto gapBelow = [&](const ColumnRow& row) {
    return row.heads ? std::min(headingGap, spacing) : spacing;
  };
  const int heights = std::accumulate(rows.begin(), rows.end(), 0,
                                      [](int sum, const auto& row) { return sum + row.height; });
  const int gaps = std::accumulate(rows.begin(), rows.end() - 1, 0,
                                   [&](int sum, const auto& row) { return sum + gapBelow(row); });
  const auto sections = static_cast<int>(std::count_if(
      rows.begin() + 1, rows.end(), [](const auto& row) { return row.opensSection; }));
  const int missing = heights + gaps - room;
  const int tooClose = std::clamp(missing, 0, gaps);
  const int leftOver = std::max(-missing, 0);

  // Each share is what falls to it of the whole, so that rounding never adds up.
  const auto share = [](int whole, int parts, int done) {
    return parts == 0 ? 0 : whole * done / parts;
  };
  std::vector<int> tops;
  tops.reserve(rows.size());
  int y = 0;
  int gap = 0;  // of all rows above
  int section = 0;
  for (std::size_t i = 0; i < rows.size(); ++i) {
    if (i > 0 && rows[i].opensSection) ++section;
    tops.push_back(y + gap - share(tooClose, gaps, gap) + share(leftOver, sections, section));
    y += rows[i].height;
    gap += gapBelow(rows[i]);
  }
  return tops;
}

}  // namespace vantorel
