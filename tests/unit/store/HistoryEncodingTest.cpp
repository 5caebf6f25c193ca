// SPDX-License-Identifier: MIT
#include <gtest/gtest.h>

#include "fakes/TestStore.h"
#include "store/HistoryFile.h"

namespace vantorel {
namespace {

std::string json(const std::vector<ClipItem>& items) {
  return std::string(textOf(encodeHistory(items)));
}

ClipItem bareItem() {
  ClipItem item;
  item.id = *Uuid::parse("0A1B2C3D-4E5F-6789-ABCD-EF0123456789");
  item.createdAt = testDate();
  item.title = "Text";
  item.preview = "hello";
  return item;
}

ClipItem fullItem() {
  ClipItem item = bareItem();
  item.text = std::string("hello");
  item.filePaths = {"/a", "/b"};
  item.assetFilename = "asset.png";
  item.sourceAppName = "Editor";
  item.sourceBundleIdentifier = "org.editor";
  item.contentHash = "abc";
  item.rtfData = toBytes("rtf");
  item.htmlData = toBytes("<b>");
  item.isPinned = true;
  item.customName = "name";
  item.pinOrder = 2;
  item.lastCopiedAt = testDate(60);
  item.recognizedText = "words";
  return item;
}

TEST(HistoryEncoding, AnEmptyHistoryIsAnEmptyArray) { EXPECT_EQ(json({}), "[]"); }

TEST(HistoryEncoding, WritesOnlyWhatIsPresent) {
  EXPECT_EQ(json({bareItem()}), R"([
  {
    "createdAt": "2025-03-14T09:26:53Z",
    "filePaths": [],
    "id": "0A1B2C3D-4E5F-6789-ABCD-EF0123456789",
    "kind": "text",
    "preview": "hello",
    "title": "Text"
  }
])");
}

TEST(HistoryEncoding, WritesEveryKeyInAlphabeticalOrder) {
  EXPECT_EQ(json({fullItem()}), R"([
  {
    "assetFilename": "asset.png",
    "contentHash": "abc",
    "createdAt": "2025-03-14T09:26:53Z",
    "customName": "name",
    "filePaths": [
      "/a",
      "/b"
    ],
    "htmlData": "PGI+",
    "id": "0A1B2C3D-4E5F-6789-ABCD-EF0123456789",
    "isPinned": true,
    "kind": "text",
    "lastCopiedAt": "2025-03-14T09:27:53Z",
    "pinOrder": 2,
    "preview": "hello",
    "recognizedText": "words",
    "rtfData": "cnRm",
    "sourceAppName": "Editor",
    "sourceBundleIdentifier": "org.editor",
    "text": "hello",
    "title": "Text"
  }
])");
}

TEST(HistoryEncoding, TellsFalseFromAbsent) {
  ClipItem item = bareItem();
  EXPECT_EQ(json({item}).find("isPinned"), std::string::npos);
  item.isPinned = false;
  EXPECT_NE(json({item}).find("\"isPinned\": false"), std::string::npos);
}

TEST(HistoryEncoding, NamesEveryKind) {
  ClipItem item = bareItem();
  item.kind = ClipKind::image;
  EXPECT_NE(json({item}).find("\"kind\": \"image\""), std::string::npos);
  item.kind = ClipKind::files;
  EXPECT_NE(json({item}).find("\"kind\": \"files\""), std::string::npos);
}

TEST(HistoryEncoding, EscapesWhatJsonMustAndNothingElse) {
  ClipItem item = bareItem();
  item.preview = "\"\\/\b\f\n\r\t\x01\x1F\x7F" + std::string(1, '\0') + "שלום 🙂 é";
  EXPECT_NE(json({item}).find("\"preview\": \"\\\"\\\\/\\b\\f\\n\\r\\t\\u0001\\u001F\x7F\\u0000"
                              "שלום 🙂 é\""),
            std::string::npos);
}

TEST(HistoryEncoding, EveryByteIsReadBackWhereverItStandsAmongPlainOnes) {
  constexpr std::size_t length = 40;
  std::vector<ClipItem> items;
  for (char byte = 0; byte >= 0 && byte < 0x7F; ++byte) {
    for (std::size_t offset = 0; offset < length; ++offset) {
      std::string text(length, 'x');
      text[offset] = byte;
      ClipItem item = bareItem();
      item.text = std::move(text);
      items.push_back(std::move(item));
    }
  }
  EXPECT_EQ(decodeHistory(encodeHistory(items)), items);
}

TEST(HistoryEncoding, IsReadBackAsItWas) {
  const std::vector<ClipItem> items = {fullItem(), bareItem()};
  EXPECT_EQ(decodeHistory(encodeHistory(items)), items);
}

TEST(HistoryEncoding, ExtremesAreReadBackAsTheyWere) {
  ClipItem item = fullItem();
  item.text = std::string();
  item.rtfData = Bytes();
  item.customName = "";
  item.pinOrder = std::numeric_limits<std::int64_t>::min();
  item.filePaths = {"", "\n"};
  item.preview.clear();
  for (int i = 0; i < 0x20; ++i) item.preview.push_back(static_cast<char>(i));
  ClipItem other = bareItem();
  other.pinOrder = std::numeric_limits<std::int64_t>::max();
  const std::vector<ClipItem> items = {item, other};
  EXPECT_EQ(decodeHistory(encodeHistory(items)), items);
}

TEST(HistoryEncoding, DropsTheFractionsOfDates) {
  ClipItem item = bareItem();
  item.createdAt = testDate(0.75);
  item.lastCopiedAt = testDate(1.999);
  EXPECT_EQ(json({item}).find('.'), std::string::npos);
  const auto read = decodeHistory(encodeHistory({item}));
  ASSERT_TRUE(read);
  EXPECT_EQ(read->at(0).createdAt, testDate(0));
  EXPECT_EQ(read->at(0).lastCopiedAt, testDate(1));
}

TEST(HistoryEncoding, IsReadableWhateverBytesAndDatesItIsGiven) {
  ClipItem item = bareItem();
  item.filePaths = {"/caf\xE9", "\xED\xA0\x80", "\xC3"};
  item.text = std::string("\xFF\xFE");
  item.createdAt = Date::max();
  item.lastCopiedAt = Date::min();
  const auto read = decodeHistory(encodeHistory({item}));
  ASSERT_TRUE(read);
  EXPECT_EQ(read->at(0).filePaths[0], "/caf\xEF\xBF\xBD");
}

}  // namespace
}  // namespace vantorel
