// SPDX-License-Identifier: MIT
#include "tool/ToolLine.h"

#include <gtest/gtest.h>

#include <vector>

namespace vantorel {
namespace {

using Verb = ToolLine::Verb;
using Form = ToolLine::Form;

std::optional<ToolLine> parse(const std::vector<const char*>& arguments) {
  return ToolLine::parse(arguments);
}

std::string errorOf(const std::vector<const char*>& arguments) { return parse(arguments)->error; }

TEST(ToolLine, IsNoneWithoutAVerbInFront) {
  for (const auto& arguments : std::vector<std::vector<const char*>>{
           {}, {""}, {"--search"}, {"--json", "list"}, {"List"}, {"lists"}, {"quit"}}) {
    EXPECT_FALSE(parse(arguments));
  }
}

TEST(ToolLine, ListsInEachForm) {
  for (const auto& [arguments, form] :
       std::vector<std::pair<std::vector<const char*>, Form>>{{{"list"}, Form::lines},
                                                              {{"list", "--json"}, Form::json},
                                                              {{"list", "--null"}, Form::null}}) {
    const auto line = parse(arguments);
    EXPECT_EQ(line->verb, Verb::list);
    EXPECT_EQ(line->form, form);
    EXPECT_EQ(line->error, "");
  }
}

TEST(ToolLine, SearchesForAllItsWords) {
  const auto line = parse({"search", "--null", "two", "words"});
  EXPECT_EQ(line->verb, Verb::search);
  EXPECT_EQ(line->form, Form::null);
  EXPECT_EQ(line->words, "two words");
  EXPECT_EQ(parse({"search", "word", "--json"})->form, Form::json);
  EXPECT_EQ(parse({"search", "--", "--json"})->words, "--json");
  EXPECT_EQ(parse({"search", "--", "a", "--"})->words, "a --");
  EXPECT_EQ(parse({"search", "-"})->words, "-");
}

TEST(ToolLine, AnEntryIsANumberOrAnIdentity) {
  EXPECT_EQ(parse({"get", "12"})->entry, "12");
  EXPECT_EQ(parse({"get", "12"})->verb, Verb::get);
  EXPECT_EQ(parse({"get", "--null", "12"})->form, Form::null);
  EXPECT_EQ(parse({"get", "3f2504e0-4f89-41d3-9a0c-0305e82c3301"})->error, "");
  EXPECT_EQ(parse({"get", "99999999999999999999999"})->error, "");
  for (const char* const bad : {"", "0", "00", "1.", "+1", " 1", "one", "1 2", "0x1"}) {
    EXPECT_NE(errorOf({"get", bad}), "") << bad;
  }
  EXPECT_NE(errorOf({"get", "-1"}), "");
}

TEST(ToolLine, ExportAndImportTakeADirectory) {
  EXPECT_EQ(parse({"export", "out"})->verb, Verb::exportTo);
  EXPECT_EQ(parse({"export", "out"})->directory, "out");
  EXPECT_FALSE(parse({"export", "out"})->inTheClear);
  EXPECT_TRUE(parse({"export", "--in-the-clear", "out"})->inTheClear);
  EXPECT_TRUE(parse({"export", "out", "--in-the-clear"})->inTheClear);
  EXPECT_EQ(parse({"export", "--", "--in-the-clear"})->directory, "--in-the-clear");
  EXPECT_EQ(parse({"import", "in"})->verb, Verb::importFrom);
  EXPECT_EQ(parse({"import", "in"})->directory, "in");
  EXPECT_EQ(errorOf({"import", "--in-the-clear", "in"}),
            "vantorel import: unknown option '--in-the-clear'. Try 'vantorel --help'.");
  EXPECT_EQ(errorOf({"export", ""}), "vantorel export: give a directory. Try 'vantorel --help'.");
  EXPECT_EQ(errorOf({"import"}), "vantorel import: give a directory. Try 'vantorel --help'.");
}

TEST(ToolLine, TheHelpCanBeAskedForBehindAVerb) {
  for (const auto& arguments : std::vector<std::vector<const char*>>{
           {"list", "--help"}, {"get", "--help"}, {"export", "x", "--help"}}) {
    EXPECT_TRUE(parse(arguments)->isForHelp);
  }
  EXPECT_FALSE(parse({"list"})->isForHelp);
  EXPECT_FALSE(parse({"search", "--", "--help"})->isForHelp);
  EXPECT_EQ(parse({"search", "--", "--help"})->words, "--help");
}

TEST(ToolLine, SaysWhatItDidNotUnderstand) {
  EXPECT_EQ(errorOf({"list", "more"}),
            "vantorel list: unexpected argument 'more'. Try 'vantorel --help'.");
  EXPECT_EQ(errorOf({"list", "--jsn"}),
            "vantorel list: unknown option '--jsn'. Try 'vantorel --help'.");
  EXPECT_EQ(errorOf({"list", "--json", "--null"}),
            "vantorel list: give one form at a time. Try 'vantorel --help'.");
  EXPECT_EQ(errorOf({"list", "--json", "--json"}), "");
  EXPECT_EQ(errorOf({"search"}), "vantorel search: give words. Try 'vantorel --help'.");
  EXPECT_EQ(errorOf({"get"}), "vantorel get: give an entry's number. Try 'vantorel --help'.");
  EXPECT_EQ(errorOf({"get", "1", "2"}),
            "vantorel get: unexpected argument '2'. Try 'vantorel --help'.");
  EXPECT_EQ(errorOf({"get", "a", "b"}),
            "vantorel get: 'a' is not the number of an entry. Try 'vantorel --help'.");
  EXPECT_EQ(errorOf({"get", "--json", "1"}),
            "vantorel get: unknown option '--json'. Try 'vantorel --help'.");
}

TEST(ToolLine, ShowsNoControlCharacters) {
  EXPECT_EQ(errorOf({"list", "--\x1b[31m"}),
            "vantorel list: unknown option '-- [31m'. Try 'vantorel --help'.");
}

}  // namespace
}  // namespace vantorel
