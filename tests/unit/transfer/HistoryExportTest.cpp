// SPDX-License-Identifier: MIT
#include "transfer/HistoryExport.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>

#include "fakes/FaultyFileSystem.h"
#include "fakes/TemporaryDirectory.h"
#include "fakes/TestStore.h"
#include "platform/posix/PosixFileSystem.h"
#include "transfer/HistoryImport.h"

namespace vantorel {
namespace {

using testing::HasSubstr;
using Names = std::vector<std::string>;

const std::string png = std::string("\x89PNG\r\n\x1a\n", 8) + "pixels";

class HistoryExport : public testing::Test {
 protected:
  [[nodiscard]] std::filesystem::path place() const { return directory.path() / "export"; }

  ExportResult write() {
    const auto pictureOf = [this](const ClipItem&) { return picture; };
    return exportHistory(files, items, pictureOf, place(), testDate());
  }
  ExportReading read() { return readExport(files, place(), testDate(100)); }

  Names names(const std::filesystem::path& in) {
    Names found;
    const auto listed = disk.list(in);
    for (const auto& name : listed.value()) found.push_back(name.string());
    std::sort(found.begin(), found.end());
    return found;
  }
  void overwrite(const std::string& name, std::string_view text) {
    ASSERT_FALSE(disk.remove(place() / name));
    ASSERT_FALSE(disk.writeNewFile(place() / name, bytesOf(text), 0600));
  }

  TemporaryDirectory directory;
  PosixFileSystem disk;
  FaultyFileSystem files{disk};
  std::optional<Bytes> picture = toBytes(png);
  std::vector<ClipItem> items = {pinnedItem(textItem("pin"), 0), textItem("text"),
                                 imageItem("x.png", ""), filesItem({"/a", "/b"})};
};

TEST_F(HistoryExport, WritesFilesThatItsOwnerAloneCanRead) {
  const auto result = write();
  EXPECT_FALSE(result.error);
  EXPECT_EQ(result.missing, 0U);
  EXPECT_EQ(names(place()),
            (Names{"0001.txt", "0002.txt", "0003.png", "0004.txt", "manifest.json"}));
  EXPECT_EQ(disk.readFile(place() / "0002.txt", 100), toBytes("text"));
  EXPECT_EQ(disk.readFile(place() / "0003.png", 100), toBytes(png));
  namespace fs = std::filesystem;
  EXPECT_EQ(fs::status(place()).permissions(), fs::perms::owner_all);
  EXPECT_EQ(fs::status(place() / "0001.txt").permissions(),
            fs::perms::owner_read | fs::perms::owner_write);
  EXPECT_EQ(names(directory.path()), (Names{"export"}));
}

TEST_F(HistoryExport, ComesBackInItsOrder) {
  ASSERT_FALSE(write().error);
  const auto reading = read();
  EXPECT_EQ(reading.trouble, "");
  ASSERT_EQ(reading.clips.size(), 4U);
  EXPECT_EQ(reading.clips[0].item.text->get(), "pin");
  EXPECT_TRUE(reading.clips[0].item.pinned());
  EXPECT_EQ(reading.clips[1].item.text->get(), "text");
  EXPECT_EQ(*reading.clips[2].picture->bytes, toBytes(png));
  EXPECT_EQ(reading.clips[3].item.filePaths, (FilePaths{"/a", "/b"}));
}

TEST_F(HistoryExport, TakesTheirPlaceOfAnEmptyDirectoryButOfNothingElse) {
  ASSERT_FALSE(disk.createDirectories(place(), 0755));
  EXPECT_FALSE(write().error);
  EXPECT_EQ(write().error, std::errc::directory_not_empty);
  EXPECT_EQ(names(place()).size(), 5U);
  items.clear();
  const auto file = directory.path() / "file";
  ASSERT_FALSE(disk.writeNewFile(file, {}, 0600));
  EXPECT_EQ(exportHistory(files, items, {}, file, testDate()).error, std::errc::not_a_directory);
  EXPECT_EQ(exportHistory(files, items, {}, directory.path() / "no" / "such", testDate()).error,
            std::errc::no_such_file_or_directory);
  EXPECT_EQ(names(directory.path()), (Names{"export", "file"}));
}

TEST_F(HistoryExport, LeavesNothingWhereverItFails) {
  for (int step = 0;; ++step) {
    files.failAt(step, std::errc::no_space_on_device);
    const auto result = write();
    const bool reached = result.error == std::errc::no_space_on_device;
    files.recover();
    if (!reached) {
      EXPECT_FALSE(result.error);
      EXPECT_GE(step, 7) << "a directory, five files, a name";
      return;
    }
    EXPECT_EQ(names(directory.path()), Names()) << step;
  }
}

TEST_F(HistoryExport, AFullDiskLeavesNoHalfOfAFile) {
  files.fail(FaultyFileSystem::Operation::writeNewFile, std::errc::no_space_on_device);
  EXPECT_EQ(write().error, std::errc::no_space_on_device);
  EXPECT_EQ(names(directory.path()), Names());
}

TEST_F(HistoryExport, CountsPicturesThatAreGone) {
  picture.reset();
  EXPECT_EQ(write().missing, 1U);
  EXPECT_EQ(names(place()), (Names{"0001.txt", "0002.txt", "0004.txt", "manifest.json"}));
  EXPECT_EQ(read().clips.size(), 3U);
}

TEST_F(HistoryExport, WhatWasChangedIsNotTakenIn) {
  ASSERT_FALSE(write().error);
  overwrite("0002.txt", "next");
  EXPECT_EQ(read().trouble, "The exported history is damaged: 0002.txt is missing or was changed.");
  EXPECT_TRUE(read().clips.empty());
  ASSERT_FALSE(disk.remove(place() / "0002.txt"));
  EXPECT_THAT(read().trouble, HasSubstr("0002.txt"));
  overwrite("manifest.json", "{}");
  EXPECT_THAT(read().trouble, HasSubstr("manifest.json"));
  ASSERT_FALSE(disk.remove(place() / "manifest.json"));
  EXPECT_THAT(read().trouble, HasSubstr("There is no exported history"));
}

}  // namespace
}  // namespace vantorel
