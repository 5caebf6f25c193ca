// SPDX-License-Identifier: MIT
#include "store/ClipSearchFilter.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <string>
#include <vector>

namespace vantorel {
namespace {

ClipItem textItem(const std::string& text) {
  ClipItem item;
  item.id = Uuid::random();
  item.title = "Text";
  item.text = SharedText(text);
  item.preview = text;
  return item;
}

ClipItem filesItem(const std::string& title, std::vector<std::string> paths) {
  ClipItem item;
  item.id = Uuid::random();
  item.kind = ClipKind::files;
  item.title = title;
  item.filePaths = std::move(paths);
  return item;
}

ClipItem imageItem() {
  ClipItem item;
  item.id = Uuid::random();
  item.kind = ClipKind::image;
  item.title = "Image";
  item.preview = "800 × 600 px";
  return item;
}

bool finds(std::string query, const ClipItem& item) {
  return ClipSearchFilter{.query = std::move(query)}.includes(item);
}

TEST(TypeFilter, IsListedAndNamedInOrder) {
  constexpr std::array names = {"all", "text", "image", "files", "video"};
  ASSERT_EQ(allClipTypeFilters.size(), names.size());
  for (std::size_t i = 0; i < names.size(); ++i) {
    EXPECT_EQ(rawValue(allClipTypeFilters[i]), names[i]);
  }
}

TEST(TypeFilter, IsReadFromItsNameAlone) {
  for (const auto filter : allClipTypeFilters) EXPECT_EQ(clipTypeFilter(rawValue(filter)), filter);
  for (const auto* name : {"", "All", "videos", "text "}) {
    EXPECT_EQ(clipTypeFilter(name), std::nullopt) << name;
  }
}

TEST(TypeFilter, IncludesItsKind) {
  struct Row {
    ClipItem item;
    std::vector<ClipTypeFilter> filters;
  };
  const std::vector<Row> rows = {
      {textItem("Video"), {ClipTypeFilter::all, ClipTypeFilter::text}},
      {imageItem(), {ClipTypeFilter::all, ClipTypeFilter::image}},
      {filesItem("File", {"/a.txt"}), {ClipTypeFilter::all, ClipTypeFilter::files}},
      {filesItem("Video", {"/a.mov"}), {ClipTypeFilter::all, ClipTypeFilter::video}},
      {filesItem("3 files", {"/a.mov", "/b.mov", "/c.mov"}),
       {ClipTypeFilter::all, ClipTypeFilter::files}},
      {filesItem("video", {"/a.mov"}), {ClipTypeFilter::all, ClipTypeFilter::files}},
  };
  for (const auto& row : rows) {
    for (const auto filter : allClipTypeFilters) {
      const bool expected =
          std::find(row.filters.begin(), row.filters.end(), filter) != row.filters.end();
      EXPECT_EQ(includes(filter, row.item), expected) << row.item.title << rawValue(filter);
      EXPECT_EQ((ClipSearchFilter{.query = "", .type = filter}.includes(row.item)), expected);
    }
  }
}

TEST(TypeFilter, DoesNotTakeATextThatIsTitledVideoForOne) {
  auto item = textItem("x");
  item.title = "Video";
  EXPECT_FALSE(includes(ClipTypeFilter::video, item));
}

TEST(SourceKey, IsTheBundleIdentifierElseTheNameElseEmpty) {
  auto item = textItem("x");
  EXPECT_EQ(sourceKey(item), "");
  item.sourceAppName = "Notes";
  EXPECT_EQ(sourceKey(item), "Notes");
  item.sourceBundleIdentifier = "org.example.notes";
  EXPECT_EQ(sourceKey(item), "org.example.notes");
}

TEST(SourceFilter, ComparesTheSourceExactly) {
  auto item = textItem("x");
  const auto passes = [&](const std::string& source) {
    return ClipSearchFilter{.query = "", .sourceId = source}.includes(item);
  };
  EXPECT_TRUE(passes(""));
  EXPECT_FALSE(passes("Notes"));
  item.sourceAppName = "Notes";
  EXPECT_TRUE(passes("Notes"));
  EXPECT_FALSE(passes("notes"));
  EXPECT_FALSE(passes(""));
  item.sourceBundleIdentifier = "org.example.notes";
  EXPECT_FALSE(passes("Notes"));
  EXPECT_TRUE(passes("org.example.notes"));
}

TEST(Search, ForWhiteSpaceIncludesEverythingThatTypeAndSourceAllow) {
  EXPECT_TRUE(finds(" \n\t\u2003", textItem("x")));
  EXPECT_TRUE(finds("", imageItem()));
  EXPECT_FALSE(
      (ClipSearchFilter{.query = " \n", .type = ClipTypeFilter::image}.includes(textItem("x"))));
  EXPECT_FALSE((ClipSearchFilter{.query = " ", .sourceId = "Notes"}.includes(textItem("x"))));
}

TEST(Search, FindsANameWhateverItsCase) {
  auto item = textItem("numbers");
  item.customName = "Quarterly report";
  EXPECT_TRUE(finds("REPORT", item));
  EXPECT_FALSE(finds("REPORTS", item));
}

TEST(Search, FindsTextThatWasRecognisedInAnImage) {
  auto item = imageItem();
  EXPECT_FALSE(finds("invoice", item));
  item.recognizedText = "Invoice 2024";
  EXPECT_TRUE(finds("invoice", item));
}

TEST(Search, FindsADirectoryWithinAPath) {
  EXPECT_TRUE(finds("Documents", filesItem("File", {"/home/user/Documents/a.txt"})));
  EXPECT_FALSE(finds("Documents", filesItem("File", {"/home/user/Desktop/a.txt"})));
}

TEST(Search, FindsTheSourceByNameButNotByIdentifier) {
  auto item = textItem("x");
  item.sourceAppName = "Mail";
  item.sourceBundleIdentifier = "org.example.postbox";
  EXPECT_TRUE(finds("mail", item));
  EXPECT_FALSE(finds("postbox", item));
}

TEST(Search, DoesNotLookIntoRichText) {
  auto item = textItem("x");
  const auto view = bytesOf("hidden");
  item.rtfData = SharedBytes(Bytes(view.begin(), view.end()));
  item.htmlData = item.rtfData;
  EXPECT_FALSE(finds("hidden", item));
}

TEST(Search, TakesTheQueryAsOneSubstring) {
  EXPECT_TRUE(finds("two three", textItem("one two three")));
  EXPECT_FALSE(finds("one three", textItem("one two three")));
}

TEST(Search, ReachesAcrossTheJoinOfTwoFields) {
  auto item = textItem("end");
  item.preview = "begin";
  item.customName = "name";
  item.sourceAppName = "Mail";
  item.filePaths = {"/a", "/b"};
  item.recognizedText = "read";
  EXPECT_TRUE(finds("end begin text name mail /a /b read", item));
}

TEST(Search, KeepsThePlaceOfEmptyFields) {
  auto item = imageItem();
  item.recognizedText = "read";
  EXPECT_TRUE(finds("image    read", item));
  EXPECT_FALSE(finds("image   read", item));
}

TEST(Search, TrimsTheQueryButNotWithin) {
  EXPECT_TRUE(finds("  two  ", textItem("one two")));
  EXPECT_FALSE(finds("one  two", textItem("one two")));
}

TEST(Search, TakesDiacriticsAsWritten) {
  EXPECT_FALSE(finds("resume", textItem("résumé")));
  EXPECT_TRUE(finds("RE\u0301SUME\u0301", textItem("résumé")));
}

}  // namespace
}  // namespace vantorel
