// SPDX-License-Identifier: MIT
#include "store/ClipRetention.h"

#include <algorithm>
#include <iterator>
#include <map>

#include "store/ClipOrder.h"

namespace vantorel {
namespace {

/// `now` - `maxAge`, or the beginning of time for an age that reaches further back.
Date cutoff(Date now, Seconds maxAge) {
  // Half of what the clock can count, so that no subtraction overflows.
  const Seconds sinceBeginning = now - Date(Date::duration::min() / 2);
  return maxAge < sinceBeginning ? advanced(now, -maxAge) : Date::min();
}

}  // namespace

Retention pruned(std::vector<ClipItem> items, Date now, Seconds maxAge, std::size_t maxItems) {
  const Date oldest = cutoff(now, maxAge);
  std::stable_sort(items.begin(), items.end(), itemSort);
  Retention result;
  for (ClipItem& item : items) {
    // Pins come first, so their number is known when the others are counted.
    const bool stays = item.pinned() || (item.recency() >= oldest && result.kept.size() < maxItems);
    (stays ? result.kept : result.dropped).push_back(std::move(item));
  }
  return result;
}

Retention withinAssetBudget(std::vector<ClipItem> items, std::uint64_t total,
                            std::uint64_t maxAssetBytes,
                            const std::function<std::uint64_t(const std::string&)>& sizeOf) {
  Retention result;
  if (total <= maxAssetBytes) {
    result.kept = std::move(items);
    return result;
  }
  std::map<std::string, int> owners;
  for (const ClipItem& item : items) {
    if (item.assetFilename) ++owners[*item.assetFilename];
  }
  std::for_each(items.rbegin(), items.rend(), [&](ClipItem& item) {
    const bool dispensable = item.kind == ClipKind::image && !item.pinned() && item.assetFilename &&
                             owners[*item.assetFilename] == 1;
    if (total <= maxAssetBytes || !dispensable) {
      result.kept.push_back(std::move(item));
      return;
    }
    total -= std::min(total, sizeOf(*item.assetFilename));
    result.dropped.push_back(std::move(item));
  });
  std::reverse(result.kept.begin(), result.kept.end());
  return result;
}

std::set<std::string> namedAssets(const std::vector<ClipItem>& items) {
  std::set<std::string> names;
  for (const ClipItem& item : items) {
    if (item.assetFilename) names.insert(*item.assetFilename);
  }
  return names;
}

}  // namespace vantorel
