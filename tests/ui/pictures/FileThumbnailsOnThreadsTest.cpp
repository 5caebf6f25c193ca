// SPDX-License-Identifier: MIT
#include <array>
#include <atomic>
#include <chrono>
#include <csignal>
#include <fstream>
#include <thread>

#include "fakes/StuckFileSystem.h"
#include "platform/qt/QtDispatch.h"
#include "ui/pictures/FileThumbnailsFixture.h"

namespace vantorel {
namespace {

/// With the queues that the program has.
class FileThumbnailsOnThreadsTest : public FileThumbnailsFixture {
 protected:
  FileThumbnailsOnThreadsTest() { open(dispatch); }

  /// The limit only bounds a failure.
  template <class Condition>
  bool waitUntil(Condition condition) {
    const auto deadline = std::chrono::steady_clock::now() + std::chrono::seconds(60);
    while (!condition()) {
      if (std::chrono::steady_clock::now() > deadline) return false;
      std::this_thread::yield();
    }
    return true;
  }

  QtDispatch dispatch;
};

TEST_F(FileThumbnailsOnThreadsTest, AHangingThumbnailerHoldsNoImageUp) {
  install("video/mp4", "echo $$ >$root/running; exec sleep 1000");
  std::atomic<int> videos = 0;
  std::atomic<int> images = 0;
  thumbnails->generateBestRepresentation(files.write("a.mp4", "film"), {240, 240}, 1,
                                         [&](const SharedBitmap&) { ++videos; });
  ASSERT_TRUE(waitUntil([&] { return std::filesystem::exists(files / "running"); }));
  thumbnails->generateBestRepresentation(files.write("a.png", encodedPicture(9, 9, 0xFFFF0000)),
                                         {240, 240}, 1, [&](const SharedBitmap& picture) {
                                           if (picture) ++images;
                                         });
  EXPECT_TRUE(waitUntil([&] { return images == 1; }));
  EXPECT_EQ(videos, 0);
  thumbnails.reset();
}

TEST_F(FileThumbnailsOnThreadsTest, HangingThumbnailersDoNotAddUpForOthers) {
  ThumbnailerRuns::Limits limits;
  limits.firstTry = std::chrono::seconds(3);  // enough to copy a file on a busy machine
  limits.process.time = std::chrono::hours(1);
  open(dispatch, limits);
  install("video/mp4", "exec sleep 1000");
  install("application/pdf", "cp $made $out");
  std::atomic<int> videos = 0;
  std::atomic<int> documents = 0;
  for (const auto* name : {"a.mp4", "b.mp4", "c.mp4"}) {
    thumbnails->generateBestRepresentation(files.write(name, "film"), {240, 240}, 1,
                                           [&](const SharedBitmap&) { ++videos; });
  }
  thumbnails->generateBestRepresentation(files.write("a.pdf", "document"), {240, 240}, 1,
                                         [&](const SharedBitmap& picture) {
                                           if (picture) ++documents;
                                         });
  EXPECT_TRUE(waitUntil([&] { return documents == 1; }));
  EXPECT_EQ(videos, 0);
  thumbnails.reset();
}

TEST_F(FileThumbnailsOnThreadsTest, TheRunningThumbnailerEndsWithIt) {
  ThumbnailerRuns::Limits limits;
  limits.firstTry = limits.process.time;
  open(dispatch, limits);
  install("video/mp4",
          "echo x >>$root/starts; echo $$ >$root/starting; mv $root/starting $root/running; exec "
          "sleep 1000");
  std::array<std::atomic<int>, 2> answers{};
  for (const int number : {0, 1}) {
    thumbnails->generateBestRepresentation(files.write(std::to_string(number) + ".mp4", "film"),
                                           {240, 240}, 1, [&, number](const SharedBitmap& picture) {
                                             EXPECT_EQ(picture, nullptr);
                                             ++answers.at(number);
                                           });
  }
  ASSERT_TRUE(waitUntil([&] { return std::filesystem::exists(files / "running"); }));
  pid_t process = 0;
  std::ifstream(files / "running") >> process;
  ASSERT_EQ(::kill(process, 0), 0);
  const auto begin = std::chrono::steady_clock::now();
  thumbnails.reset();
  EXPECT_LT(std::chrono::steady_clock::now() - begin, std::chrono::seconds(5));
  EXPECT_NE(::kill(process, 0), 0) << "it is gone";
  for (const auto& each : answers) EXPECT_LE(each, 1);
  EXPECT_EQ(std::filesystem::file_size(files / "starts"), 2U) << "the other one never begins";
  EXPECT_TRUE(std::filesystem::is_empty(files / "temporary"));
}

TEST_F(FileThumbnailsOnThreadsTest, AFileThatDoesNotAnswerHoldsUpNeitherOthersNorTheEnd) {
  const auto gate = std::make_shared<Gate>();
  userFiles = std::make_shared<StuckFileSystem>(gate, "stuck.png");
  open(dispatch);
  std::atomic<int> stuck = 0;
  std::atomic<int> answered = 0;
  const auto ask = [&](const std::string& name, std::atomic<int>& answers) {
    thumbnails->generateBestRepresentation(files.write(name, encodedPicture(9, 9, 0xFFFF0000)),
                                           {240, 240}, 1, [&](const SharedBitmap&) { ++answers; });
  };
  ask("stuck.png", stuck);
  ASSERT_TRUE(gate->isReachedBy(1));
  ask("a.png", answered);
  EXPECT_TRUE(waitUntil([&] { return answered == 1; }));
  // Once more, and now it ends meanwhile. Another name: the first one is not asked for again.
  std::filesystem::create_directories(files / "elsewhere");
  ask("elsewhere/stuck.png", stuck);
  ASSERT_TRUE(gate->isReachedBy(2));
  const auto begin = std::chrono::steady_clock::now();
  thumbnails.reset();
  EXPECT_LT(std::chrono::steady_clock::now() - begin, std::chrono::seconds(1));
  gate->open();
  EXPECT_TRUE(gate->isPassedBy(2));
}

}  // namespace
}  // namespace vantorel
