// SPDX-License-Identifier: MIT
#pragma once

#include <cstddef>
#include <optional>
#include <string>

#include "store/ClipItem.h"

namespace vantorel {

/// The text of an entry in a form that is safe to lay out, piece by piece: a text may be megabytes
/// long, and laying a piece out takes a moment only. It ends where nobody reads on in a preview.
/// UTF-8.
class PreviewText {
 public:
  explicit PreviewText(const ClipItem& item);

  /// Whether the text is to be set from right to left.
  [[nodiscard]] bool isRTL() const { return rtl_; }

  /// The next lines, at least one, parted by '\n' and without one at the end; nothing behind the
  /// last. Line breaks of every kind are '\n', other control characters are visible, and nothing in
  /// it reorders what is written. A very long line is broken.
  [[nodiscard]] std::optional<std::string> nextPiece();

  /// Whether the entry holds more than the pieces do.
  [[nodiscard]] bool goesOn() const { return goesOn_; }

  /// The most bytes of an entry that are shown.
  static constexpr std::size_t maxBytes = 200'000;

 private:
  /// Appends one line, or the start of one that is too long; answers what laying it out costs.
  std::size_t readLine(std::string& piece);

  SharedText text_;
  std::size_t end_ = 0;
  std::size_t offset_ = 0;
  bool finished_ = false;
  bool goesOn_ = false;
  bool rtl_ = false;
};

}  // namespace vantorel
