// SPDX-License-Identifier: MIT
#include "panel/FileAvailability.h"

#include <gmock/gmock.h>

#include <atomic>
#include <fstream>
#include <map>
#include <memory>

#include "fakes/Gate.h"
#include "fakes/ManualDispatch.h"
#include "fakes/TemporaryDirectory.h"
#include "fakes/TestStore.h"
#include "fakes/ThreadedDispatch.h"
#include "platform/posix/PosixFileSystem.h"

namespace vantorel {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

/// Entries of files in a folder, some of which are not there.
class AvailabilityOnDisk : public testing::Test {
 protected:
  [[nodiscard]] std::string file(const char* name) const {
    const auto path = folder_.path() / name;
    std::ofstream(path) << "x";
    return path.string();
  }
  [[nodiscard]] std::string missing() const { return (folder_.path() / "missing").string(); }
  Availability of(const ClipItem& item) { return availability(item, disk_); }
  Availability of(std::vector<std::string> paths) { return of(filesItem(std::move(paths))); }

  TemporaryDirectory folder_;
  PosixFileSystem disk_;
};

TEST_F(AvailabilityOnDisk, TextAndImagesAreAlwaysThere) {
  EXPECT_EQ(of(textItem("Hello")), Availability::available);
  EXPECT_EQ(of(imageItem("gone.png", "hash")), Availability::available);
}

TEST_F(AvailabilityOnDisk, FilesAreThereWhenEveryOneIs) {
  const auto one = file("one");
  const auto two = file("two");
  auto none = filesItem({one});
  none.filePaths = {};
  EXPECT_EQ(of(none), Availability::available);
  EXPECT_EQ(of({one}), Availability::available);
  EXPECT_EQ(of({one, two}), Availability::available);
  EXPECT_EQ(of({one, missing()}), Availability::incomplete);
  EXPECT_EQ(of({missing(), one}), Availability::unavailable);
}

TEST_F(AvailabilityOnDisk, APathThatCannotExistIsNotThere) {
  EXPECT_EQ(of({std::string(100'000, 'x')}), Availability::unavailable);
  EXPECT_EQ(of({std::string("/tmp\0/x", 7)}), Availability::unavailable);
}

/// A disk that says what it is told to, and how often it was asked.
class FileAvailabilityTest : public testing::Test {
 protected:
  FileAvailabilityTest() {
    availability_.onAnswer = [this](Uuid id, Availability found) {
      answers_.emplace_back(id, found);
    };
  }

  ManualDispatch dispatch_;
  Availability disk_ = Availability::unavailable;
  int looks_ = 0;
  FileAvailability availability_{dispatch_, [this](const ClipItem&) {
                                   ++looks_;
                                   return disk_;
                                 }};
  std::vector<std::pair<Uuid, Availability>> answers_;
  ClipItem files_ = filesItem({"/somewhere/a.txt"});
};

TEST_F(FileAvailabilityTest, TakesFilesForThereUntilTheDiskAnswers) {
  EXPECT_EQ(availability_.of(files_), Availability::available);
  EXPECT_THAT(answers_, IsEmpty());
  dispatch_.runQueued();
  EXPECT_THAT(answers_, ElementsAre(std::pair(files_.id, Availability::unavailable)));
  EXPECT_EQ(availability_.of(files_), Availability::unavailable);
}

TEST_F(FileAvailabilityTest, LooksOnceUntilItIsToldToLookAfresh) {
  for (int i = 0; i < 3; ++i) static_cast<void>(availability_.of(files_));
  dispatch_.runQueued();
  static_cast<void>(availability_.of(files_));
  dispatch_.runQueued();
  EXPECT_EQ(looks_, 1);
  availability_.lookAfresh({files_});
  static_cast<void>(availability_.of(files_));
  dispatch_.runQueued();
  EXPECT_EQ(looks_, 2);
}

TEST_F(FileAvailabilityTest, AnswersWithWhatWasFoundLastWhileItLooksAfresh) {
  static_cast<void>(availability_.of(files_));
  dispatch_.runQueued();
  disk_ = Availability::available;
  availability_.lookAfresh({files_});
  EXPECT_EQ(availability_.of(files_), Availability::unavailable);
  dispatch_.runQueued();
  EXPECT_EQ(availability_.of(files_), Availability::available);
}

TEST_F(FileAvailabilityTest, KnowsWhetherTheDiskHasAnswered) {
  EXPECT_TRUE(availability_.isAnswered(textItem("a")));
  static_cast<void>(availability_.of(files_));
  EXPECT_FALSE(availability_.isAnswered(files_));
  dispatch_.runQueued();
  EXPECT_TRUE(availability_.isAnswered(files_));
  availability_.lookAfresh({files_});
  EXPECT_FALSE(availability_.isAnswered(files_));
}

TEST_F(FileAvailabilityTest, ForgetsEntriesThatAreGone) {
  static_cast<void>(availability_.of(files_));
  dispatch_.runQueued();
  availability_.lookAfresh({});
  EXPECT_EQ(availability_.of(files_), Availability::available);
}

TEST_F(FileAvailabilityTest, NeverLooksForTextsAndImages) {
  EXPECT_EQ(availability_.of(textItem("a")), Availability::available);
  EXPECT_EQ(availability_.of(imageItem("a.png", "hash")), Availability::available);
  dispatch_.runQueued();
  EXPECT_EQ(looks_, 0);
}

TEST(FileAvailabilityLifetime, AnAnswerAfterItsEndIsDropped) {
  ManualDispatch dispatch;
  int answers = 0;
  {
    FileAvailability availability(dispatch,
                                  [](const ClipItem&) { return Availability::unavailable; });
    availability.onAnswer = [&](Uuid, Availability) { ++answers; };
    static_cast<void>(availability.of(filesItem({"/a"})));
  }
  dispatch.runQueued();
  EXPECT_EQ(answers, 0);
}

/// A disk of which one file lies behind a network that does not answer.
class DeadNetwork : public testing::Test {
 protected:
  struct Disk {
    Gate gate;
    std::atomic<int> looksAtDeadFile = 0;
  };

  DeadNetwork() {
    availability_ =
        std::make_unique<FileAvailability>(dispatch_, [disk = disk_](const ClipItem& item) {
          if (item.filePaths.front() == "/dead/a.txt") {
            ++disk->looksAtDeadFile;
            disk->gate.pass();
          }
          return Availability::unavailable;
        });
    availability_->onAnswer = [this](Uuid id, Availability) { answers_.push_back(id); };
  }
  ~DeadNetwork() override {
    availability_.reset();
    disk_->gate.open();
    EXPECT_TRUE(disk_->gate.isPassedBy(disk_->looksAtDeadFile));
  }
  void show() {
    availability_->lookAfresh({dead_, healthy_});
    static_cast<void>(availability_->of(dead_));
    static_cast<void>(availability_->of(healthy_));
  }

  ThreadedDispatch dispatch_;
  std::shared_ptr<Disk> disk_ = std::make_shared<Disk>();
  std::unique_ptr<FileAvailability> availability_;
  std::vector<Uuid> answers_;
  ClipItem dead_ = filesItem({"/dead/a.txt"});
  ClipItem healthy_ = filesItem({"/alive/a.txt"});
};

TEST_F(DeadNetwork, OtherFilesAreAnswered) {
  show();
  ASSERT_TRUE(disk_->gate.isReachedBy(1));
  dispatch_.advance(Seconds(1));
  ASSERT_TRUE(dispatch_.runUntil([&] { return !answers_.empty(); }));
  EXPECT_THAT(answers_, ElementsAre(healthy_.id));
  EXPECT_FALSE(availability_->isAnswered(dead_));
}

TEST_F(DeadNetwork, NothingPilesUpWithEachShowing) {
  for (std::size_t showings = 1; showings <= 5; ++showings) {
    show();
    ASSERT_TRUE(disk_->gate.isReachedBy(1));
    dispatch_.advance(Seconds(1));
    ASSERT_TRUE(dispatch_.runUntil([&] { return answers_.size() == showings; }));
  }
  EXPECT_EQ(disk_->looksAtDeadFile, 1);
}

TEST_F(DeadNetwork, AFileThatAnswersAgainIsLookedAtOnceMore) {
  show();
  ASSERT_TRUE(disk_->gate.isReachedBy(1));
  show();
  show();
  disk_->gate.open();
  ASSERT_TRUE(dispatch_.runUntil([&] { return availability_->isAnswered(dead_); }));
  EXPECT_EQ(disk_->looksAtDeadFile, 2) << "the first look was an old one";
}

TEST_F(DeadNetwork, TheEndDoesNotWait) {
  show();
  ASSERT_TRUE(disk_->gate.isReachedBy(1));
  availability_.reset();  // would take longer than any test may
  disk_->gate.open();
  ASSERT_TRUE(disk_->gate.isPassedBy(1));
  dispatch_.runQueued();
  EXPECT_THAT(answers_, IsEmpty());
}

}  // namespace
}  // namespace vantorel
