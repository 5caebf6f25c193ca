// SPDX-License-Identifier: MIT
#include "app/CommandLine.h"

#include <algorithm>
#include <optional>
#include <utility>

namespace vantorel {
namespace {

constexpr std::string_view dashes = "--";

/// One argument, understood by itself; absent when it is not.
std::optional<CommandLine> understood(std::string_view text) {
  if (!text.starts_with(dashes)) return std::nullopt;
  const auto equals = text.find('=');
  const auto* entry = entryNamed(text.substr(0, equals).substr(dashes.size()));
  if (entry == nullptr || !entry->isOption) return std::nullopt;
  const bool isPlain = equals == std::string_view::npos;
  const bool hasArgument = !isPlain && equals + 1 < text.size();
  if (entry->takesArgument ? !hasArgument : !isPlain) return std::nullopt;
  return CommandLine{.command = entry->command,
                     .argument = std::string(isPlain ? "" : text.substr(equals + 1))};
}

/// Control characters could rewrite what the terminal shows.
std::string printable(std::string_view text) {
  std::string result(text);
  std::replace_if(
      result.begin(), result.end(),
      [](char c) { return static_cast<unsigned char>(c) < 0x20 || c == 0x7f; }, '?');
  return result;
}

}  // namespace

CommandLine CommandLine::parse(std::span<const char* const> arguments) {
  std::optional<CommandLine> chosen;
  for (const std::string_view argument : arguments) {
    auto line = understood(argument);
    if (!line) {
      const bool option = !argument.empty() && argument.front() == '-';
      return {.error = std::string("vantorel: ") +
                       (option ? "unknown option '" : "unexpected argument '") +
                       printable(argument) + "'. Try 'vantorel --help'."};
    }
    if (chosen && (chosen->command != line->command || chosen->argument != line->argument)) {
      return {.error = "vantorel: give one command at a time. Try 'vantorel --help'."};
    }
    chosen = std::move(line);
  }
  return chosen.value_or(CommandLine());
}

ActionRequest CommandLine::request() const {
  if (command == Command::open) return {};
  return {.action = std::string(entryOf(command).name),
          .argument = argument,
          .ifNobodyRuns = command == Command::quit ? IfNobodyRuns::end : IfNobodyRuns::start};
}

std::string_view CommandLine::helpText() {
  return R"(Usage: vantorel [COMMAND]

Vantorel keeps a private, encrypted history of what you copy and pastes any of
it again. Without a command it starts, and shows its history panel where no tray
shows that it runs; if it is running already, the panel is shown.

Commands for the running Vantorel, for keys and launchers of your desktop:
  --toggle     show or hide the history panel
  --search     show the panel with its search field
  --menu       show the menu at the pointer
  --about      show what Vantorel is and does
  --quit       quit Vantorel

The rest of the menu:
  --pause-15-minutes, --pause-1-hour, --pause-until-tomorrow
               record nothing for that long
  --resume     record again
  --toggle-password-managers
               ignore what password managers copy, or no longer do
  --exclude-app
               record nothing from the application in front
  --include-app=ID
               record again what the application with that identifier copies
  --toggle-launch-at-login
               start Vantorel when you log in, or no longer do
  --shortcut   choose another keyboard shortcut
  --clear      clear the history; you are asked first

If the history cannot be opened, because the keyring was lost or replaced:
  --new-history
               keep the old history beside itself and begin a new one

For scripts and pickers, in any terminal, without a display:
  list [--json | --null]
               print number, kind and title of each entry, as the panel has them
  search [--json | --null] WORDS
               print those that the panel's search finds
  get [--null] N
               print an entry: its text, the picture's file, or its paths
  copy N       have the running Vantorel put an entry on the clipboard
  export [--in-the-clear] DIR
               write all entries into a new directory, readable; you are asked
  import DIR   take in what was exported

Other:
  --background
               start without showing anything, as at log-in
  --check      say what this desktop gives Vantorel, what is missing and what
               to install; exit status 1 when something needed is missing
  --version    print the version and exit
  --help       print this help and exit

Where nothing is running yet, a command starts Vantorel first; --quit does not.

Exit status: 0 done, 1 it could not be done, 2 the command was not understood,
3 the keyring is locked or has no key, 4 there is no such entry.
)";
}

}  // namespace vantorel
