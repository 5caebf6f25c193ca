// SPDX-License-Identifier: MIT
#include "store/ClipDuplicates.h"

#include <algorithm>
#include <functional>
#include <iterator>
#include <unordered_map>
#include <unordered_set>

#include "store/ClipOrder.h"

namespace vantorel {
namespace {

/// Equal for duplicates; rarely equal otherwise. Spares comparing every entry with every other in
/// a history of any length.
std::size_t contentKey(const ClipItem& item) {
  const std::hash<std::string_view> hash;
  switch (item.kind) {
    case ClipKind::text:
      return item.text ? hash(item.text->get()) : 0;
    case ClipKind::image:
      return item.contentHash ? hash(*item.contentHash) : 1;
    case ClipKind::files:
      break;
  }
  std::size_t key = 2;
  for (const std::string& path : item.filePaths) key = key * 31 + hash(path);
  return key;
}

}  // namespace

bool duplicates(const ClipItem& a, const ClipItem& b) {
  if (a.kind != b.kind) return false;
  switch (a.kind) {
    case ClipKind::text:
      return a.text == b.text;
    case ClipKind::image:
      return a.contentHash && a.contentHash == b.contentHash;
    case ClipKind::files:
      return a.filePaths == b.filePaths;
  }
  return false;
}

ClipItem preservingPin(const std::vector<ClipItem>& matches, const ClipItem& item) {
  if (matches.empty()) return item;
  const ClipItem* source = nullptr;
  for (const ClipItem& match : matches) {
    if (match.pinned() && (source == nullptr || itemSort(match, *source))) source = &match;
  }
  if (source == nullptr) source = &matches.front();
  ClipItem merged = item;
  merged.id = source->id;
  merged.createdAt = source->createdAt;
  merged.isPinned = source->pinned();
  merged.customName = source->customName;
  merged.pinOrder = source->pinOrder;
  merged.lastCopiedAt = item.recency();
  if (!merged.recognizedText) merged.recognizedText = source->recognizedText;
  return merged;
}

std::vector<ClipItem> coalesced(std::vector<ClipItem> items) {
  std::stable_sort(items.begin(), items.end(),
                   [](const auto& a, const auto& b) { return a.recency() > b.recency(); });
  // Groups of duplicates, in the order of their heads, which are the most recent of each.
  std::vector<std::vector<ClipItem>> groups;
  std::unordered_multimap<std::size_t, std::size_t> groupsByKey;
  for (ClipItem& item : items) {
    const std::size_t key = contentKey(item);
    const auto [begin, end] = groupsByKey.equal_range(key);
    const auto known = std::find_if(begin, end, [&](const auto& candidate) {
      return duplicates(item, groups[candidate.second].front());
    });
    if (known != end) {
      groups[known->second].push_back(std::move(item));
      continue;
    }
    // What duplicates nothing is no use to look among later.
    if (duplicates(item, item)) groupsByKey.emplace(key, groups.size());
    groups.emplace_back().push_back(std::move(item));
  }
  std::vector<ClipItem> result;
  result.reserve(groups.size());
  for (const auto& group : groups) result.push_back(preservingPin(group, group.front()));
  return result;
}

Insertion inserted(std::vector<ClipItem> items, const ClipItem& item) {
  Insertion result;
  const auto latest =
      std::max_element(items.begin(), items.end(),
                       [](const auto& a, const auto& b) { return a.recency() < b.recency(); });
  result.isNews = latest == items.end() || !duplicates(item, *latest);
  std::vector<ClipItem> matches;
  result.items.reserve(items.size() + 1);
  result.items.emplace_back();  // the merged entry's place
  for (ClipItem& entry : items) {
    (duplicates(item, entry) ? matches : result.items).push_back(std::move(entry));
  }
  result.items.front() = preservingPin(matches, item);
  return result;
}

void separateIdentities(std::vector<ClipItem>& items) {
  std::unordered_set<Uuid> taken;
  for (ClipItem& item : items) {
    while (!taken.insert(item.id).second) item.id = Uuid::random();
  }
}

}  // namespace vantorel
