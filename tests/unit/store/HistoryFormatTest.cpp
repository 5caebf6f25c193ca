// SPDX-License-Identifier: MIT
// The examples of docs/history-format.md, which other programs are written from.
#include <gtest/gtest.h>

#include <array>

#include "fakes/TestStore.h"
#include "store/HistoryFile.h"
#include "store/SealedFile.h"

namespace vantorel {
namespace {

TEST(HistoryFormat, TheEnvelopeOfTheExampleOpens) {
  SecretBytes key(SecureStorage::keySize);
  for (std::size_t i = 0; i < key.size(); ++i) key.bytes()[i] = static_cast<std::byte>(i);
  const SecureStorage storage(std::move(key));
  constexpr std::array<unsigned char, 35> example = {
      0x56, 0x4e, 0x54, 0x4c, 0x31, 0xa0, 0xa1, 0xa2, 0xa3, 0xa4, 0xa5, 0xa6,
      0xa7, 0xa8, 0xa9, 0xaa, 0xab, 0xbd, 0x45, 0x8b, 0x7e, 0xa9, 0x97, 0xab,
      0x68, 0x26, 0x9e, 0x07, 0xc6, 0xae, 0x49, 0x40, 0xd0, 0x43, 0xb9};
  EXPECT_EQ(opened(storage, std::as_bytes(std::span(example))), toBytes("[]"));
}

TEST(HistoryFormat, TheJsonOfTheExampleIsRead) {
  const auto items = decodeHistory(toBytes(R"([
  {
    "contentHash": "2cf24dba5fb0a30e26e83b2ac5b9e29e1b161e5c1fa7425e73043362938b9824",
    "createdAt": "2025-03-14T09:26:53Z",
    "customName": "Greeting",
    "filePaths": [],
    "id": "3F2504E0-4F89-41D3-9A0C-0305E82C3301",
    "isPinned": true,
    "kind": "text",
    "lastCopiedAt": "2025-03-14T10:00:07Z",
    "pinOrder": 0,
    "preview": "hello",
    "sourceAppName": "Text Editor",
    "sourceBundleIdentifier": "org.example.editor",
    "text": "hello",
    "title": "Text"
  },
  {
    "assetFilename": "6FA459EA-EE8A-4CA4-894E-DB77E160355E.png",
    "contentHash": "6e340b9cffb37a989ca544e6bb780a2c78901d3fb33738768511a30617afa01d",
    "createdAt": "2025-03-14T09:20:00Z",
    "filePaths": [],
    "id": "16FD2706-8BAF-433B-82EB-8C7FADA847DA",
    "isPinned": false,
    "kind": "image",
    "preview": "1920 × 1080 px",
    "title": "Image"
  }
])"));
  ASSERT_TRUE(items);
  ASSERT_EQ(items->size(), 2U);
  EXPECT_EQ(items->at(0).contentHash, textItem("hello").contentHash);
  EXPECT_EQ(items->at(0).pinOrder, 0);
  EXPECT_EQ(items->at(1).kind, ClipKind::image);
}

}  // namespace
}  // namespace vantorel
