// SPDX-License-Identifier: MIT
#include "platform/linux/xdg/KeyFile.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace vantorel {
namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;

TEST(KeyFile, HoldsKeysByGroup) {
  const auto file = parseKeyFile("[A]\nkey = one \r\n# comment\n\n[B]\nkey=two=three\n");
  EXPECT_EQ(valueOf(file.at("A"), "key"), "one");
  EXPECT_EQ(valueOf(file.at("B"), "key"), "two=three");
  EXPECT_EQ(valueOf(file.at("B"), "other"), "");
}

TEST(KeyFile, TheFirstOfARepeatedKeyCounts) {
  const auto file = parseKeyFile("[A]\nkey=one\nkey=two\n[B]\n[A]\nkey=three\nmore=four");
  EXPECT_EQ(valueOf(file.at("A"), "key"), "one");
  EXPECT_EQ(valueOf(file.at("A"), "more"), "four");
}

TEST(KeyFile, PassesOverWhatMakesNoSense) {
  EXPECT_THAT(parseKeyFile("key=before any group\nno equals\n"), IsEmpty());
  const auto file = parseKeyFile("[A]\nwords\nbad=\xFF\xFE\ngood=1\n[unclosed\nlost=1\n[]\nlost=2");
  EXPECT_EQ(file.at("A").size(), 1U);
  for (const auto& [name, keys] : file) EXPECT_FALSE(keys.contains("lost")) << name;
}

TEST(KeyFile, OneGroupEndsWhereTheNextBegins) {
  const auto keys = parseKeyGroup("[A]\na=1\n[B]\nb=1\n[C]\nb=2\n[B]\nc=3\n", "B");
  EXPECT_EQ(keys.size(), 1U);
  EXPECT_EQ(valueOf(keys, "b"), "1");
  EXPECT_THAT(parseKeyGroup("[A]\na=1\n", "Z"), IsEmpty());
}

TEST(KeyFile, SplitsLists) {
  EXPECT_THAT(listOf(" a, b ,,c,", ','), ElementsAre("a", "b", "c"));
  EXPECT_THAT(listOf("", ';'), IsEmpty());
  EXPECT_THAT(listOf(" ; ", ';'), IsEmpty());
}

}  // namespace
}  // namespace vantorel
