// SPDX-License-Identifier: MIT
#include "store/CapturedEntries.h"

#include <gtest/gtest.h>

#include <limits>

#include "base/ContentFingerprint.h"
#include "fakes/TestStore.h"

namespace vantorel {
namespace {

ClipItem files(std::vector<std::string> paths) { return filesItem(std::move(paths)); }

TEST(FilesEntry, OneVideoFileIsAVideoInAnyCase) {
  EXPECT_EQ(files({"/home/u/Movie.MOV"}).title, "Video");
  for (const auto extension : videoExtensions) {
    EXPECT_EQ(files({"/v/clip." + std::string(extension)}).title, "Video") << extension;
  }
  EXPECT_EQ(files({"/v/archive.tar.webm"}).title, "Video");
  EXPECT_EQ(files({"/v/bundle.mov/"}).title, "Video");
}

TEST(FilesEntry, OneOtherFileIsAFile) {
  for (const char* path : {"/notes.txt", "/mov", "/.mov", "/a.mov/b", "/x.mp4x", "/x.", "/"}) {
    EXPECT_EQ(files({path}).title, "File") << path;
  }
}

TEST(FilesEntry, SeveralFilesAreCountedAlsoWhenAllAreVideos) {
  EXPECT_EQ(files({"/a.txt", "/b.txt"}).title, "2 files");
  EXPECT_EQ(files({"/a.mov", "/b.mov", "/c.mov"}).title, "3 files");
}

TEST(FilesEntry, ThePreviewListsTheNames) {
  EXPECT_EQ(files({"/x/a.txt", "/y/b.txt"}).preview, "a.txt, b.txt");
  EXPECT_EQ(files({"/x/directory/"}).preview, "directory");
  EXPECT_EQ(files({"/"}).preview, "/");
  EXPECT_EQ(files({"/x/br\xFFken"}).preview, "br\xEF\xBF\xBDken");
}

TEST(FilesEntry, TheHashIsThatOfThePathsWithNulBetween) {
  EXPECT_EQ(files({"/a"}).contentHash, ContentFingerprint::data(bytesOf("/a")));
  EXPECT_EQ(files({"/a", "/b"}).contentHash,
            ContentFingerprint::data(bytesOf(std::string_view("/a\0/b", 5))));
  EXPECT_NE(files({"/a", "/b"}).contentHash, files({"/b", "/a"}).contentHash);
}

TEST(ImageEntry, ThePreviewIsTheSizeInWholePoints) {
  const auto preview = [](double width, double height) {
    return imageEntry({width, height}, "a.png", "h", {}, testDate()).preview;
  };
  EXPECT_EQ(preview(1920, 1080), "1920 × 1080 px");
  EXPECT_EQ(preview(1.9, 0.5), "1 × 0 px");
  EXPECT_EQ(preview(std::numeric_limits<double>::quiet_NaN(), -4), "0 × 0 px");
}

}  // namespace
}  // namespace vantorel
