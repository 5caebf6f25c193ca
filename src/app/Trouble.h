// SPDX-License-Identifier: MIT
#pragma once

#include <string_view>

namespace vantorel {

/// What keeps the history from doing its work, for as long as it lasts.
enum class Trouble {
  none,
  noKey,              // the keyring is locked or missing: nothing is recorded
  keyMissing,         // the keyring lacks the key of what is on the disk: nothing is recorded
  folderUnusable,     // it cannot be made, or another program has it: nothing is recorded
  historyUnreadable,  // what is on the disk does not open with the key: nothing is recorded
  notSaved,           // recorded, but not on the disk for now
  tooLarge,           // recorded, but more than is ever saved
};

struct TroubleWords {
  std::string_view toolTip;  // of the status item
  std::string_view line;     // for stderr
  std::string_view title;    // of the desktop's notification
  std::string_view body;
  std::string_view action;  // of its button; empty for none
};

/// `trouble` is not `none`.
[[nodiscard]] TroubleWords wordsOf(Trouble trouble);

}  // namespace vantorel
