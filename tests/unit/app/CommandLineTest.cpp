// SPDX-License-Identifier: MIT
#include "app/CommandLine.h"

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
  EXPECT_EQ(line.request(), ActionRequest());
  EXPECT_EQ(line.error, "");
}

TEST(CommandLine, UnderstandsEachOption) {
  for (const auto& [option, command] : std::vector<std::pair<const char*, Command>>{
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
           {"--new-history", Command::newHistory},
           {"--about", Command::about},
           {"--quit", Command::quit},
           {"--background", Command::background},
           {"--check", Command::check},
           {"--version", Command::version},
           {"--help", Command::help}}) {
    const CommandLine line = parse({option});
    EXPECT_EQ(line.command, command) << option;
    EXPECT_EQ(line.argument, "") << option;
    EXPECT_EQ(line.error, "") << option;
    EXPECT_EQ("--" + line.request().action, option);
    EXPECT_NE(CommandLine::helpText().find(option), std::string_view::npos) << option;
  }
}

TEST(CommandLine, IncludesAnApplicationByItsIdentifier) {
  const CommandLine line = parse({"--include-app=org.example.A=b c"});
  EXPECT_EQ(line.command, Command::includeApp);
  EXPECT_EQ(line.argument, "org.example.A=b c");
  EXPECT_EQ(line.request(), (ActionRequest{"include-app", "org.example.A=b c"}));
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
  EXPECT_NE(parse({"--=1"}).error, "");
  EXPECT_NE(parse({"quit"}).error, "");
  EXPECT_NE(parse({"--import=/tmp"}).error, "");
  EXPECT_NE(parse({"--copy=3F2504E0-4F89-41D3-9A0C-0305E82C3301"}).error, "");
}

TEST(CommandLine, RefusesTwoCommandsButNotOneTwice) {
  EXPECT_NE(parse({"--toggle", "--quit"}).error, "");
  EXPECT_EQ(parse({"--quit", "--quit"}).error, "");
  EXPECT_EQ(parse({"--quit", "--quit"}).command, Command::quit);
}

TEST(CommandLine, QuittingStartsNothing) {
  EXPECT_EQ(parse({"--quit"}).request().ifNobodyRuns, IfNobodyRuns::end);
  EXPECT_EQ(parse({}).request().ifNobodyRuns, IfNobodyRuns::start);
  EXPECT_EQ(parse({"--about"}).request().ifNobodyRuns, IfNobodyRuns::start);
}

TEST(CommandLine, ShowsNoControlCharacters) {
  EXPECT_EQ(parse({"--\x1b[31m\n"}).error,
            "vantorel: unknown option '--?[31m?'. Try 'vantorel --help'.");
}

}  // namespace
}  // namespace vantorel
