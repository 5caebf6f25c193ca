#include "platform/linux/start/CommandLine.h"

#include <gtest/gtest.h>

#include <vector>

namespace vantorel {
namespace {

CommandLine parse(const std::vector<const char*>& arguments) {
  return CommandLine::parse(arguments);
}

TEST(CommandLine, NoArgumentOpens) {
  const CommandLine line = parse({});
  EXPECT_EQ(line.command, Command::open);
  EXPECT_EQ(line.error, "");
}

const std::vector<std::pair<const char*, Command>> actions = {
    {"--toggle", Command::toggle},
    {"--search", Command::search},
    {"--menu", Command::menu},
    {"--pause-15-minutes", Command::pauseFifteenMinutes},
    {"--pause-1-hour", Command::pauseOneHour},
    {"--pause-until-tomorrow", Command::pauseUntilTomorrow},
    {"--resume", Command::resume},
    {"--toggle-password-managers", Command::togglePasswordManagers},
    {"--exclude-app", Command::excludeApp},
    {"--toggle-launch-at-login", Command::toggleLaunchAtLogin},
    {"--shortcut", Command::shortcut},
    {"--clear", Command::clear},
    {"--about", Command::about},
    {"--quit", Command::quit},
};

TEST(CommandLine, UnderstandsEachOption) {
  auto options = actions;
  options.emplace_back("--help", Command::help);
  options.emplace_back("--version", Command::version);
  for (const auto& [option, command] : options) {
    const CommandLine line = parse({option});
    EXPECT_EQ(line.command, command) << option;
    EXPECT_EQ(line.argument, "") << option;
    EXPECT_EQ(line.error, "") << option;
    EXPECT_NE(CommandLine::helpText().find(option), std::string_view::npos) << option;
  }
}

TEST(CommandLine, IncludesAnApplicationByItsIdentifier) {
  const CommandLine line = parse({"--include-app=org.example.A=b c"});
  EXPECT_EQ(line.command, Command::includeApp);
  EXPECT_EQ(line.argument, "org.example.A=b c");
  EXPECT_EQ(line.error, "");
  EXPECT_NE(parse({"--include-app"}).error, "");
  EXPECT_NE(parse({"--include-app="}).error, "");
  EXPECT_NE(parse({"--include-app=a", "--include-app=b"}).error, "");
  EXPECT_NE(CommandLine::helpText().find("--include-app=ID"), std::string_view::npos);
}

TEST(CommandLine, RefusesWhatItDoesNotKnow) {
  EXPECT_EQ(parse({"--togle"}).error, "vantorel: unknown option '--togle'. Try 'vantorel --help'.");
  EXPECT_EQ(parse({"--toggle", "file.txt"}).error,
            "vantorel: unexpected argument 'file.txt'. Try 'vantorel --help'.");
  EXPECT_NE(parse({""}).error, "");
  EXPECT_NE(parse({"--TOGGLE"}).error, "");
  EXPECT_NE(parse({"--toggle=1"}).error, "");
  EXPECT_NE(parse({"--"}).error, "");
}

TEST(CommandLine, RefusesTwoCommandsButNotOneTwice) {
  EXPECT_NE(parse({"--toggle", "--quit"}).error, "");
  EXPECT_EQ(parse({"--quit", "--quit"}).error, "");
  EXPECT_EQ(parse({"--quit", "--quit"}).command, Command::quit);
}

TEST(CommandLine, ShowsNoControlCharacters) {
  EXPECT_EQ(parse({"--\x1b[31m\n"}).error,
            "vantorel: unknown option '--?[31m?'. Try 'vantorel --help'.");
}

TEST(CommandLine, ActionNamesAreTheOptionsAndLeadBackToTheirCommands) {
  for (const auto& [option, command] : actions) {
    const auto name = actionName(command);
    ASSERT_TRUE(name) << option;
    EXPECT_EQ("--" + std::string(*name), option);
    EXPECT_EQ(commandForAction(*name), command);
    EXPECT_FALSE(takesArgument(command));
  }
  EXPECT_EQ(actionName(Command::includeApp), "include-app");
  EXPECT_EQ(commandForAction("include-app"), Command::includeApp);
  EXPECT_TRUE(takesArgument(Command::includeApp));
  EXPECT_FALSE(actionName(Command::open));
  EXPECT_FALSE(actionName(Command::help));
  EXPECT_FALSE(actionName(Command::version));
  EXPECT_FALSE(commandForAction("help"));
  EXPECT_FALSE(commandForAction(""));
  EXPECT_FALSE(commandForAction("Quit"));
  EXPECT_FALSE(commandForAction("--quit"));
}

}  // namespace
}  // namespace vantorel
