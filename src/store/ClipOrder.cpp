// SPDX-License-Identifier: MIT
#include "store/ClipOrder.h"

#include <algorithm>
#include <iterator>
#include <limits>

#include "text/Unicode.h"

namespace vantorel {

bool itemSort(const ClipItem& a, const ClipItem& b) {
  if (a.pinned() != b.pinned()) return a.pinned();
  if (a.pinned()) {
    constexpr auto last = std::numeric_limits<std::int64_t>::max();
    const auto orderA = a.pinOrder.value_or(last);
    const auto orderB = b.pinOrder.value_or(last);
    if (orderA != orderB) return orderA < orderB;
  }
  return a.recency() > b.recency();
}

void numberPins(std::vector<ClipItem>& items) {
  std::int64_t next = 0;
  for (ClipItem& item : items) {
    if (item.pinned()) item.pinOrder = next++;
  }
}

std::optional<std::string> pinName(std::string_view name) {
  constexpr std::size_t longest = 80;
  const std::string_view shown = prefixOfCharacters(trimmed(name), longest);
  return shown.empty() ? std::nullopt : std::optional<std::string>(shown);
}

std::size_t pinnedCount(const std::vector<ClipItem>& items) {
  return static_cast<std::size_t>(
      std::count_if(items.begin(), items.end(), [](const auto& item) { return item.pinned(); }));
}

std::optional<std::vector<ClipItem>> withMovedPin(const std::vector<ClipItem>& items, Uuid id,
                                                  Uuid relativeTo, bool before) {
  if (id == relativeTo) return std::nullopt;
  std::vector<ClipItem> list;
  std::copy_if(items.begin(), items.end(), std::back_inserter(list),
               [](const auto& item) { return item.pinned(); });
  const auto position = [&list](Uuid wanted) {
    return std::find_if(list.begin(), list.end(),
                        [&](const auto& item) { return item.id == wanted; });
  };
  const auto from = position(id);
  if (from == list.end() || position(relativeTo) == list.end()) return std::nullopt;
  ClipItem moving = *from;
  list.erase(from);
  const auto target = position(relativeTo);
  list.insert(before ? target : std::next(target), std::move(moving));
  std::copy_if(items.begin(), items.end(), std::back_inserter(list),
               [](const auto& item) { return !item.pinned(); });
  return list;
}

}  // namespace vantorel
