// SPDX-License-Identifier: MIT
#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "platform/ActionAnswer.h"
#include "platform/ActionRequest.h"

namespace vantorel {

class ApplicationCommands;

/// What a start of the program can be asked to do, and all that the status menu does.
enum class Command {
  open,  // what a start without any command does: it has no name
  toggle,
  search,
  menu,
  pauseFifteenMinutes,
  pauseOneHour,
  pauseUntilTomorrow,
  resume,
  togglePasswordManagers,
  excludeApp,
  includeApp,  // its argument is the application's identifier
  toggleLaunchAtLogin,
  shortcut,
  clear,
  newHistory,
  about,
  quit,
  background,     // starts without showing anything
  copy,           // puts an entry on the clipboard; its argument is the entry's identity
  importHistory,  // its argument is the directory of an exported history
  check,
  version,
  help,
};

/// All that is known of a command with a name.
struct CommandEntry {
  Command command;
  std::string_view
      name;  // its action on the bus and of its row; behind two dashes its option, if it is one
  /// Its row in the status menu; the name of an application goes behind "Exclude" and "Include".
  /// Empty where there is no row.
  std::string_view title;
  /// Has the application do it; null for what a start does by itself.
  void (*perform)(ApplicationCommands& application, const std::string& argument,
                  const ActionAnswer& answer);
  bool takesArgument = false;
  bool isOption = true;  // false: only other programs ask for it
};

/// `command` is not `open`.
[[nodiscard]] const CommandEntry& entryOf(Command command);
/// Null when no command has that name.
[[nodiscard]] const CommandEntry* entryNamed(std::string_view name);

/// What the running instance offers to other programs.
[[nodiscard]] std::vector<OfferedAction> offeredActions();

/// Has the application do what is called `action`; nothing happens when nothing is called so. Of
/// what is no option `answer` tells what came.
void performAction(std::string_view action, const std::string& argument,
                   ApplicationCommands& application, const ActionAnswer& answer = answerNobody);

}  // namespace vantorel
