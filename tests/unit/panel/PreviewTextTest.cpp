// SPDX-License-Identifier: MIT
#include "panel/PreviewText.h"

#include <gtest/gtest.h>

namespace vantorel {
namespace {

ClipItem item(std::string text) {
  ClipItem result;
  result.preview = text.substr(0, 20);
  result.text = SharedText(std::move(text));
  return result;
}

std::vector<std::string> pieces(PreviewText text) {
  std::vector<std::string> result;
  while (auto piece = text.nextPiece()) result.push_back(*piece);
  return result;
}

/// All pieces, each on lines of its own.
std::string whole(const std::string& text) {
  std::string result;
  for (const auto& piece : pieces(PreviewText(item(text)))) {
    if (!result.empty()) result += '\n';
    result += piece;
  }
  return result;
}

TEST(PreviewText, IsTheTextOrWhereThereIsNoneThePreview) {
  EXPECT_EQ(whole("Hello"), "Hello");
  ClipItem without;
  without.preview = "only this";
  EXPECT_EQ(PreviewText(without).nextPiece(), "only this");
}

TEST(PreviewText, AnEmptyTextIsOneEmptyLine) {
  EXPECT_EQ(pieces(PreviewText(item(""))), std::vector<std::string>{""});
}

TEST(PreviewText, LineBreaksOfEveryKindBreakLines) {
  EXPECT_EQ(whole("a\nb\r\nc\rd\u2028e\u2029f\vg\fh\u0085i"), "a\nb\nc\nd\ne\nf\ng\nh\ni");
  EXPECT_EQ(whole("a\r"), "a\n");
  EXPECT_EQ(whole("a\n\n\nb\n"), "a\n\n\nb\n");
}

TEST(PreviewText, ControlCharactersAreSeenAndTabsStay) {
  EXPECT_EQ(whole("a\tb"), "a\tb");
  EXPECT_EQ(whole(std::string("a\x01\x1b[0m\x7f\0z", 9)), "a\uFFFD\uFFFD[0m\uFFFD\uFFFDz");
  EXPECT_EQ(whole("\x02\x03"), "\uFFFD\uFFFD");
}

TEST(PreviewText, WhatALayoutWouldTakeForSomethingElseIsSeenToo) {
  EXPECT_EQ(whole("a\uFFFCb\uFDD0c\uFDD1d\uFFFFe"), "a\uFFFDb\uFFFDc\uFFFDd\uFFFDe");
}

TEST(PreviewText, NothingIsWrittenBackwardsByOverride) {
  EXPECT_EQ(whole("invoice\u202Efdp.exe\u202C"), "invoicefdp.exe\u202C");
  EXPECT_EQ(whole("\u202Dabc"), "abc");
}

TEST(PreviewText, BytesThatAreNoTextAreSeen) { EXPECT_EQ(whole("a\xff\xfez"), "a\uFFFD\uFFFDz"); }

TEST(PreviewText, EmojiAndCombiningMarksStay) {
  EXPECT_EQ(whole("👩‍👩‍👧‍👦 e\u0301"), "👩‍👩‍👧‍👦 e\u0301");
}

TEST(PreviewText, TheFirstLetterSaysItsDirection) {
  EXPECT_TRUE(PreviewText(item("12. שלום Hello")).isRTL());
  EXPECT_FALSE(PreviewText(item("12. Hello שלום")).isRTL());
  EXPECT_FALSE(PreviewText(item("123")).isRTL());
}

TEST(PreviewText, ALongTextComesInPiecesOfWholeLines) {
  std::string text;
  for (int i = 0; i < 1000; ++i) text += "line " + std::to_string(i) + "\n";
  const auto all = pieces(PreviewText(item(text)));
  EXPECT_GT(all.size(), 3U);
  for (const auto& piece : all) EXPECT_LE(piece.size(), 2100U);
  EXPECT_EQ(whole(text), text);
}

TEST(PreviewText, ALineThatIsTooLongIsBrokenAtABlank) {
  std::string text;
  while (text.size() < 18000) text += "words ";  // of no length that lines could happen to have
  const auto all = pieces(PreviewText(item(text)));
  ASSERT_GT(all.size(), 3U);
  for (std::size_t i = 0; i + 1 < all.size(); ++i) {
    EXPECT_LE(all[i].size(), 4000U);
    EXPECT_EQ(all[i].back(), ' ');
  }
}

TEST(PreviewText, AWordThatIsTooLongIsBrokenToo) {
  const auto all = pieces(PreviewText(item(std::string(9000, 'x'))));
  ASSERT_EQ(all.size(), 3U);
  EXPECT_EQ(all[0].size(), 4000U);
  EXPECT_EQ(all[2].size(), 1000U);
}

TEST(PreviewText, AParagraphOfOrdinaryLengthStaysWhole) {
  std::string paragraph;
  while (paragraph.size() < 3500) paragraph += "word ";
  EXPECT_EQ(whole(paragraph + "\nnext"), paragraph + "\nnext");
}

TEST(PreviewText, WhatIsSlowToLayOutComesInSmallerPieces) {
  std::string text;
  while (text.size() < 30'000) text += "漢字かな\n";
  for (const auto& piece : pieces(PreviewText(item(text)))) EXPECT_LE(piece.size(), 1600U);
  for (const auto& piece : pieces(PreviewText(item(std::string(10'000, '\n'))))) {
    EXPECT_LE(piece.size(), 250U);
  }
}

TEST(PreviewText, MarksArePiledUpOnlySoHigh) {
  std::string text = "e";
  for (int i = 0; i < 5000; ++i) text += "\u0301";
  const auto all = pieces(PreviewText(item(text + "f")));
  EXPECT_LT(all[0].size(), 40U);
  EXPECT_EQ(all.back().back(), 'f');
}

TEST(PreviewText, OfMegabytesTheStartIsShownAndItSaysSo) {
  PreviewText text(item(std::string(10'000'000, 'x')));
  EXPECT_TRUE(text.goesOn());
  std::size_t shown = 0;
  while (const auto piece = text.nextPiece()) shown += piece->size();
  EXPECT_EQ(shown, PreviewText::maxBytes);
}

TEST(PreviewText, ATextThatFitsDoesNotGoOn) {
  EXPECT_FALSE(PreviewText(item(std::string(PreviewText::maxBytes, 'x'))).goesOn());
  EXPECT_TRUE(PreviewText(item(std::string(PreviewText::maxBytes + 1, 'x'))).goesOn());
}

TEST(PreviewText, NoCharacterIsCutInTwoWhereItEnds) {
  std::string text(PreviewText::maxBytes - 1, 'x');
  text += "😀 and more";
  std::string last;
  for (const auto& piece : pieces(PreviewText(item(text)))) last = piece;
  EXPECT_EQ(last.back(), 'x');
}

TEST(PreviewText, NothingButBrokenBytesEndsToo) {
  const auto all = pieces(PreviewText(item(std::string(1'000'000, '\x80'))));
  EXPECT_GE(all.size(), 1U);
}

}  // namespace
}  // namespace vantorel
