// SPDX-License-Identifier: MIT
#pragma once

#include <cstdint>
#include <functional>
#include <set>
#include <string>
#include <vector>

#include "store/ClipItem.h"

namespace vantorel {

/// What a rule keeps, and what it takes off the list.
struct Retention {
  std::vector<ClipItem> kept;
  std::vector<ClipItem> dropped;
};

/// The list in the order of the history, without the unpinned entries that were last copied more
/// than `maxAge` before `now` or that are too many for `maxItems`. Pins count, and always stay.
[[nodiscard]] Retention pruned(std::vector<ClipItem> items, Date now, Seconds maxAge,
                               std::size_t maxItems);

/// The list without the oldest unpinned images whose files exceed the budget: `total` is the size
/// of all files, `sizeOf` the size of one. An image whose file another entry names too stays, since
/// its file would stay.
[[nodiscard]] Retention withinAssetBudget(
    std::vector<ClipItem> items, std::uint64_t total, std::uint64_t maxAssetBytes,
    const std::function<std::uint64_t(const std::string&)>& sizeOf);

/// The asset files that the entries name.
[[nodiscard]] std::set<std::string> namedAssets(const std::vector<ClipItem>& items);

}  // namespace vantorel
