// SPDX-License-Identifier: MIT
#pragma once

#include <cstdint>
#include <optional>
#include <vector>

#include "store/ClipItem.h"

namespace vantorel {

/// The bytes of JSON that an entry takes, reckoned without building them: a little more than it
/// takes, or less where a string is not UTF-8. Reads its texts once.
[[nodiscard]] std::uint64_t historySize(const ClipItem& item);
[[nodiscard]] std::uint64_t historySize(const std::vector<ClipItem>& items);

/// The list as far as it fits into so many bytes: what is over goes from the list's end, where the
/// oldest are, first the rich forms of texts, then entries that are not pinned. Absent when the
/// pins alone are too large.
[[nodiscard]] std::optional<std::vector<ClipItem>> withinHistorySize(std::vector<ClipItem> items,
                                                                     std::uint64_t maximumBytes);

}  // namespace vantorel
