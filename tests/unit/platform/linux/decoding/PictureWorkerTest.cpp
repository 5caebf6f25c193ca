// SPDX-License-Identifier: MIT
#include "platform/linux/decoding/PictureWorker.h"

#include <gtest/gtest.h>

#include <atomic>
#include <csignal>
#include <filesystem>
#include <fstream>
#include <string>
#include <thread>

#include "fakes/TemporaryDirectory.h"
#include "fakes/ThreadedDispatch.h"
#include "platform/linux/confined/WorkerProgram.h"
#include "unit/platform/qt/ImageSamples.h"

namespace vantorel {
namespace {

using std::chrono::steady_clock;

PictureWorker::Settings settings() {
  // A busy machine takes its time, and so do the checks of this build.
  return {.program = workerProgram(pictureWorker), .pictureLimit = std::chrono::seconds(100)};
}

Bytes picture() { return encoded(colourful(40, 30, Transparency::some), "bmp"); }

/// Whether any thread of this process has started another one that has not been waited for.
bool hasChild() {
  for (const auto& thread : std::filesystem::directory_iterator("/proc/self/task")) {
    std::ifstream children(thread.path() / "children");
    if (int child = 0; children >> child) return true;
  }
  return false;
}

/// How many pictures it takes until one is made, and more than `most` when none of those was.
int picturesUntilOneIsMade(PictureWorker& worker, int most) {
  int pictures = 1;
  while (!worker.bitmap(picture(), {10, 10}) && pictures <= most) ++pictures;
  return pictures;
}

/// Workers that do what no sound one does.
class HostileWorker : public testing::Test {
 protected:
  PictureWorker::Settings called(const std::string& name) {
    const auto program = directory_.path() / name;
    if (!std::filesystem::exists(program))
      std::filesystem::create_symlink(workerProgram("hostile-picture-worker"), program);
    auto made = settings();
    made.program = program;
    return made;
  }

 private:
  TemporaryDirectory directory_;
};

TEST_F(HostileWorker, NothingItClaimsIsBelieved) {
  for (const auto* name : {"nonsense", "endless", "empty", "too-large", "other-size", "dying"}) {
    PictureWorker worker(called(name));
    EXPECT_EQ(worker.bitmap(picture(), {10, 10}), nullptr) << name;
    EXPECT_EQ(worker.processId(), 0) << name << ": it was trusted further";
  }
}

TEST_F(HostileWorker, ASoundClaimIsTakenForWhatItIs) {
  PictureWorker worker(called("zeroes"));
  const auto made = worker.bitmap(picture(), {10, 10});
  ASSERT_TRUE(made);
  EXPECT_EQ(made->pixels, std::vector<std::uint32_t>(100));
}

TEST_F(HostileWorker, OneThatTurnsAndGoesOnRunningHoldsUpNobody) {
  PictureWorker worker(called("turning"));
  ASSERT_TRUE(worker.bitmap(picture(), {10, 10}));
  const auto begun = steady_clock::now();
  EXPECT_EQ(worker.bitmap(picture(), {10, 10}), nullptr);
  EXPECT_LT(steady_clock::now() - begun, settings().pictureLimit / 5);
  EXPECT_EQ(worker.processId(), 0);
}

TEST_F(HostileWorker, OneThatHangsIsGivenUp) {
  auto hasty = called("silent");
  hasty.pictureLimit = std::chrono::milliseconds(50);
  PictureWorker worker(hasty);
  EXPECT_EQ(worker.bitmap(picture(), {10, 10}), nullptr);
  EXPECT_EQ(worker.processId(), 0);
}

TEST_F(HostileWorker, OneThatUsesMoreOfTheProcessorThanItMayIsEnded) {
  auto frugal = called("busy");
  frugal.processorLimit = std::chrono::milliseconds(100);
  PictureWorker worker(frugal);
  const auto begun = steady_clock::now();
  EXPECT_EQ(worker.bitmap(picture(), {10, 10}), nullptr);
  EXPECT_LT(steady_clock::now() - begun, settings().pictureLimit / 2);
}

TEST_F(HostileWorker, OneThatGoesOnComputingAfterItsAnswerIsEnded) {
  PictureWorker worker(called("busy-afterwards"));
  EXPECT_TRUE(worker.bitmap(picture(), {10, 10}));
  EXPECT_TRUE(ThreadedDispatch::waitUntil([&] { return worker.processId() == 0; }));
}

TEST_F(HostileWorker, WhoeverWaitsForItIsFreedAtTheEnd) {
  PictureWorker worker(called("silent"));
  std::atomic<bool> isAnswered = false;
  std::thread asking([&] {
    EXPECT_EQ(worker.bitmap(picture(), {10, 10}), nullptr);
    isAnswered = true;
  });
  EXPECT_TRUE(ThreadedDispatch::waitUntil(hasChild));
  worker.stop();
  EXPECT_TRUE(ThreadedDispatch::waitUntil([&] { return isAnswered.load(); }));
  asking.join();
  EXPECT_EQ(worker.bitmap(picture(), {10, 10}), nullptr);
}

TEST_F(HostileWorker, AfterSomeFailuresNoOtherIsStarted) {
  auto twice = called("gone");
  twice.failureLimit = 2;
  PictureWorker worker(twice);
  EXPECT_FALSE(worker.bitmap(picture(), {10, 10}));
  EXPECT_FALSE(worker.bitmap(picture(), {10, 10}));
  // From here on one would answer.
  std::filesystem::remove(twice.program);
  std::filesystem::create_symlink(workerProgram(pictureWorker), twice.program);
  EXPECT_FALSE(worker.bitmap(picture(), {10, 10})) << "it was tried a third time";
}

TEST_F(HostileWorker, FailuresAreForgottenAfterAWhile) {
  auto once = called("gone");
  once.failureLimit = 1;
  once.failureTime = std::chrono::seconds(0);
  PictureWorker worker(once);
  EXPECT_FALSE(worker.bitmap(picture(), {10, 10}));
  std::filesystem::remove(once.program);
  std::filesystem::create_symlink(workerProgram(pictureWorker), once.program);
  EXPECT_TRUE(worker.bitmap(picture(), {10, 10}));
}

TEST(PictureWorker, WithoutAProgramNothingIsMade) {
  for (const char* program : {"", "/nonexistent/vantorel-pictures", "/etc/passwd", "/bin/false"}) {
    auto none = settings();
    none.program = program;
    PictureWorker worker(none);
    EXPECT_EQ(worker.bitmap(picture(), {10, 10}), nullptr) << program;
    EXPECT_EQ(worker.png(picture()), nullptr) << program;
  }
}

TEST(PictureWorker, OneThatWasKilledIsFollowedByAnother) {
  PictureWorker worker(settings());
  EXPECT_TRUE(worker.bitmap(picture(), {10, 10}));
  const int first = worker.processId();
  ASSERT_GT(first, 0);
  ::kill(first, SIGKILL);
  EXPECT_TRUE(ThreadedDispatch::waitUntil([&] { return worker.processId() == 0; }));
  EXPECT_TRUE(worker.bitmap(picture(), {10, 10}));
  EXPECT_NE(worker.processId(), first);
}

TEST(PictureWorker, OneThatHangsIsFollowedByAnother) {
  auto hasty = settings();
  hasty.pictureLimit = std::chrono::seconds(2);
  PictureWorker worker(hasty);
  // On a busy machine the start alone may take longer.
  ASSERT_LE(picturesUntilOneIsMade(worker, 4), 4);
  const int first = worker.processId();
  ::kill(first, SIGSTOP);
  EXPECT_EQ(worker.bitmap(picture(), {10, 10}), nullptr);
  EXPECT_TRUE(ThreadedDispatch::waitUntil([&] { return ::kill(first, 0) != 0; }));
}

TEST(PictureWorker, OneThatNobodyAsksGoesAndTheNextPictureIsMade) {
  auto brief = settings();
  brief.idleLimit = std::chrono::seconds(0);
  PictureWorker worker(brief);
  for (int i = 0; i < 5; ++i) {
    // It goes whenever it finds nothing to do, be it just as it is asked.
    EXPECT_LE(picturesUntilOneIsMade(worker, 4), 4);
    EXPECT_TRUE(ThreadedDispatch::waitUntil([&] { return worker.processId() == 0; }));
  }
}

// Whoever asks first may be a thread that is soon gone.
TEST(PictureWorker, OutlivesTheThreadThatAskedFirst) {
  PictureWorker worker(settings());
  int first = 0;
  std::thread([&] {
    EXPECT_TRUE(worker.bitmap(picture(), {10, 10}));
    first = worker.processId();
  }).join();
  EXPECT_TRUE(worker.bitmap(picture(), {10, 10}));
  EXPECT_EQ(worker.processId(), first);
}

}  // namespace
}  // namespace vantorel
