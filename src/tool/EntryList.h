// SPDX-License-Identifier: MIT
#pragma once

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

#include "store/ClipItem.h"
#include "tool/ToolLine.h"

namespace vantorel {

/// An entry under the number by which its user knows it: its place in the panel, from 1.
struct NumberedEntry {
  std::size_t number = 0;
  ClipItem item;
};

/// `items` in the order of the history.
[[nodiscard]] std::vector<NumberedEntry> numbered(std::vector<ClipItem> items);
/// Those that the panel's search finds, under the numbers that they have in the whole list.
[[nodiscard]] std::vector<NumberedEntry> found(const std::vector<NumberedEntry>& entries,
                                               std::string_view words);
/// The one of that number or identity, or null.
[[nodiscard]] const NumberedEntry* entryCalled(const std::vector<NumberedEntry>& entries,
                                               std::string_view name);

/// Number, kind and title of each entry, or all that is known of it but its contents. A title is
/// one line, of a text the first, without control characters, whatever was copied. Wipe it after
/// use.
[[nodiscard]] std::string entryList(const std::vector<NumberedEntry>& entries, ToolLine::Form form);

/// The paths of an entry, each with its end: a line end, or NUL. Wipe it after use.
[[nodiscard]] std::string pathList(const ClipItem& item, ToolLine::Form form);

}  // namespace vantorel
