#include "platform/linux/start/CommandLine.h"

#include <algorithm>
#include <array>
#include <utility>

namespace vantorel {
namespace {

struct Spelling {
  std::string_view option;
  Command command;
};

constexpr std::array spellings = {
    Spelling{"--toggle", Command::toggle},
    Spelling{"--search", Command::search},
    Spelling{"--menu", Command::menu},
    Spelling{"--pause-15-minutes", Command::pauseFifteenMinutes},
    Spelling{"--pause-1-hour", Command::pauseOneHour},
    Spelling{"--pause-until-tomorrow", Command::pauseUntilTomorrow},
    Spelling{"--resume", Command::resume},
    Spelling{"--toggle-password-managers", Command::togglePasswordManagers},
    Spelling{"--exclude-app", Command::excludeApp},
    Spelling{"--include-app", Command::includeApp},
    Spelling{"--toggle-launch-at-login", Command::toggleLaunchAtLogin},
    Spelling{"--shortcut", Command::shortcut},
    Spelling{"--clear", Command::clear},
    Spelling{"--about", Command::about},
    Spelling{"--quit", Command::quit},
    Spelling{"--version", Command::version},
    Spelling{"--help", Command::help},
};

constexpr std::string_view dashes = "--";

struct Request {
  Command command;
  std::string argument;
};

std::optional<Request> requestFor(std::string_view text) {
  const auto equals = text.find('=');
  const auto* found = std::find_if(spellings.begin(), spellings.end(), [&](const Spelling& s) {
    return s.option == text.substr(0, equals);
  });
  if (found == spellings.end()) return std::nullopt;
  const bool hasArgument = equals != std::string_view::npos && equals + 1 < text.size();
  const bool isPlain = equals == std::string_view::npos;
  if (takesArgument(found->command) ? !hasArgument : !isPlain) return std::nullopt;
  return Request{found->command, std::string(isPlain ? "" : text.substr(equals + 1))};
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
  std::optional<Request> chosen;
  for (const std::string_view argument : arguments) {
    auto request = requestFor(argument);
    if (!request) {
      const bool option = !argument.empty() && argument.front() == '-';
      return {.error = std::string("vantorel: ") +
                       (option ? "unknown option '" : "unexpected argument '") +
                       printable(argument) + "'. Try 'vantorel --help'."};
    }
    if (chosen && (chosen->command != request->command || chosen->argument != request->argument)) {
      return {.error = "vantorel: give one command at a time. Try 'vantorel --help'."};
    }
    chosen = std::move(request);
  }
  if (!chosen) return {};
  return {.command = chosen->command, .argument = std::move(chosen->argument), .error = {}};
}

std::string_view CommandLine::helpText() {
  return R"(Usage: vantorel [COMMAND]

Vantorel keeps a private, encrypted history of what you copy and pastes any of
it again. Without a command it starts in the background; if it is running
already, its history panel is shown.

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

Other:
  --version    print the version and exit
  --help       print this help and exit

Where nothing is running yet, a command starts Vantorel first; --quit does not.

Exit status: 0 done, 1 it could not be done, 2 the command was not understood.
)";
}

std::optional<std::string_view> actionName(Command command) {
  if (command == Command::version || command == Command::help) return std::nullopt;
  const auto* found = std::find_if(spellings.begin(), spellings.end(),
                                   [&](const Spelling& s) { return s.command == command; });
  if (found == spellings.end()) return std::nullopt;
  return found->option.substr(dashes.size());
}

std::optional<Command> commandForAction(std::string_view name) {
  const auto* found = std::find_if(spellings.begin(), spellings.end(), [&](const Spelling& s) {
    return actionName(s.command) == name;
  });
  if (found == spellings.end()) return std::nullopt;
  return found->command;
}

bool takesArgument(Command command) { return command == Command::includeApp; }

}  // namespace vantorel
