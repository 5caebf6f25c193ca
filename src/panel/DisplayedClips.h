// SPDX-License-Identifier: MIT
#pragma once

#include <cstddef>
#include <optional>
#include <vector>

#include "store/ClipItem.h"
#include "store/ClipSearchFilter.h"
#include "store/ClipSearchIndex.h"

namespace vantorel {

/// The entries that the panel lists, and which of them is selected. Main thread.
class DisplayedClips {
 public:
  /// What the list is narrowed to, from the next `refresh` on.
  ClipSearchFilter filter;

  /// Whether a type or a source has been chosen.
  [[nodiscard]] bool isFiltered() const;
  /// The same, or something is searched for.
  [[nodiscard]] bool isNarrowed() const { return isFiltered() || !filter.query.empty(); }
  void clearFilters();

  /// Which entry is selected in a list that has changed. One that is gone leaves the selection
  /// where it was, or at the new end.
  enum class Selection { keepEntry, keepIndex };

  /// Lists what the filter leaves of `history`.
  void refresh(const std::vector<ClipItem>& history, Selection selection);
  /// Does some of the work of searching `item` ahead of need.
  void prepareSearch(const ClipItem& item) { index_.prepare(item); }
  /// Keeps nothing of the history, nor of what was searched for in it.
  void clear();

  [[nodiscard]] const std::vector<ClipItem>& items() const { return items_; }
  [[nodiscard]] std::optional<std::size_t> indexOf(Uuid id) const;
  /// The entry of that identity, while it is listed.
  [[nodiscard]] const ClipItem* find(Uuid id) const;

  /// Where the selection is, and its entry; nothing in an empty list.
  [[nodiscard]] std::optional<std::size_t> selection() const;
  [[nodiscard]] const ClipItem* selected() const;
  /// A place beyond the end selects the last entry.
  void select(std::size_t index);
  /// False, and nothing happens, when the entry is not listed.
  bool select(Uuid id);
  /// By so many entries, downwards if positive, and not beyond the ends.
  void moveSelection(int delta);

 private:
  std::vector<ClipItem> items_;
  ClipSearchIndex index_;
  std::size_t selected_ = 0;  // below the count, or 0
};

}  // namespace vantorel
