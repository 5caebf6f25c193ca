// SPDX-License-Identifier: MIT
#include "panel/RowContent.h"

#include <gtest/gtest.h>

namespace vantorel {
namespace {

ClipItem textItem(std::string preview) {
  ClipItem item;
  item.kind = ClipKind::text;
  item.title = "Text";
  item.preview = std::move(preview);
  item.sourceAppName = "Notes";
  return item;
}

ClipItem imageItem() {
  ClipItem item;
  item.kind = ClipKind::image;
  item.title = "Image";
  item.preview = "800 × 600 px";
  item.sourceAppName = "Preview";
  return item;
}

ClipItem filesItem(std::string title, std::vector<std::string> paths) {
  ClipItem item;
  item.kind = ClipKind::files;
  item.title = std::move(title);
  item.preview = "report.pdf";
  item.filePaths = std::move(paths);
  item.sourceAppName = "Files";
  return item;
}

TEST(RowTitle, IsThePreviewTheKindOrTheUsersName) {
  EXPECT_EQ(titleText(textItem("Hello")), "Hello");
  EXPECT_EQ(titleText(imageItem()), "Image");
  EXPECT_EQ(titleText(filesItem("File", {})), "report.pdf");
  auto named = imageItem();
  named.customName = "Logo";
  EXPECT_EQ(titleText(named), "Logo");
}

TEST(RowTitle, IsOneBoundedLine) {
  EXPECT_EQ(titleText(textItem("a\nb")), "a b");
  EXPECT_LT(titleText(textItem(std::string(10'000'000, 'x'))).size(), 1000U);
}

TEST(RowMetadata, TextNamesSourceAndDate) {
  EXPECT_EQ(metadataText(textItem("Hello"), Availability::available, "Today"), "Notes  ·  Today");
}

TEST(RowMetadata, ImagesBeginWithTheirSize) {
  EXPECT_EQ(metadataText(imageItem(), Availability::available, "Today"),
            "800 × 600 px  ·  Preview  ·  Today");
}

TEST(RowMetadata, FilesBeginWithTheirTitle) {
  EXPECT_EQ(metadataText(filesItem("3 files", {}), Availability::available, "Today"),
            "3 files  ·  Files  ·  Today");
}

TEST(RowMetadata, FilesThatAreGoneSaySo) {
  EXPECT_EQ(metadataText(filesItem("2 files", {}), Availability::incomplete, "Today"),
            metadataText(filesItem("2 files", {}), Availability::unavailable, "Today"));
  EXPECT_EQ(metadataText(filesItem("Video", {}), Availability::unavailable, "Today"),
            "File unavailable  ·  Files  ·  Today");
}

TEST(RowMetadata, AnEntryOfNobodyIsUnknown) {
  auto item = textItem("Hello");
  item.sourceAppName.reset();
  EXPECT_EQ(metadataText(item, Availability::available, "Today"), "Unknown  ·  Today");
}

TEST(RowMetadata, AnUnrulySourceNameStaysOnItsLine) {
  auto item = textItem("Hello");
  item.sourceAppName = "Evil\n\u202EApp" + std::string(100'000, 'x');
  const auto text = metadataText(item, Availability::available, "Today");
  EXPECT_TRUE(text.starts_with("Evil App"));
  EXPECT_TRUE(text.ends_with("…  ·  Today"));
  EXPECT_LT(text.size(), 200U);
}

TEST(RowAccessibility, SaysTitleThenMetadata) {
  EXPECT_EQ(accessibilityText(imageItem(), Availability::available, "Today"),
            "Image, 800 × 600 px  ·  Preview  ·  Today");
}

TEST(RowSymbol, ShowsTheKind) {
  EXPECT_EQ(placeholder(textItem("Hello")), "text.alignleft");
  EXPECT_EQ(placeholder(imageItem()), "photo");
  EXPECT_EQ(placeholder(filesItem("File", {})), "doc");
  EXPECT_EQ(placeholder(filesItem("Video", {})), "film");
  EXPECT_EQ(placeholder(filesItem("Video ", {})), "doc");
}

TEST(RowContent, SaysAllThatARowShows) {
  auto item = filesItem("Video", {"/a.mp4"});
  item.sourceBundleIdentifier = "org.files";
  const auto row = rowContent(item, Availability::unavailable, "Today", true);
  EXPECT_EQ(row.id, item.id);
  EXPECT_EQ(row.kind, ClipKind::files);
  EXPECT_EQ(row.title, titleText(item));
  EXPECT_FALSE(row.named);
  EXPECT_FALSE(row.available);
  EXPECT_EQ(row.metadata, "File unavailable  ·  Files  ·  Today");
  EXPECT_EQ(row.accessibilityText, accessibilityText(item, Availability::unavailable, "Today"));
  EXPECT_EQ(row.sourceBundleIdentifier, "org.files");
  EXPECT_EQ(row.symbol, "film");
  EXPECT_FALSE(row.pinned);
}

TEST(RowContent, DirectionFollowsTheTitle) {
  EXPECT_TRUE(rowContent(textItem("שלום"), Availability::available, "Today", true).titleIsRTL);
  EXPECT_FALSE(rowContent(textItem("Hi"), Availability::available, "Today", true).titleIsRTL);
  auto named = textItem("Hi");
  named.customName = "תזכורת";
  const auto content = rowContent(named, Availability::available, "Today", true);
  EXPECT_TRUE(content.titleIsRTL);
  EXPECT_TRUE(content.named);
}

TEST(RowContent, AFullListOfPinsStillLetsPinnedEntriesGo) {
  auto pinned = textItem("Hi");
  pinned.isPinned = true;
  EXPECT_TRUE(rowContent(pinned, Availability::available, "Today", false).canPin);
  EXPECT_FALSE(rowContent(textItem("Hi"), Availability::available, "Today", false).canPin);
  EXPECT_TRUE(rowContent(textItem("Hi"), Availability::available, "Today", true).canPin);
}

}  // namespace
}  // namespace vantorel
