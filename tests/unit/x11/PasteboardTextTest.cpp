#include "platform/linux/x11/PasteboardText.h"

#include <gtest/gtest.h>

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

TEST(PasteboardText, WritesLatin1AsFarAsItReaches) {
  EXPECT_EQ(latin1("aé\xC2\x80ÿ"), "a\xE9\x80\xFF");
  EXPECT_EQ(latin1("€א😀."), "???.");
  EXPECT_EQ(latin1(""), "");
}

}  // namespace
}  // namespace vantorel
