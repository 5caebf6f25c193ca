// SPDX-License-Identifier: MIT
#include "fakes/ManualDispatch.h"
#include "platform/linux/xdg/XdgDirectories.h"
#include "ui/pictures/FileThumbnailsFixture.h"

namespace vantorel {
namespace {

/// The types and thumbnailers of this very system.
class InstalledThumbnailerTest : public FileThumbnailsFixture {
 protected:
  SharedBitmap pictureOf(const std::filesystem::path& file) {
    SharedBitmap result;
    thumbnails.generateBestRepresentation(file, {240, 240}, 1,
                                          [&](const SharedBitmap& answer) { result = answer; });
    dispatch.runQueued();
    return result;
  }

  ManualDispatch dispatch;
  MimeTypeDatabase installedTypes{MimeTypeDatabase::directories(processEnvironment)};
  LinuxFileThumbnails thumbnails{dispatch,
                                 {files.system,
                                  decoder,
                                  installedTypes,
                                  files / "cache",
                                  Thumbnailers::Places::fromEnvironment(processEnvironment),
                                  userFiles,
                                  {files / "temporary", "/usr/bin/bwrap"}}};
};

TEST_F(InstalledThumbnailerTest, DrawsADrawing) {
  const auto picture = pictureOf(files.write("a drawing.svg", drawing(400, 200, "#ff0000")));
  EXPECT_EQ(sizeOf(picture), "240 x 120");
  EXPECT_EQ(middleOf(picture), 0xFFFF0000);
}

TEST_F(InstalledThumbnailerTest, FailsOnWhatIsDamaged) {
  EXPECT_EQ(pictureOf(files.write("broken.svg", "<svg")), nullptr);
}

}  // namespace
}  // namespace vantorel
