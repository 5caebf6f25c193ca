// SPDX-License-Identifier: MIT
#include "platform/linux/windows/PasteboardText.h"

#include <gtest/gtest.h>

#include "platform/linux/windows/TextCharsets.h"

namespace vantorel {
namespace {

TEST(PasteboardText, KeepsUtf8) {
  EXPECT_EQ(decodedText(bytesOf("שלום"), TextEncoding::utf8), "שלום");
  EXPECT_EQ(decodedText(bytesOf("שלום"), TextEncoding::unmarked), "שלום");
}

TEST(PasteboardText, RepairsWhatCallsItselfUtf8) {
  EXPECT_EQ(decodedText(bytesOf("caf\xE9"), TextEncoding::utf8), "caf\xEF\xBF\xBD");
}

TEST(PasteboardText, ReadsUnmarkedTextAsLatin1WhenItIsNoUtf8) {
  EXPECT_EQ(decodedText(bytesOf("caf\xE9 \xFF\x80"), TextEncoding::unmarked),
            "caf\xC3\xA9 \xC3\xBF\xC2\x80");
}

TEST(PasteboardText, LosesTheNulsAtItsEndOnly) {
  EXPECT_EQ(decodedText(bytesOf(std::string_view("\0a\0\0", 4)), TextEncoding::utf8),
            std::string("\0a", 2));
  EXPECT_EQ(decodedText({}, TextEncoding::utf8), "");
}

TEST(PasteboardText, TheLabelRulesOverTheName) {
  EXPECT_EQ(decodedAnswer(bytesOf("caf\xE9"), "TEXT", "STRING"), "café");
  EXPECT_EQ(decodedAnswer(bytesOf("שלום"), "TEXT", "UTF8_STRING"), "שלום");
  EXPECT_EQ(decodedAnswer(bytesOf("\x1B-H\xF9\xEC"), "TEXT", "COMPOUND_TEXT"), "של");
  EXPECT_EQ(decodedAnswer(bytesOf("caf\xE9"), "COMPOUND_TEXT", "STRING"), "café");
  EXPECT_EQ(decodedAnswer(bytesOf("caf\xE9"), "UTF8_STRING", "STRING"), "café");
}

TEST(PasteboardText, TheNameRulesWhereTheLabelSaysNothing) {
  const std::string name = "text/plain;charset=";
  EXPECT_EQ(decodedAnswer(bytesOf("caf\xE9"), "text/plain", ""), "café");
  EXPECT_EQ(decodedAnswer(bytesOf("café"), "text/plain", ""), "café");
  EXPECT_EQ(decodedAnswer(bytesOf("caf\xE9"), name + "UTF-8", ""), "caf\xEF\xBF\xBD");
  EXPECT_EQ(decodedAnswer(bytesOf("\xF9\xEC"), name + "iso-8859-8", ""), "של");
  EXPECT_EQ(
      decodedAnswer(bytesOf(std::string_view("\xFF\xFE\xD0\x05\0\0", 6)), name + "utf-16", ""),
      "א");
  EXPECT_EQ(decodedAnswer(bytesOf("\x1B-H\xF9\xEC\x1B-A\xE9"), "COMPOUND_TEXT", ""), "שלé");
  EXPECT_EQ(decodedAnswer(bytesOf("x"), name + "no-such-charset", ""), std::nullopt);
}

TEST(PasteboardText, IsAlwaysValid) {
  const auto lone = decodedAnswer(bytesOf(std::string_view("\xFE\xFF\xD8\x00\x00\x61", 6)),
                                  "text/plain;charset=utf-16", "");
  EXPECT_EQ(lone, "\xEF\xBF\xBD\x61");
}

TEST(PasteboardText, WritesCompoundTextThatReadsBack) {
  for (const std::string text : {"", "plain", "café", "שלום é €", "日本"}) {
    const auto compound = compoundText(text);
    ASSERT_TRUE(compound) << text;
    EXPECT_EQ(decodedAnswer(bytesOf(*compound), "COMPOUND_TEXT", "COMPOUND_TEXT"), text);
  }
  EXPECT_EQ(compoundText("😀"), std::nullopt) << "it lacks that character";
}

TEST(PasteboardText, WritesLatin1AsFarAsItReaches) {
  EXPECT_EQ(latin1("aé\xC2\x80ÿ"), "a\xE9\x80\xFF");
  EXPECT_EQ(latin1("€א😀."), "???.");
  EXPECT_EQ(latin1(""), "");
}

}  // namespace
}  // namespace vantorel
