#include "platform/linux/CommandLine.h"

#include <algorithm>
#include <array>

namespace vantorel {
namespace {

struct Spelling {
  std::string_view option;
  Command command;
};

constexpr std::array spellings = {
    Spelling{"--toggle", Command::toggle}, Spelling{"--search", Command::search},
    Spelling{"--quit", Command::quit},     Spelling{"--version", Command::version},
    Spelling{"--help", Command::help},
};

std::optional<Command> commandForOption(std::string_view option) {
  const auto* found = std::find_if(spellings.begin(), spellings.end(),
                                   [&](const Spelling& s) { return s.option == option; });
  if (found == spellings.end()) return std::nullopt;
  return found->command;
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
  std::optional<Command> chosen;
  for (const std::string_view argument : arguments) {
    const auto command = commandForOption(argument);
    if (!command) {
      const bool option = !argument.empty() && argument.front() == '-';
      return {.error = std::string("vantorel: ") +
                       (option ? "unknown option '" : "unexpected argument '") +
                       printable(argument) + "'. Try 'vantorel --help'."};
    }
    if (chosen && *chosen != *command) {
      return {.error = "vantorel: give one command at a time. Try 'vantorel --help'."};
    }
    chosen = command;
  }
  return {.command = chosen.value_or(Command::open), .error = {}};
}

std::string_view CommandLine::helpText() {
  return R"(Usage: vantorel [COMMAND]

Vantorel keeps a private, encrypted history of what you copy and pastes any of
it again. Without a command it starts in the background; if it is running
already, its history panel is shown.

Commands for the running Vantorel, for keys and launchers of your desktop:
  --toggle     show or hide the history panel
  --search     show the panel with its search field
  --quit       quit Vantorel

Other:
  --version    print the version and exit
  --help       print this help and exit

Where nothing is running yet, a command starts Vantorel first; --quit does not.

Exit status: 0 done, 1 it could not be done, 2 the command was not understood.
)";
}

std::optional<std::string_view> actionName(Command command) {
  switch (command) {
    case Command::toggle:
      return "toggle";
    case Command::search:
      return "search";
    case Command::quit:
      return "quit";
    case Command::open:
    case Command::version:
    case Command::help:
      return std::nullopt;
  }
  return std::nullopt;
}

std::optional<Command> commandForAction(std::string_view name) {
  for (const Spelling& spelling : spellings) {
    if (actionName(spelling.command) == name) return spelling.command;
  }
  return std::nullopt;
}

}  // namespace vantorel
