// SPDX-License-Identifier: MIT
#include <sys/socket.h>
#include <sys/stat.h>
#include <sys/un.h>

#include <QCryptographicHash>
#include <cmath>
#include <fstream>
#include <iterator>
#include <limits>

#include "fakes/ManualDispatch.h"
#include "platform/linux/pictures/ThumbnailNames.h"
#include "ui/pictures/FileThumbnailsFixture.h"

namespace vantorel {
namespace {

constexpr QRgb red = 0xFFFF0000;

/// In which any process does its first steps, on a busy machine and under sanitizers too.
constexpr std::chrono::seconds timeToBegin{3};

class FileThumbnailsTest : public FileThumbnailsFixture {
 protected:
  FileThumbnailsTest() { open(dispatch); }

  SharedBitmap pictureOf(const std::filesystem::path& file, Size size = {240, 240},
                         double scale = 1) {
    int count = 0;
    SharedBitmap result;
    thumbnails->generateBestRepresentation(file, size, scale, [&](const SharedBitmap& answer) {
      ++count;
      result = answer;
    });
    EXPECT_EQ(count, 0) << "never at once";
    dispatch.runQueued();
    EXPECT_EQ(count, 1);
    EXPECT_TRUE(std::filesystem::is_empty(files / "temporary")) << "nothing is left behind";
    return result;
  }
  /// With so much patience: for the first try, and at most.
  void openWith(std::chrono::milliseconds firstTry, std::chrono::milliseconds most) {
    ThumbnailerRuns::Limits limits;
    limits.firstTry = firstTry;
    limits.process.time = most;
    open(dispatch, limits);
  }
  void addToCache(const std::string& directory, const std::filesystem::path& file, QRgb colour) {
    const auto uri = thumbnailUri(file);
    struct stat status {};
    ::stat(file.c_str(), &status);
    const auto hash =
        QCryptographicHash::hash(QByteArray::fromStdString(uri), QCryptographicHash::Md5);
    files.write(
        "cache/" + directory + "/" + hash.toHex().toStdString() + ".png",
        encodedPicture(128, 128, colour, "png",
                       {{"Thumb::URI", uri}, {"Thumb::MTime", std::to_string(status.st_mtime)}}));
  }
  [[nodiscard]] std::string contents(const std::string& path) const {
    std::ifstream file(files / path);
    return {std::istreambuf_iterator<char>(file), {}};
  }

  ManualDispatch dispatch;
};

TEST_F(FileThumbnailsTest, AnImageIsDecodedAtTheSizeAskedFor) {
  const auto file = files.write("a.png", encodedPicture(1000, 500, red));
  const auto picture = pictureOf(file);
  EXPECT_EQ(sizeOf(picture), "240 x 120");
  EXPECT_EQ(picture->size, (Size{240, 120})) << "a point for each pixel";
  EXPECT_EQ(middleOf(picture), red);
  EXPECT_EQ(sizeOf(pictureOf(file, {240, 240}, 2)), "480 x 240");
}

TEST_F(FileThumbnailsTest, AnImageCountsByItsContentsWhenItsNameSaysNothing) {
  EXPECT_EQ(middleOf(pictureOf(files.write("picture", encodedPicture(9, 9, red)))), red);
  EXPECT_EQ(pictureOf(files.write("noise", "no picture at all")), nullptr);
}

TEST_F(FileThumbnailsTest, TheSharedCacheComesFirst) {
  const auto image = files.write("a.png", encodedPicture(1000, 500, red));
  addToCache("large", image, 0xFF000001);
  EXPECT_EQ(middleOf(pictureOf(image)), 0xFF000001);
}

TEST_F(FileThumbnailsTest, ASmallThumbnailInTheCacheIsBetterThanWaiting) {
  install("video/mp4", "cp $made $out");
  const auto image = files.write("a.png", encodedPicture(1000, 500, red));
  const auto video = files.write("a.mp4", "film");
  addToCache("normal", image, 0xFF000001);
  addToCache("normal", video, 0xFF000002);
  EXPECT_EQ(middleOf(pictureOf(image)), red) << "but no better than the image itself";
  EXPECT_EQ(middleOf(pictureOf(video)), 0xFF000002);
}

TEST_F(FileThumbnailsTest, AStaleThumbnailDoesNotCount) {
  const auto image = files.write("a.png", encodedPicture(1000, 500, red));
  addToCache("large", image, 0xFF000001);
  files.touch("a.png");
  EXPECT_EQ(middleOf(pictureOf(image)), red);
}

TEST_F(FileThumbnailsTest, AThumbnailerMakesThePicture) {
  install("video/mp4", "echo \"$in $uri $size\" >$root/asked; cp $made $out");
  const auto picture = pictureOf(files.write("my film.mp4", "film"), {240, 100}, 1);
  EXPECT_EQ(middleOf(picture), made);
  EXPECT_EQ(sizeOf(picture), "100 x 100") << "however large it made it";
  const auto root = files.root().string();
  EXPECT_EQ(contents("asked"), root + "/my film.mp4 file://" + root + "/my%20film.mp4 240\n");
}

TEST_F(FileThumbnailsTest, AnImageThatWeCannotDecodeIsForTheThumbnailer) {
  install("image/png", "cp $made $out");
  EXPECT_EQ(middleOf(pictureOf(files.write("odd.png", "unusual"))), made);
  install("image/svg+xml", "cp $made $out");
  files.touch("thumbnailers");
  EXPECT_EQ(middleOf(pictureOf(files.write("a.svg", drawing(9, 9, "red")))), made);
}

TEST_F(FileThumbnailsTest, AThumbnailerThatFailsMakesNothing) {
  install("video/mp4", "cp $made $out; exit 1");
  install("application/pdf", "cp $made $out; kill -SEGV $$");
  EXPECT_EQ(pictureOf(files.write("a.mp4", "film")), nullptr);
  EXPECT_EQ(pictureOf(files.write("a.pdf", "document")), nullptr);
}

TEST_F(FileThumbnailsTest, AThumbnailerThatWritesNothingOrNonsenseMakesNothing) {
  install("video/mp4", "exit 0");
  install("application/pdf", "echo nonsense >$out");
  EXPECT_EQ(pictureOf(files.write("a.mp4", "film")), nullptr);
  EXPECT_EQ(pictureOf(files.write("a.pdf", "document")), nullptr);
}

TEST_F(FileThumbnailsTest, AThumbnailerThatGaveUpIsTriedAgain) {
  install("video/mp4", "test -e $root/ready && cp $made $out");
  const auto file = files.write("a.mp4", "film");
  EXPECT_EQ(pictureOf(file), nullptr);
  files.write("ready");
  EXPECT_EQ(middleOf(pictureOf(file)), made);
}

TEST_F(FileThumbnailsTest, AThumbnailerThatWritesWithoutEndIsStopped) {
  install("video/mp4", "cat /dev/zero >$out");
  EXPECT_EQ(pictureOf(files.write("a.mp4", "film")), nullptr);
}

TEST_F(FileThumbnailsTest, AThumbnailerThatLeavesAPipeHoldsNobodyUp) {
  install("video/mp4", "mkfifo $out");
  EXPECT_EQ(pictureOf(files.write("a.mp4", "film")), nullptr);
}

TEST_F(FileThumbnailsTest, AThumbnailerThatHangsIsKilled) {
  openWith(std::chrono::milliseconds(50), std::chrono::milliseconds(300));
  install("video/mp4", "echo x >$TMPDIR/left; sleep 1000");
  EXPECT_EQ(pictureOf(files.write("a.mp4", "film")), nullptr);
}

TEST_F(FileThumbnailsTest, AThumbnailerThatTakesAWhileIsWaitedFor) {
  openWith(timeToBegin, std::chrono::seconds(20));
  install("video/mp4",
          "echo x >>$root/runs; test -e $root/again || { touch $root/again; exec sleep 1000; }; "
          "cp $made $out");
  EXPECT_EQ(middleOf(pictureOf(files.write("a.mp4", "film"))), made);
  EXPECT_EQ(contents("runs"), "x\nx\n") << "begun anew where it holds nobody up";
}

TEST_F(FileThumbnailsTest, AFileWhoseThumbnailerHungIsTriedAgainOnlyWhenItHasChanged) {
  openWith(timeToBegin, timeToBegin);
  install("video/mp4", "echo x >>$root/runs; sleep 1000");
  const auto file = files.write("a.mp4", "film");
  for (int times = 0; times < 3; ++times) EXPECT_EQ(pictureOf(file), nullptr);
  EXPECT_EQ(contents("runs"), "x\n");
  EXPECT_EQ(pictureOf(file, {100, 100}), nullptr) << "of any size";
  EXPECT_EQ(contents("runs"), "x\n");
  files.touch("a.mp4");
  EXPECT_EQ(pictureOf(file), nullptr);
  EXPECT_EQ(contents("runs"), "x\nx\n");
}

TEST_F(FileThumbnailsTest, AFileWhoseThumbnailerCrashedIsNotTriedAgain) {
  install("video/mp4", "echo x >>$root/runs; kill -SEGV $$");
  const auto file = files.write("a.mp4", "film");
  for (int times = 0; times < 3; ++times) EXPECT_EQ(pictureOf(file), nullptr);
  EXPECT_EQ(contents("runs"), "x\n");
  EXPECT_EQ(pictureOf(files.write("b.mp4", "film")), nullptr);
  EXPECT_EQ(contents("runs"), "x\nx\n") << "others are";
}

TEST_F(FileThumbnailsTest, WhoAsksTwiceSharesOnePicture) {
  install("video/mp4", "echo x >>$root/runs; cp $made $out");
  const auto file = files.write("a.mp4", "film");
  std::vector<SharedBitmap> answers;
  for (int i = 0; i < 3; ++i) {
    thumbnails->generateBestRepresentation(
        file, {240, 240}, 1, [&](const SharedBitmap& answer) { answers.push_back(answer); });
  }
  dispatch.runQueued();
  ASSERT_EQ(answers.size(), 3U);
  EXPECT_EQ(middleOf(answers[0]), made);
  EXPECT_EQ(answers[1], answers[0]);
  EXPECT_EQ(answers[2], answers[0]);
  EXPECT_EQ(contents("runs"), "x\n");
}

TEST_F(FileThumbnailsTest, TheSharedCacheIsNeverWritten) {
  install("video/mp4", "cp $made $out");
  EXPECT_NE(pictureOf(files.write("a.mp4", "film")), nullptr);
  EXPECT_NE(pictureOf(files.write("a.png", encodedPicture(9, 9, red))), nullptr);
  EXPECT_FALSE(std::filesystem::exists(files / "cache"));
}

TEST_F(FileThumbnailsTest, OnlyRegularFilesHavePictures) {
  install("video/mp4", "cp $made $out");
  std::filesystem::create_directories(files / "directory.mp4");
  ASSERT_EQ(::mkfifo((files / "pipe.mp4").c_str(), 0600), 0);
  ASSERT_EQ(::mkfifo((files / "pipe").c_str(), 0600), 0);
  const int socket = ::socket(AF_UNIX, SOCK_STREAM, 0);
  sockaddr_un address{};
  address.sun_family = AF_UNIX;
  const auto path = (files / "socket.mp4").string();
  ASSERT_LT(path.size(), sizeof address.sun_path);
  path.copy(static_cast<char*>(address.sun_path), path.size());
  ASSERT_EQ(::bind(socket, reinterpret_cast<sockaddr*>(&address), sizeof address), 0);
  for (const auto* name : {"directory.mp4", "pipe.mp4", "pipe", "socket.mp4"}) {
    EXPECT_EQ(pictureOf(files / name), nullptr) << name;
  }
  EXPECT_EQ(pictureOf("/dev/zero"), nullptr);
  ::close(socket);
}

TEST_F(FileThumbnailsTest, APathWithANulByteIsNotTheFileBeforeIt) {
  install("video/mp4", "cp $made $out");
  const auto file = files.write("a.png", encodedPicture(9, 9, red));
  EXPECT_EQ(pictureOf(file.string() + '\0' + ".png"), nullptr);
  EXPECT_EQ(pictureOf(file.string() + '\0' + ".mp4"), nullptr);
}

TEST_F(FileThumbnailsTest, AFileThatIsGoneOrOfNoKnownTypeHasNone) {
  EXPECT_EQ(pictureOf(files / "gone.png"), nullptr);
  EXPECT_EQ(pictureOf(files.write("a.unheard", "?")), nullptr);
  EXPECT_EQ(pictureOf(files.write("a.mp4", "film")), nullptr) << "no thumbnailer";
  EXPECT_EQ(pictureOf("relative.png"), nullptr);
  EXPECT_EQ(pictureOf(""), nullptr);
  EXPECT_EQ(pictureOf(files.write("empty.png")), nullptr);
}

TEST_F(FileThumbnailsTest, AFileThatVanishesMeanwhileHasNone) {
  install("video/mp4", "rm $in; cat $in >/dev/null && cp $made $out");
  EXPECT_EQ(pictureOf(files.write("a.mp4", "film")), nullptr);
}

TEST_F(FileThumbnailsTest, AGiantImageIsNotRead) {
  constexpr auto largest = std::uintmax_t{64} << 20U;
  const auto file = files.write("giant.png", encodedPicture(9, 9, red, "bmp"));
  std::filesystem::resize_file(file, largest);
  EXPECT_EQ(middleOf(pictureOf(file)), red);
  std::filesystem::resize_file(file, largest + 1);
  EXPECT_EQ(pictureOf(file), nullptr);
}

TEST_F(FileThumbnailsTest, AnOddSizeHarmsNobody) {
  const auto file = files.write("a.png", encodedPicture(100, 100, red));
  const double infinity = std::numeric_limits<double>::infinity();
  EXPECT_EQ(sizeOf(pictureOf(file, {0, 0}, 1)), "1 x 1");
  EXPECT_EQ(sizeOf(pictureOf(file, {-5, 240}, -1)), "1 x 1");
  EXPECT_EQ(sizeOf(pictureOf(file, {std::nan(""), 240}, 1)), "1 x 1");
  EXPECT_EQ(sizeOf(pictureOf(file, {infinity, infinity}, 1)), "100 x 100");
}

}  // namespace
}  // namespace vantorel
