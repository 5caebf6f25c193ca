#pragma once

#include <optional>
#include <span>
#include <string>
#include <string_view>

namespace vantorel {

/// What a start of the program is asked to do. All but the first and the last two are actions that
/// the running instance offers by name.
enum class Command {
  open,
  toggle,
  search,
  menu,
  pauseFifteenMinutes,
  pauseOneHour,
  pauseUntilTomorrow,
  resume,
  togglePasswordManagers,
  excludeApp,
  includeApp,  // the one that takes an argument: the application's identifier
  toggleLaunchAtLogin,
  shortcut,
  clear,
  about,
  quit,
  version,
  help,
};

/// The arguments of a start, understood or not.
struct CommandLine {
  Command command = Command::open;
  std::string argument = {};  // empty for a command that takes none
  std::string error = {};     // one line for stderr, without a line end; empty when understood

  /// Exit status for arguments that were not understood.
  static constexpr int usageError = 2;

  /// `arguments` without the program's own name. At most one command; nothing means `open`.
  [[nodiscard]] static CommandLine parse(std::span<const char* const> arguments);
  /// What `--help` prints.
  [[nodiscard]] static std::string_view helpText();
};

/// The name under which the running instance offers `command` to other programs, which is its
/// option without the dashes; absent for a command that is no action of its own.
[[nodiscard]] std::optional<std::string_view> actionName(Command command);
[[nodiscard]] std::optional<Command> commandForAction(std::string_view name);
[[nodiscard]] bool takesArgument(Command command);

}  // namespace vantorel
