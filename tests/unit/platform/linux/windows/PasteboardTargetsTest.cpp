// SPDX-License-Identifier: MIT
#include "platform/linux/windows/PasteboardTargets.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace vantorel::targets {
namespace {

using testing::Contains;
using testing::ElementsAre;
using testing::IsEmpty;

TEST(PasteboardTargets, PrefersTheTextThatIsSurelyUtf8) {
  EXPECT_THAT(text({"STRING", "text/plain", "TARGETS", "text/plain;charset=utf-8", "UTF8_STRING"}),
              ElementsAre("UTF8_STRING", "text/plain;charset=utf-8", "text/plain", "STRING"));
  EXPECT_THAT(text({"text/plain;charset=UTF-8"}), ElementsAre("text/plain;charset=UTF-8"));
  EXPECT_THAT(text({"TARGETS", "text/html"}), IsEmpty());
}

TEST(PasteboardTargets, TakesTextOfAnyCharsetAndTheOldOnesLast) {
  EXPECT_THAT(
      text({"COMPOUND_TEXT", "TEXT", "STRING", "text/plain", "text/plain;charset=utf-16",
            "text/plain;charset=UTF8", "text/plain; charset=\"Utf-8\"", "UTF8_STRING"}),
      ElementsAre("UTF8_STRING", "text/plain;charset=UTF8", "text/plain; charset=\"Utf-8\"",
                  "text/plain;charset=utf-16", "text/plain", "STRING", "TEXT", "COMPOUND_TEXT"));
}

TEST(PasteboardTargets, FindTheCharsetOfAPlainText) {
  EXPECT_EQ(plainTextCharset("text/plain"), "");
  EXPECT_EQ(plainTextCharset("text/plain;format=flowed"), "");
  EXPECT_EQ(plainTextCharset("TEXT/plain;charset=ISO-8859-8"), "iso-8859-8");
  EXPECT_EQ(plainTextCharset("text/plain;format=flowed;charset=utf8;x=y"), "utf-8");
  EXPECT_EQ(plainTextCharset("text/plainer"), std::nullopt);
  EXPECT_EQ(plainTextCharset("STRING"), std::nullopt);
}

TEST(PasteboardTargets, KnowsTheNamesOfRichText) {
  EXPECT_THAT(rtf({"text/richtext", "application/rtf", "text/rtf"}),
              ElementsAre("text/rtf", "application/rtf", "text/richtext"));
  EXPECT_THAT(html({"text/plain", "text/html"}), ElementsAre("text/html"));
}

TEST(PasteboardTargets, PrefersTheStandardListOfFiles) {
  EXPECT_THAT(
      fileLists({"x-special/mate-copied-files", "x-special/gnome-copied-files", "text/uri-list"}),
      ElementsAre("text/uri-list", "x-special/gnome-copied-files", "x-special/mate-copied-files"));
}

TEST(PasteboardTargets, PrefersLosslessImagesAndTriesUnknownOnesLast) {
  EXPECT_THAT(images({"image/x-unknown", "image/gif", "image/webp", "image/bmp", "image/jpeg",
                      "image/tiff", "image/png", "text/plain"}),
              ElementsAre("image/png", "image/tiff", "image/jpeg", "image/bmp", "image/webp",
                          "image/gif", "image/x-unknown"));
  EXPECT_THAT(images({"text/plain", "images"}), IsEmpty());
}

TEST(PasteboardTargets, PassMarkersThroughAndTranslateThePasswordHint) {
  EXPECT_THAT(types({"org.nspasteboard.TransientType", "UTF8_STRING"}),
              ElementsAre("org.nspasteboard.TransientType", "UTF8_STRING"));
  EXPECT_THAT(types({"x-kde-passwordManagerHint"}), Contains("org.nspasteboard.ConcealedType"));
  EXPECT_THAT(types({"x-kde-passwordManagerHint", "org.nspasteboard.ConcealedType"}),
              testing::SizeIs(2));
}

}  // namespace
}  // namespace vantorel::targets
