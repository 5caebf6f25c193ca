#pragma once

#include <string>
#include <unordered_map>
#include <vector>

#include "store/ClipItem.h"
#include "store/ClipSearchFilter.h"

namespace vantorel {

/// Answers a filter over a list as `ClipSearchFilter::includes` does, but keeps each entry's
/// folded text between keystrokes. Main thread.
class ClipSearchIndex {
 public:
  /// The entries of `items` that `filter` includes, in order. Entries of `items` that are new or
  /// have changed are folded now; entries that are gone are forgotten.
  [[nodiscard]] std::vector<ClipItem> matching(const std::vector<ClipItem>& items,
                                               const ClipSearchFilter& filter);

  /// Folds one entry ahead of need; does nothing when it is folded already.
  void prepare(const ClipItem& item);

  /// Gives the memory back.
  void clear();

 private:
  struct Entry {
    ClipItem item;  // what was folded: shares its text with the history
    std::string folded;
  };
  const std::string& foldedText(const ClipItem& item);

  std::unordered_map<Uuid, Entry> entries_;
};

}  // namespace vantorel
