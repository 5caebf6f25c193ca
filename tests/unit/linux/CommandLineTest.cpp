#include "platform/linux/CommandLine.h"

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

TEST(CommandLine, UnderstandsEachOption) {
  const std::vector<std::pair<const char*, Command>> options = {{"--toggle", Command::toggle},
                                                                {"--search", Command::search},
                                                                {"--quit", Command::quit},
                                                                {"--help", Command::help},
                                                                {"--version", Command::version}};
  for (const auto& [option, command] : options) {
    const CommandLine line = parse({option});
    EXPECT_EQ(line.command, command) << option;
    EXPECT_EQ(line.error, "") << option;
    EXPECT_NE(CommandLine::helpText().find(option), std::string_view::npos) << option;
  }
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

TEST(CommandLine, ActionNamesLeadBackToTheirCommands) {
  for (const Command command : {Command::toggle, Command::search, Command::quit}) {
    const auto name = actionName(command);
    ASSERT_TRUE(name);
    EXPECT_EQ(commandForAction(*name), command);
  }
  EXPECT_FALSE(actionName(Command::open));
  EXPECT_FALSE(actionName(Command::help));
  EXPECT_FALSE(commandForAction("help"));
  EXPECT_FALSE(commandForAction(""));
  EXPECT_FALSE(commandForAction("Quit"));
}

}  // namespace
}  // namespace vantorel
