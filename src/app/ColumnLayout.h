// SPDX-License-Identifier: MIT
#pragma once

#include <vector>

namespace vantorel {

/// One row of a centred column.
struct ColumnRow {
  int height = 0;
  bool opensSection = false;  // gets what room is left over above it
  bool heads = false;         // stands closer to the row below it, which it is the heading of
};

/// Below a heading, in points.
constexpr int headingGap = 4;

/// Where the rows of a column of `room` points begin, counted from its top, `spacing` apart. Rows
/// that do not fit move closer together, each gap by its share, and once they touch the column is
/// longer than its room; what is left over parts the sections.
[[nodiscard]] std::vector<int> columnTops(const std::vector<ColumnRow>& rows, int spacing,
                                          int room);

}  // namespace vantorel
