// SPDX-License-Identifier: MIT
#include "panel/DisplayedClips.h"

#include <algorithm>

#include "base/WipedText.h"

namespace vantorel {

bool DisplayedClips::isFiltered() const {
  return filter.type != ClipTypeFilter::all || filter.sourceId;
}

void DisplayedClips::clearFilters() {
  filter.type = ClipTypeFilter::all;
  filter.sourceId.reset();
}

void DisplayedClips::refresh(const std::vector<ClipItem>& history, Selection selection) {
  std::optional<Uuid> kept;
  if (const auto* item = selected(); item != nullptr && selection == Selection::keepEntry) {
    kept = item->id;
  }
  items_ = index_.matching(history, filter);
  if (!kept || !select(*kept)) select(selected_);
}

void DisplayedClips::clear() {
  std::vector<ClipItem>().swap(items_);  // cleared, it would keep short texts where they stood
  index_.clear();
  wipe(filter.query);
  filter = {};
  selected_ = 0;
}

std::optional<std::size_t> DisplayedClips::indexOf(Uuid id) const {
  const auto found = std::find_if(items_.begin(), items_.end(),
                                  [&](const ClipItem& item) { return item.id == id; });
  if (found == items_.end()) return std::nullopt;
  return static_cast<std::size_t>(found - items_.begin());
}

const ClipItem* DisplayedClips::find(Uuid id) const {
  const auto index = indexOf(id);
  return index ? &items_[*index] : nullptr;
}

std::optional<std::size_t> DisplayedClips::selection() const {
  return items_.empty() ? std::nullopt : std::optional(selected_);
}

const ClipItem* DisplayedClips::selected() const {
  return items_.empty() ? nullptr : &items_[selected_];
}

void DisplayedClips::select(std::size_t index) {
  selected_ = items_.empty() ? 0 : std::min(index, items_.size() - 1);
}

bool DisplayedClips::select(Uuid id) {
  const auto index = indexOf(id);
  if (index) selected_ = *index;
  return index.has_value();
}

void DisplayedClips::moveSelection(int delta) {
  const auto target = static_cast<std::ptrdiff_t>(selected_) + delta;
  select(static_cast<std::size_t>(std::max<std::ptrdiff_t>(target, 0)));
}

}  // namespace vantorel
