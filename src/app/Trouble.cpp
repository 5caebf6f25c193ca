// SPDX-License-Identifier: MIT
#include "app/Trouble.h"

namespace vantorel {

TroubleWords wordsOf(Trouble trouble) {
  switch (trouble) {
    case Trouble::keyMissing:
      return {.toolTip = "Vantorel — Nothing Recorded: The Key Is Missing",
              .line =
                  "vantorel: nothing is recorded: the keyring does not hold the key of the history "
                  "on the disk. 'vantorel --new-history' sets it aside.",
              .title = "Vantorel records nothing",
              .body =
                  "The keyring does not hold the key of your history on the disk. Recording "
                  "begins by itself when the keyring that has it is there. You can also set the "
                  "history aside, where it is kept, and begin a new one.",
              .action = "Begin a New History"};
    case Trouble::folderUnusable:
      return {.toolTip = "Vantorel — Nothing Recorded: Its Folder Cannot Be Used",
              .line =
                  "vantorel: nothing is recorded: the folder of the history cannot be made or "
                  "changed, or another program uses it.",
              .title = "Vantorel records nothing",
              .body =
                  "The folder of the history cannot be made or changed, or another program uses "
                  "it. When that is over, quit Vantorel and start it again.",
              .action = ""};
    case Trouble::historyUnreadable:
      return {.toolTip = "Vantorel — Nothing Recorded: The History Cannot Be Opened",
              .line =
                  "vantorel: nothing is recorded: the history on the disk cannot be opened. "
                  "'vantorel --new-history' sets it aside.",
              .title = "Vantorel records nothing",
              .body =
                  "The history on the disk cannot be opened with the key in your keyring. It "
                  "is left as it is. You can set it aside, where it is kept, and begin a new "
                  "one.",
              .action = "Begin a New History"};
    case Trouble::notSaved:
      return {.toolTip = "Vantorel — The History Cannot Be Saved",
              .line = "vantorel: the history cannot be saved; it is tried again.",
              .title = "Vantorel cannot save its history",
              .body =
                  "The disk may be full or read-only. What you copy is kept in memory, and what "
                  "you delete may still be on the disk, until the history can be saved. That is "
                  "tried again by itself.",
              .action = ""};
    case Trouble::tooLarge:
      return {.toolTip = "Vantorel — The History Is Too Large to Be Saved",
              .line = "vantorel: the pinned entries are too large together to be saved.",
              .title = "Vantorel cannot save its history",
              .body =
                  "The pinned entries are larger together than a history can be. What you copy is "
                  "kept in memory until you delete or unpin a large one.",
              .action = ""};
    case Trouble::noKey:
    case Trouble::none:
      break;
  }
  return {
      .toolTip = "Vantorel — Nothing Recorded: No Keyring",
      .line =
          "vantorel: nothing is recorded: the keyring is locked, missing or does not "
          "answer. 'vantorel --check' says more.",
      .title = "Vantorel records nothing",
      .body =
          "The keyring that holds the key of your history is locked, missing or does not "
          "answer. Recording begins by itself when it is there. The keyring can ask you for its "
          "password, or for a new keyring if you have none.",
      .action = "Ask Me"};
}

}  // namespace vantorel
