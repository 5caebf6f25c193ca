// SPDX-License-Identifier: MIT
#pragma once

#include <gtest/gtest.h>

#include <memory>
#include <string>
#include <utility>

#include "platform/linux/pictures/LinuxFileThumbnails.h"
#include "platform/qt/QtImageDecoder.h"
#include "ui/pictures/PictureSamples.h"
#include "unit/platform/linux/pictures/WrittenFiles.h"

namespace vantorel {

/// A desktop of one directory, with a cache, and thumbnailers that the test writes.
class FileThumbnailsFixture : public ::testing::Test {
 protected:
  FileThumbnailsFixture() {
    std::filesystem::create_directories(files / "temporary");
    // What a thumbnailer of these tests would make when all goes well.
    files.write("made.png", encodedPicture(480, 480, made));
  }

  void open(Dispatch& dispatch, ThumbnailerRuns::Limits limits = {}) {
    thumbnails = std::make_unique<LinuxFileThumbnails>(
        dispatch,
        LinuxFileThumbnails::Sources{files.system,
                                     decoder,
                                     types,
                                     files / "cache",
                                     {{files / "thumbnailers"}, {"/usr/bin", "/bin"}},
                                     userFiles,
                                     {files / "temporary", {}}},
        limits);
  }

  /// A thumbnailer of that type that runs the script with $in, $uri, $out, $size and $made.
  void install(const std::string& type, const std::string& script) {
    const auto name = std::to_string(++installed_);
    const auto file = files.write(
        "scripts/" + name, "in=$1 uri=$2 out=$3 size=$4 made=" + (files / "made.png").string() +
                               " root=" + files.root().string() + "\n" + script + "\n");
    files.write(
        "thumbnailers/" + name + ".thumbnailer",
        "[Thumbnailer Entry]\nExec=sh " + file.string() + " %i %u %o %s\nMimeType=" + type + ";\n");
  }

  static constexpr QRgb made = 0xFF445566;

  WrittenFiles files;
  std::shared_ptr<FileSystem> userFiles = std::make_shared<PosixFileSystem>();
  QtImageDecoder decoder;
  MimeTypeDatabase types{{files / "mime"}};
  std::unique_ptr<LinuxFileThumbnails> thumbnails;

 private:
  int installed_ = 0;
};

}  // namespace vantorel
