// SPDX-License-Identifier: MIT
#pragma once

#include <string>
#include <string_view>

#include "store/ClipItem.h"

namespace vantorel {

/// All that a row of the list shows of an entry, ready to be drawn: text is one line of bounded
/// length. UTF-8.
struct RowContent {
  Uuid id;
  ClipKind kind = ClipKind::text;
  std::string title;
  bool titleIsRTL = false;
  bool named = false;  // the title is the user's own
  bool available = true;
  std::string metadata;
  std::string accessibilityText;
  std::string sourceBundleIdentifier;  // empty: nobody knows where it is from
  std::string_view symbol;             // stands in for a picture of the entry
  bool pinned = false;
  bool canPin = true;   // or unpin
  bool divided = true;  // a hairline parts it from the row below
  friend bool operator==(const RowContent&, const RowContent&) = default;
};

/// Makes it empty, and overwrites the texts that it held.
void forget(RowContent& row);

/// `unavailable` when the first file, whose picture stands for all of them, is gone; `incomplete`
/// when another one is.
enum class Availability { available, incomplete, unavailable };

/// The name of the symbol that shows what kind of entry it is.
[[nodiscard]] std::string_view placeholder(const ClipItem& item);

[[nodiscard]] std::string titleText(const ClipItem& item);

/// Details, source application and date, parted by dots.
[[nodiscard]] std::string metadataText(const ClipItem& item, Availability availability,
                                       std::string_view date);

/// What a screen reader says for the row.
[[nodiscard]] std::string accessibilityText(const ClipItem& item, Availability availability,
                                            std::string_view date);

/// What the pin of a row does, and what is said about it; key symbols are not spelled out.
[[nodiscard]] std::string pinTitle(const RowContent& row);
[[nodiscard]] std::string pinToolTip(const RowContent& row);
/// What the user is told when there are as many pins as there may be.
[[nodiscard]] std::string pinLimitText();

/// `date`: the entry's recency in words.
[[nodiscard]] RowContent rowContent(const ClipItem& item, Availability availability,
                                    std::string_view date, bool canPinMore);

}  // namespace vantorel
