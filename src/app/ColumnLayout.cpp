#include "app/ColumnLayout.h"

#include <algorithm>
#include <cstddef>
#include <numeric>

namespace vantorel {

std::vector<int> columnTops(const std::vector<ColumnRow>& rows, int spacing, int room) {
  if (rows.empty()) return {};
  const auto gaps = static_cast<int>(rows.size()) - 1;
  const int heights = std::accumulate(rows.begin(), rows.end(), 0,
                                      [](int sum, const auto& row) { return sum + row.height; });
  const auto sections = static_cast<int>(std::count_if(
      rows.begin() + 1, rows.end(), [](const auto& row) { return row.opensSection; }));
  const int missing = heights + gaps * spacing - room;
  const int tooClose = std::clamp(missing, 0, gaps * spacing);
  const int leftOver = std::max(-missing, 0);

  // Each share is what falls to it of the whole, so that rounding never adds up.
  const auto share = [](int whole, int parts, int done) {
    return parts == 0 ? 0 : whole * done / parts;
  };
  std::vector<int> tops;
  tops.reserve(rows.size());
  int y = 0;
  int section = 0;
  for (std::size_t i = 0; i < rows.size(); ++i) {
    if (i > 0 && rows[i].opensSection) ++section;
    const int gap = static_cast<int>(i);
    tops.push_back(y + gap * spacing - share(tooClose, gaps, gap) +
                   share(leftOver, sections, section));
    y += rows[i].height;
  }
  return tops;
}

}  // namespace vantorel
