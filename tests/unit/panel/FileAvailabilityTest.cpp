#include "panel/FileAvailability.h"

#include <gmock/gmock.h>

#include <map>

#include "fakes/ManualDispatch.h"
#include "fakes/TestStore.h"

namespace vantorel {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

/// A disk that says what it is told to, and how often it was asked.
class FileAvailabilityTest : public testing::Test {
 protected:
  FileAvailabilityTest() {
    availability_.onAnswer = [this](const Uuid& id, Availability found) {
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
    availability.onAnswer = [&](const Uuid&, Availability) { ++answers; };
    static_cast<void>(availability.of(filesItem({"/a"})));
  }
  dispatch.runQueued();
  EXPECT_EQ(answers, 0);
}

}  // namespace
}  // namespace vantorel
