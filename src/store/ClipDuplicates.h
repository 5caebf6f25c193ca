// SPDX-License-Identifier: MIT
#pragma once

#include <vector>

#include "store/ClipItem.h"

namespace vantorel {

/// Whether both hold the same content: the same text, the same image by its hash, or the same
/// paths in the same order. Where it came from and its rich forms do not count. An image without
/// a hash duplicates nothing, not even itself.
[[nodiscard]] bool duplicates(const ClipItem& a, const ClipItem& b);

/// `item` under the identity, first date and pin of what it repeats: of the first pin among
/// `matches` in the order of the history, else of the first match. `item` itself when there are
/// no matches.
[[nodiscard]] ClipItem preservingPin(const std::vector<ClipItem>& matches, const ClipItem& item);

/// One entry for every content, the most recently copied first.
[[nodiscard]] std::vector<ClipItem> coalesced(std::vector<ClipItem> items);

struct Insertion {
  std::vector<ClipItem> items;
  bool isNews = true;  // false when the entry repeats the one that was copied last
};

/// The list with `item`, merged with what it duplicates, at the front.
[[nodiscard]] Insertion inserted(std::vector<ClipItem> items, const ClipItem& item);

/// Gives every entry whose identity an earlier one has already an identity of its own, so that
/// none is lost when entries are looked up by it. A damaged or foreign history may need this.
void separateIdentities(std::vector<ClipItem>& items);

}  // namespace vantorel
