// SPDX-License-Identifier: MIT
#include "platform/linux/windows/UriList.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace vantorel {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;
using Paths = std::vector<std::filesystem::path>;

TEST(UriList, ReadsLinesHoweverTheyEnd) {
  EXPECT_THAT(filesFromUriList("file:///a\r\nfile:///b\nfile:///c\rfile:///d"),
              ElementsAre("/a", "/b", "/c", "/d"));
}

TEST(UriList, SkipsCommentsBlankLinesAndWhatIsNoLocalFile) {
  EXPECT_THAT(filesFromUriList("# file:///comment\r\n\r\n  \r\nhttp://host/x\r\nsftp://h/y\r\n"
                               "mailto:a@b\r\nnonsense\r\nfile:///real\r\n"),
              ElementsAre("/real"));
}

TEST(UriList, KeepsTheOrderAndRepetitions) {
  EXPECT_THAT(filesFromUriList("file:///b\r\nfile:///a\r\nfile:///b\r\n"),
              ElementsAre("/b", "/a", "/b"));
}

TEST(UriList, AnEmptyListHoldsNoFiles) {
  EXPECT_THAT(filesFromUriList(""), IsEmpty());
  EXPECT_THAT(filesFromUriList(std::string_view("\0", 1)), IsEmpty());
  EXPECT_THAT(filesFromUriList("\r\n\r\n"), IsEmpty());
}

TEST(UriList, ANulAtTheEndBelongsToNoName) {
  EXPECT_THAT(filesFromUriList(std::string_view("file:///a\0", 10)), ElementsAre("/a"));
}

TEST(LocalFile, DecodesPercentEscapes) {
  EXPECT_EQ(localFile("file:///a%20b%25%C3%a9"), "/a b%\xC3\xA9");
}

TEST(LocalFile, LeavesAPercentSignThatBeginsNoEscape) {
  EXPECT_EQ(localFile("file:///100%"), "/100%");
  EXPECT_EQ(localFile("file:///100%2"), "/100%2");
  EXPECT_EQ(localFile("file:///%zz%4x"), "/%zz%4x");
}

TEST(LocalFile, IsOnThisHostOnly) {
  EXPECT_EQ(localFile("file://localhost/a"), "/a");
  EXPECT_EQ(localFile("file://LocalHost/a"), "/a");
  EXPECT_EQ(localFile("file:/a"), "/a");
  EXPECT_EQ(localFile("FILE:///a"), "/a");
  EXPECT_EQ(localFile("file://server/share"), std::nullopt);
  EXPECT_EQ(localFile("file://localhost.evil/a"), std::nullopt);
  EXPECT_EQ(localFile("file://local/a"), std::nullopt);
}

TEST(LocalFile, HasAnAbsolutePath) {
  EXPECT_EQ(localFile("file:a"), std::nullopt);
  EXPECT_EQ(localFile("file:"), std::nullopt);
  EXPECT_EQ(localFile("file://"), std::nullopt);
  EXPECT_EQ(localFile("file://localhost"), std::nullopt);
  EXPECT_EQ(localFile(""), std::nullopt);
}

TEST(LocalFile, HasNoEscapedSlashOrNulInItsName) {
  EXPECT_EQ(localFile("file:///a%2Fb"), std::nullopt);
  EXPECT_EQ(localFile("file:///a%00b"), std::nullopt);
  EXPECT_EQ(localFile(std::string_view("file:///a\0b", 11)), std::nullopt);
}

TEST(LocalFile, LosesTheSlashAtTheEndOfAFolder) {
  EXPECT_EQ(localFile("file:///home/u/"), "/home/u");
  EXPECT_EQ(localFile("file:///"), "/");
}

TEST(LocalFile, KeepsWhatLooksLikeAQueryOrAFragment) {
  EXPECT_EQ(localFile("file:///a#b?c"), "/a#b?c");
}

TEST(FileUri, EscapesEverythingThatCouldBeMisread) {
  EXPECT_EQ(fileUri("/a b#%?\n\xC3\xA9~-_."), "file:///a%20b%23%25%3F%0A%C3%A9~-_.");
}

TEST(FileUri, IsReadBackByteForByte) {
  std::string name = "/";
  for (int value = 1; value < 256; ++value) {
    if (value != '/') name += static_cast<char>(value);
  }
  EXPECT_EQ(localFile(fileUri(name)), std::filesystem::path(name));
}

TEST(CopiedFiles, AreReadWhetherCopiedOrCut) {
  EXPECT_THAT(filesFromCopiedFiles("copy\nfile:///a\nfile:///b"), ElementsAre("/a", "/b"));
  EXPECT_THAT(filesFromCopiedFiles("cut\nfile:///a\n"), ElementsAre("/a"));
  EXPECT_THAT(filesFromCopiedFiles("copy"), IsEmpty());
}

TEST(CopiedFiles, AreWrittenAsACopy) {
  EXPECT_EQ(copiedFilesOf({"/a b", "/c"}), "copy\nfile:///a%20b\nfile:///c");
}

TEST(UriList, IsReadBackAsWritten) {
  const Paths paths{"/a b", "/c\nd", "/#e", "/\xD7\x90"};
  EXPECT_EQ(uriListOf({"/a b", "/c"}), "file:///a%20b\r\nfile:///c\r\n");
  EXPECT_EQ(filesFromUriList(uriListOf(paths)), paths);
  EXPECT_EQ(filesFromCopiedFiles(copiedFilesOf(paths)), paths);
}

TEST(UriList, ReadsTheListThatCallsItselfPlainText) {
  EXPECT_THAT(filesFromPlainText("x-special/nautilus-clipboard\ncopy\nfile:///a%20b\nfile:///c\n"),
              ElementsAre("/a b", "/c"));
  EXPECT_THAT(filesFromPlainText("x-special/nautilus-clipboard\ncut\nfile:///a"),
              ElementsAre("/a"));
  for (const auto* text :
       {"", "file:///a", "x-special/nautilus-clipboard", "x-special/nautilus-clipboard\nfile:///a",
        "x-special/nautilus-clipboards\ncopy\nfile:///a", "x-special/nautilus-clipboard\ncopy\n",
        "see x-special/nautilus-clipboard\ncopy\nfile:///a"}) {
    EXPECT_THAT(filesFromPlainText(text), IsEmpty()) << text;
  }
}

}  // namespace
}  // namespace vantorel
