// SPDX-License-Identifier: MIT
#include "transfer/ExportManifest.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "fakes/TestStore.h"

namespace vantorel {
namespace {

using testing::HasSubstr;

std::vector<ExportedEntry> entries() {
  ExportedEntry text{.kind = ClipKind::text,
                     .preview = "a \"text\"",
                     .isPinned = true,
                     .customName = "Greeting",
                     .sourceAppName = "Editor",
                     .sourceBundleIdentifier = "org.example.editor",
                     .createdAt = testDate(),
                     .lastCopiedAt = testDate(7),
                     .recognizedText = std::nullopt,
                     .files = {{"0001.txt", ExportedFile::Form::text, "aa"},
                               {"0001.html", ExportedFile::Form::html, "bb"},
                               {"0001.rtf", ExportedFile::Form::rtf, "cc"}}};
  ExportedEntry picture{.kind = ClipKind::image,
                        .preview = "4 × 3 px",
                        .isPinned = false,
                        .customName = std::nullopt,
                        .sourceAppName = std::nullopt,
                        .sourceBundleIdentifier = std::nullopt,
                        .createdAt = testDate(1),
                        .lastCopiedAt = std::nullopt,
                        .recognizedText = "words",
                        .files = {{"0002.png", ExportedFile::Form::picture, "dd"}}};
  ExportedEntry files{.kind = ClipKind::files,
                      .preview = "one",
                      .isPinned = false,
                      .customName = std::nullopt,
                      .sourceAppName = std::nullopt,
                      .sourceBundleIdentifier = std::nullopt,
                      .createdAt = testDate(2),
                      .lastCopiedAt = std::nullopt,
                      .recognizedText = std::nullopt,
                      .files = {{"0003.txt", ExportedFile::Form::paths, "ee"}}};
  return {text, picture, files};
}

std::string replaced(std::string text, std::string_view from, std::string_view to) {
  const auto at = text.find(from);
  EXPECT_NE(at, std::string::npos) << from;
  return text.replace(at, from.size(), to);
}

TEST(ExportManifest, SaysAllThatItIsGiven) {
  const std::string json = manifestJson(entries(), testDate());
  EXPECT_EQ(readManifest(toBytes(json)), entries());
  EXPECT_THAT(json, HasSubstr(R"("exportedAt": "2025-03-14T09:26:53Z")"));
  EXPECT_THAT(json, HasSubstr(R"("number": 3)"));
  EXPECT_EQ(readManifest(toBytes(manifestJson({}, testDate()))), std::vector<ExportedEntry>());
}

TEST(ExportManifest, IsValidWhateverWasCopied) {
  auto list = entries();
  list[0].sourceAppName = "\xff";
  const auto read = readManifest(toBytes(manifestJson(list, testDate())));
  ASSERT_TRUE(read);
  EXPECT_EQ(read->at(0).sourceAppName, "\uFFFD");
}

TEST(ExportManifest, WhatIsNoneOrOfALaterVersionIsNotRead) {
  const std::string json = manifestJson(entries(), testDate());
  for (const auto& [from, to] : std::vector<std::pair<const char*, const char*>>{
           {"vantorel-export", "another"},
           {"\"version\": 1", "\"version\": 2"},
           {"\"version\": 1", "\"version\": \"1\""},
           {"\"version\": 1,", ""},
           {"\"entries\"", "\"entry\""},
           {"\"kind\": \"text\"", "\"kind\": \"sound\""},
           {"\"isPinned\": true", "\"isPinned\": 1"},
           {"\"isPinned\": true,", ""},
           {"\"Greeting\"", "7"},
           {"09:27:00Z", "25:27:00Z"},
           {"\"createdAt\"", "\"made\""},
           {"\"preview\"", "\"seen\""},
           {"\"form\": \"html\"", "\"form\": \"pdf\""},
           {"0001.txt", "../0001.txt"},
           {"0001.txt", "/etc/passwd"},
           {"0001.txt", ".."},
           {"0001.txt", ".hidden"},
           {"0001.txt", "a.txt"},
           {"0001.txt", "001.txt"},
           {"0001.txt", "0001.sh"},
           {"0001.txt", "0001"},
           {"0001.txt", "0001.txt\\u001b[31m"},
           {"Greeting", "half \\ud83d"},
           {"Editor", "half \\udc4b"},
           {"a \\\"text\\\"", "\\ud83d a"},
           {"0001.txt", ""},
           {"0001.txt", "a\\u0000"},
           {"\"sha256\": \"aa\"", "\"sha256\": null"}}) {
    EXPECT_FALSE(readManifest(toBytes(replaced(json, from, to)))) << from << " by " << to;
  }
}

TEST(ExportManifest, AFileIsCalledByANumberAndItsForm) {
  for (const std::string_view name :
       {"0001.txt", "0002.html", "0003.rtf", "12345.png", "0005.jpg"}) {
    EXPECT_TRUE(isExportedFileName(name)) << name;
  }
  for (const std::string_view name :
       {"", "0001", ".txt", "1.txt", "0001.TXT", "0001.txt2", "00012345678901234567.txt",
        "0001 .txt", "manifest.json", "0001.txt/", "../0001.txt"}) {
    EXPECT_FALSE(isExportedFileName(name)) << name;
  }
}

TEST(ExportManifest, WhatIsCutOrNoJsonIsNotRead) {
  const std::string json = manifestJson(entries(), testDate());
  for (const std::size_t length :
       {std::size_t{0}, std::size_t{1}, json.size() / 2, json.size() - 3})
    EXPECT_FALSE(readManifest(toBytes(json.substr(0, length)))) << length;
  for (const std::string_view text : {"[]", "null", "7", "\"\"", "{}", "\xff{}"})
    EXPECT_FALSE(readManifest(toBytes(text))) << text;
  EXPECT_FALSE(readManifest(toBytes(json + json)));
  EXPECT_FALSE(readManifest(toBytes(json + std::string(1, '\0'))));
  EXPECT_FALSE(readManifest(toBytes(std::string(100'000, '['))));
}

}  // namespace
}  // namespace vantorel
