// SPDX-License-Identifier: MIT
#include "transfer/HistoryExport.h"

#include <fcntl.h>
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <sys/stat.h>

#include <algorithm>

#include "base/FileDescriptor.h"
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

TEST_F(HistoryExport, FillsAnEmptyDirectoryButNothingElse) {
  ASSERT_FALSE(disk.createDirectories(place(), 0755));
  EXPECT_FALSE(write().error);
  EXPECT_EQ(std::filesystem::status(place()).permissions(), std::filesystem::perms::owner_all);
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

TEST_F(HistoryExport, AnEmptyDirectoryStaysTheVeryOne) {
  ASSERT_FALSE(disk.createDirectories(place(), 0755));
  const int held = ::open(place().c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC);
  ASSERT_GE(held, 0);
  const FileDescriptor closed(held);
  ASSERT_FALSE(write().error);
  struct stat before {};
  struct stat after {};
  ASSERT_EQ(::fstat(held, &before), 0);
  ASSERT_EQ(::stat(place().c_str(), &after), 0);
  EXPECT_EQ(before.st_ino, after.st_ino);
  for (const auto& call : files.calls()) {
    EXPECT_EQ(call.path.string().find(place().string()), 0U) << call.path;
  }
  EXPECT_EQ(names(place()).size(), 5U);
}

TEST_F(HistoryExport, TheManifestComesLastIntoADirectory) {
  ASSERT_FALSE(disk.createDirectories(place(), 0700));
  for (int step = 0;; ++step) {
    files.dieAt(step, FaultyFileSystem::Progress::whole);
    (void)write();
    const auto standing = names(place());
    const bool isDone = !files.isDead();
    files.recover();
    if (std::find(standing.begin(), standing.end(), "manifest.json") != standing.end()) {
      EXPECT_EQ(read().clips.size(), 4U) << step;
    }
    for (const auto& entry : std::filesystem::directory_iterator(place())) {
      std::filesystem::remove_all(entry.path());
    }
    if (isDone) return;
  }
}

TEST_F(HistoryExport, LeavesADirectoryEmptyWhereverItFails) {
  for (int step = 0;; ++step) {
    ASSERT_FALSE(disk.createDirectories(place(), 0700));
    files.failAt(step, std::errc::no_space_on_device);
    const auto result = write();
    files.recover();
    if (result.error != std::errc::no_space_on_device) {
      EXPECT_FALSE(result.error);
      EXPECT_GE(step, 13) << "a directory, five files, and each of them moved";
      return;
    }
    EXPECT_EQ(names(place()), Names()) << step;
  }
}

TEST_F(HistoryExport, WhatIsUnfinishedHasANameOfItsOwnAndIsClaimed) {
  ASSERT_FALSE(write().error);
  const auto& calls = files.calls();
  ASSERT_GE(calls.size(), 2U);
  EXPECT_TRUE(isUnfinishedExport(calls[0].path.filename().string())) << calls[0].path;
  EXPECT_EQ(calls[1].operation, FaultyFileSystem::Operation::claim);
  for (const std::string_view name :
       {"", "export", ".vantorel-export.", ".vantorel-export.x", "vantorel-export",
        ".export.6FA459EA-EE8A-4CA4-894E-DB77E160355E.tmp",
        ".vantorel-export.6FA459EA-EE8A-4CA4-894E-DB77E160355E.tmp"}) {
    EXPECT_FALSE(isUnfinishedExport(name)) << name;
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

TEST_F(HistoryExport, CountsWhatCouldNotBeTakenInAgain) {
  items.push_back(filesItem({"relative"}));
  EXPECT_EQ(write().missing, 1U);
  EXPECT_EQ(read().clips.size(), 4U);
}

TEST(IntakeSentence, SaysHowManyStayed) {
  EXPECT_EQ(intakeSentence(1, 1), "1 clip was taken in.");
  EXPECT_EQ(intakeSentence(0, 0), "0 clips were taken in.");
  EXPECT_EQ(intakeSentence(7, 7), "7 clips were taken in.");
  EXPECT_EQ(intakeSentence(3, 50),
            "3 of 50 clips were taken in; the others are over the limits of the history.");
  EXPECT_EQ(intakeSentence(1, 2),
            "1 of 2 clips was taken in; the others are over the limits of the history.");
  EXPECT_EQ(intakeSentence(0, 2),
            "None of 2 clips was taken in; the limits of the history leave no room.");
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
