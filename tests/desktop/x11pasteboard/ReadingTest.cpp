// SPDX-License-Identifier: MIT
#include "desktop/x11pasteboard/PasteboardFixture.h"

namespace vantorel {
namespace {

using testing::Contains;
using testing::ElementsAre;
using testing::IsEmpty;
using testing::Not;

class X11PasteboardReading : public PasteboardFixture {
 protected:
  ScriptedOwner owner{server->display()};
};

TEST_F(X11PasteboardReading, AnEmptyClipboardOffersNothing) {
  EXPECT_THAT(types(), testing::Optional(IsEmpty()));
  EXPECT_FALSE(string());
  EXPECT_FALSE(data(PasteboardDataType::rtf));
  EXPECT_THAT(files(), IsEmpty());
  EXPECT_EQ(image(), nullptr);
}

TEST_F(X11PasteboardReading, TakesTheBestTextOnOffer) {
  owner.offer("STRING", "latin");
  owner.offer("text/plain", "plain");
  owner.offer("text/plain;charset=utf-8", "charset");
  owner.offer("UTF8_STRING", "héllo");
  copy(owner);
  EXPECT_EQ(string(), "héllo");
  EXPECT_THAT(owner.requests(), ElementsAre("TARGETS", "UTF8_STRING"));
}

TEST_F(X11PasteboardReading, FallsBackThroughTheOtherTextForms) {
  for (const char* target : {"text/plain;charset=utf-8", "text/plain", "STRING"}) {
    ScriptedOwner other(server->display());
    other.offer(target, std::string("from ") + target);
    copy(other);
    EXPECT_EQ(string(), std::string("from ") + target);
  }
}

TEST_F(X11PasteboardReading, ReadsLatin1AsUtf8) {
  owner.offer("STRING", "caf\xE9");
  copy(owner);
  EXPECT_EQ(string(), "café");
}

TEST_F(X11PasteboardReading, RepairsBrokenUtf8) {
  owner.offer("UTF8_STRING",
              "a\xFF"
              "b");
  copy(owner);
  EXPECT_EQ(string(),
            "a\xEF\xBF\xBD"
            "b");
}

TEST_F(X11PasteboardReading, DropsNulsAtTheEndAndKeepsThoseWithin) {
  owner.offer("UTF8_STRING", std::string_view("a\0b\0\0", 5));
  copy(owner);
  EXPECT_EQ(string(), std::string("a\0b", 3));
}

TEST_F(X11PasteboardReading, AnEmptyTextIsAnEmptyTextAndNotNothing) {
  owner.offer("UTF8_STRING", "");
  copy(owner);
  EXPECT_EQ(string(), "");
}

TEST_F(X11PasteboardReading, AsksForContentsOnlyWhenTheyAreAskedFor) {
  owner.offer("UTF8_STRING", "secret");
  owner.offer("text/html", "<b>secret</b>");
  copy(owner);
  EXPECT_THAT(types(), testing::Optional(Contains("text/html")));
  EXPECT_THAT(owner.requests(), ElementsAre("TARGETS"));
}

TEST_F(X11PasteboardReading, AsksForTheTargetsOnceForEachChange) {
  owner.offer("UTF8_STRING", "text");
  copy(owner);
  (void)types();
  EXPECT_THAT(files(), IsEmpty());
  (void)string();
  EXPECT_THAT(owner.requests(), ElementsAre("TARGETS", "UTF8_STRING"));
  copy(owner);
  (void)types();
  EXPECT_THAT(owner.requests(), ElementsAre("TARGETS", "UTF8_STRING", "TARGETS"));
}

TEST_F(X11PasteboardReading, AsksWithTheTimeAtWhichTheOwnerTookTheSelection) {
  owner.offer("UTF8_STRING", "text");
  copy(owner);
  (void)string();
  EXPECT_THAT(owner.requestTimes(), ElementsAre(owner.ownedSince(), owner.ownedSince()));
}

TEST_F(X11PasteboardReading, AnswersReadsThatWereAskedForTogether) {
  owner.offer("UTF8_STRING", "text");
  owner.offer("text/html", "<b>");
  owner.offer("text/rtf", "{\\rtf1}");
  copy(owner);
  std::optional<Text> text;
  std::optional<Data> html;
  std::optional<Data> rtf;
  pasteboard->readString(now(), [&](Text value) { text = std::move(value); });
  pasteboard->readData(now(), PasteboardDataType::html, [&](Data value) { html = value; });
  pasteboard->readData(now(), PasteboardDataType::rtf, [&](Data value) { rtf = value; });
  ASSERT_TRUE(loop.runUntil([&] { return text && html && rtf; }));
  EXPECT_EQ(*text, "text");
  EXPECT_EQ(*html, bytes("<b>"));
  EXPECT_EQ(*rtf, bytes("{\\rtf1}"));
}

TEST_F(X11PasteboardReading, GivesRichFormsAsOffered) {
  const std::string utf16("\xFF\xFE<\0b\0>\0", 8);
  owner.offer("text/html", utf16);
  owner.offer("application/rtf", "{\\rtf1 a}");
  owner.offer("text/richtext", "other");
  copy(owner);
  EXPECT_EQ(data(PasteboardDataType::html), bytes(utf16));
  EXPECT_EQ(data(PasteboardDataType::rtf), bytes("{\\rtf1 a}"));
}

TEST_F(X11PasteboardReading, NamesThePasswordHintAsConcealed) {
  owner.offer("UTF8_STRING", "hunter2");
  owner.offer("x-kde-passwordManagerHint", "secret");
  copy(owner);
  EXPECT_THAT(types(), testing::Optional(Contains("org.nspasteboard.ConcealedType")));
}

TEST_F(X11PasteboardReading, ReadsFilesFromEitherList) {
  owner.offer("text/uri-list", "# comment\r\nfile:///tmp/a%20b\r\nhttp://x.org/\r\nfile:///c\r\n");
  copy(owner);
  EXPECT_THAT(files(), ElementsAre("/tmp/a b", "/c"));
  ScriptedOwner manager(server->display());
  manager.offer("text/uri-list", "http://only.example/\r\n");
  manager.offer("x-special/gnome-copied-files", "cut\nfile:///home/u/%D7%90");
  copy(manager);
  EXPECT_THAT(files(), ElementsAre("/home/u/א"));
}

TEST_F(X11PasteboardReading, ReadsTheFilesOfOtherFileManagers) {
  owner.offer("x-special/mate-copied-files", "copy\nfile:///tmp/a");
  copy(owner);
  EXPECT_THAT(files(), ElementsAre("/tmp/a"));
  ScriptedOwner manager(server->display());
  manager.offer("UTF8_STRING", "x-special/nautilus-clipboard\ncopy\nfile:///tmp/b\n");
  copy(manager);
  EXPECT_THAT(files(), ElementsAre("/tmp/b"));
}

TEST_F(X11PasteboardReading, ATextThatWasLookedAtForFilesIsNotAskedForAgain) {
  owner.offer("UTF8_STRING", "a text");
  copy(owner);
  EXPECT_THAT(files(), IsEmpty());
  EXPECT_EQ(string(), "a text");
  EXPECT_THAT(owner.requests(), ElementsAre("TARGETS", "UTF8_STRING"));
}

TEST_F(X11PasteboardReading, ReadsTheTextsThatTheOwnerLabels) {
  const struct {
    const char* target;
    const char* type;
    const char* bytes;
    const char* text;
  } texts[] = {{"TEXT", "STRING", "caf\xE9", "café"},
               {"TEXT", "COMPOUND_TEXT", "\x1B-H\xF9\xEC", "של"},
               {"COMPOUND_TEXT", "COMPOUND_TEXT", "\x1B-H\xF9\xEC", "של"},
               {"text/plain", "text/plain", "caf\xE9", "café"},
               {"text/plain;charset=UTF8", "", "של", "של"},
               {"text/plain;charset=iso-8859-8", "", "\xF9\xEC", "של"}};
  for (const auto& each : texts) {
    ScriptedOwner other(server->display());
    ScriptedForm form;
    form.bytes = bytes(each.bytes);
    form.type = each.type;
    other.offer(each.target, form);
    copy(other);
    EXPECT_EQ(string(), each.text) << each.target;
  }
}

TEST_F(X11PasteboardReading, ATextInACharsetThatNobodyKnowsGivesWayToTheNext) {
  owner.offer("text/plain;charset=no-such-charset", "?");
  owner.offer("STRING", "plain");
  copy(owner);
  EXPECT_EQ(string(), "plain");
}

TEST_F(X11PasteboardReading, PreparesThePngFormOfAnImageAwayFromTheMainThread) {
  const auto made = std::make_shared<MadeImage>(bytes("png!"), bytes("jpeg"));
  decoder.introduce(bytes("encoded"), made);
  owner.offer("image/jpeg", "other");
  owner.offer("image/png", "encoded");
  copy(owner);
  EXPECT_EQ(image(), made);
  EXPECT_EQ(made->pngAsked, 1);
  EXPECT_EQ(made->jpegAsked, 0);
  EXPECT_THAT(decoder.decoded(), ElementsAre(bytes("encoded")));
}

TEST_F(X11PasteboardReading, PreparesTheJpegFormOnlyOfAnImageTooLargeAsPng) {
  open({.largestPngBytes = 3});
  const auto large = std::make_shared<MadeImage>(bytes("four"), bytes("jpeg"));
  decoder.introduce(bytes("encoded"), large);
  owner.offer("image/png", "encoded");
  copy(owner);
  EXPECT_EQ(image(), large);
  EXPECT_EQ(large->jpegAsked, 1);
}

TEST_F(X11PasteboardReading, TriesTheNextImageFormWhenOneCannotBeDecoded) {
  const auto made = std::make_shared<MadeImage>(bytes("png"), bytes("jpeg"));
  decoder.introduce(bytes("bitmap"), made);
  owner.offer("image/x-strange", "strange");
  owner.offer("image/bmp", "bitmap");
  ScriptedForm refused;
  refused.manner = Manner::refuse;
  owner.offer("image/tiff", refused);
  owner.offer("image/png", "damaged");
  copy(owner);
  EXPECT_EQ(image(), made);
  EXPECT_THAT(owner.requests(), ElementsAre("TARGETS", "image/png", "image/tiff", "image/bmp"));
}

TEST_F(X11PasteboardReading, AnImageThatNothingDecodesIsNone) {
  owner.offer("image/png", "damaged");
  owner.offer("image/gif", "");
  copy(owner);
  EXPECT_EQ(image(), nullptr);
}

TEST_F(X11PasteboardReading, ReadsTwentyMegabytesInPieces) {
  ScriptedForm large;
  large.bytes = pattern(20'000'000);
  large.manner = Manner::incremental;
  large.pieceBytes = 256 * 1024;
  owner.offer("UTF8_STRING", large);
  copy(owner);
  const auto start = std::chrono::steady_clock::now();
  const auto text = string();
  RecordProperty("milliseconds",
                 std::to_string(Milliseconds(std::chrono::steady_clock::now() - start).count()));
  ASSERT_TRUE(text);
  EXPECT_TRUE(bytes(*text) == large.bytes);
}

TEST_F(X11PasteboardReading, ReadsALargePropertyThatCameWhole) {
  ScriptedForm large;
  large.bytes = pattern(3'000'001);
  owner.offer("UTF8_STRING", large);
  copy(owner);
  const auto text = string();
  ASSERT_TRUE(text);
  EXPECT_TRUE(bytes(*text) == large.bytes);
}

TEST_F(X11PasteboardReading, AnEmptyAnswerInPiecesIsAnEmptyText) {
  ScriptedForm none;
  none.manner = Manner::incremental;
  owner.offer("UTF8_STRING", none);
  copy(owner);
  EXPECT_EQ(string(), "");
}

TEST_F(X11PasteboardReading, ContentsThatWereThereBeforeCanBeRead) {
  owner.offer("UTF8_STRING", "before");
  owner.own();
  open();
  EXPECT_EQ(string(), "before");
}

}  // namespace
}  // namespace vantorel
