// SPDX-License-Identifier: MIT
#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

#include "store/ClipItem.h"
#include "store/ClipSearchFilter.h"

namespace vantorel {

/// Answers a filter over a list as `ClipSearchFilter::includes` does, but keeps each entry's
/// folded text between keystrokes. Main thread.
class ClipSearchIndex {
 public:
  /// The entries of `items` that `filter` includes, in order. Entries that must be searched and
  /// are new or have changed are folded now; entries that are gone are forgotten.
  [[nodiscard]] std::vector<ClipItem> matching(const std::vector<ClipItem>& items,
                                               const ClipSearchFilter& filter);

  /// Folds one entry ahead of need; does nothing when it is folded already.
  void prepare(const ClipItem& item);

  /// Gives the memory back.
  void clear();

 private:
  struct Entry {
    std::optional<SharedText> text;  // what was folded; shared with the history
    std::string details;
    std::string foldedText;  // empty when folding leaves the text as it is
    std::string foldedDetails;
    bool isRuledOut = false;  // does not contain `needle_`
    bool isListed = true;     // is in the list that is being filtered
  };
  Entry& folded(const ClipItem& item);
  void useNeedle(std::string needle);
  [[nodiscard]] bool matches(const ClipItem& item);
  void forgetWhatIsGone(const std::vector<ClipItem>& items);

  std::unordered_map<Uuid, Entry> entries_;
  std::string needle_;  // folded
};

}  // namespace vantorel
