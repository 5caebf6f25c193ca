// SPDX-License-Identifier: MIT
#include "platform/ProbeLanes.h"

#include <gmock/gmock.h>

#include <atomic>
#include <numeric>
#include <thread>
#include <vector>

#include "fakes/Gate.h"
#include "fakes/ThreadedDispatch.h"

namespace vantorel {
namespace {

using testing::ElementsAre;
using testing::ElementsAreArray;
using testing::IsEmpty;

class ProbeLanesTest : public testing::Test {
 protected:
  ~ProbeLanesTest() override {
    lanes_.reset();
    gate_->open();
    EXPECT_TRUE(gate_->isPassedBy(stuck_));
  }
  void askStuck() {
    ++stuck_;
    lanes_->ask([this, gate = gate_]() -> Work {
      gate->pass();
      return [this] { answers_.push_back(-1); };
    });
  }
  void ask(int number) {
    lanes_->ask(
        [this, number]() -> Work { return [this, number] { answers_.push_back(number); }; });
  }
  [[nodiscard]] bool areAnswered(std::size_t count) {
    return dispatch_.runUntil([&] { return answers_.size() == count; });
  }
  /// Twice, as a question is overdue when it is seen at the second look.
  void losePatience() { dispatch_.advance(ProbeLanes::patience * 2); }

  ThreadedDispatch dispatch_;
  std::shared_ptr<Gate> gate_ = std::make_shared<Gate>();
  int stuck_ = 0;
  std::vector<int> answers_;
  std::unique_ptr<ProbeLanes> lanes_ = std::make_unique<ProbeLanes>(dispatch_);
};

TEST_F(ProbeLanesTest, AnswersInTheOrderAskedFromOneThread) {
  std::vector<int> numbers(50);
  std::iota(numbers.begin(), numbers.end(), 0);
  lanes_->ask([gate = gate_]() -> Work {
    gate->pass();
    return {};
  });
  ++stuck_;
  for (const int number : numbers) ask(number);
  gate_->open();
  ASSERT_TRUE(areAnswered(numbers.size()));
  EXPECT_THAT(answers_, ElementsAreArray(numbers));
  EXPECT_EQ(dispatch_.detachedCount(), 1);
}

TEST_F(ProbeLanesTest, AnswersOnTheMainQueue) {
  std::thread::id asked;
  std::thread::id answered;
  lanes_->ask([&]() -> Work {
    asked = std::this_thread::get_id();
    return [&] { answered = std::this_thread::get_id(); };
  });
  ASSERT_TRUE(dispatch_.runUntil([&] { return answered != std::thread::id(); }));
  EXPECT_EQ(answered, std::this_thread::get_id());
  EXPECT_NE(asked, answered);
}

TEST_F(ProbeLanesTest, AQuestionWithoutAnswerHoldsTheOthersUpForAMomentOnly) {
  askStuck();
  ASSERT_TRUE(gate_->isReachedBy(1));
  for (int i = 0; i < 5; ++i) ask(i);
  losePatience();
  ASSERT_TRUE(areAnswered(5));
  EXPECT_THAT(answers_, ElementsAre(0, 1, 2, 3, 4));
}

TEST_F(ProbeLanesTest, WhileOneIsStuckNewQuestionsNeedNotWait) {
  askStuck();
  ASSERT_TRUE(gate_->isReachedBy(1));
  ask(1);
  losePatience();
  ASSERT_TRUE(areAnswered(1));
  dispatch_.advance(Seconds(10));
  ask(2);
  ASSERT_TRUE(areAnswered(2)) << "and no time had to pass";
}

TEST_F(ProbeLanesTest, AThreadThatCameBackIsNotTakenForStuck) {
  const auto askAt = [&](const std::shared_ptr<Gate>& gate) {
    lanes_->ask([gate]() -> Work {
      gate->pass();
      return {};
    });
  };
  const auto first = std::make_shared<Gate>();
  const auto second = std::make_shared<Gate>();
  askAt(first);
  askAt(second);
  askStuck();
  ASSERT_TRUE(first->isReachedBy(1));
  losePatience();
  ASSERT_TRUE(second->isReachedBy(1)) << "by another thread";
  first->open();
  ASSERT_TRUE(gate_->isReachedBy(1)) << "by the first, which has come back";
  second->open();
  ASSERT_TRUE(ThreadedDispatch::waitUntil([&] { return dispatch_.endedCount() == 1; }));
  ask(1);
  EXPECT_EQ(dispatch_.detachedCount(), 2) << "the one left has not used up its time";
  losePatience();
  ASSERT_TRUE(areAnswered(1));
}

TEST_F(ProbeLanesTest, ManyWithoutAnswerAreSoonBehindIt) {
  for (int i = 0; i < 50; ++i) askStuck();
  ask(1);
  for (int looks = 1; looks <= 8; ++looks) {
    dispatch_.advance(ProbeLanes::patience * 2);
    // Whoever has started has to have come as far as the gate before time goes on.
    ASSERT_TRUE(gate_->isReachedBy(std::min(dispatch_.detachedCount(), 50)));
  }
  ASSERT_TRUE(areAnswered(1));
}

TEST_F(ProbeLanesTest, TheNumberOfThreadsIsBounded) {
  const auto most = static_cast<int>(ProbeLanes::maxLanes);
  for (int i = 0; i < most; ++i) askStuck();
  for (int i = 0; i < 10; ++i) ask(i);
  for (int looks = 0; looks < 20; ++looks) {
    dispatch_.advance(ProbeLanes::patience * 2);
    ASSERT_TRUE(gate_->isReachedBy(std::min(dispatch_.detachedCount(), most)));
  }
  EXPECT_EQ(dispatch_.detachedCount(), most);
  EXPECT_THAT(answers_, IsEmpty());
  gate_->open();
  EXPECT_TRUE(areAnswered(static_cast<std::size_t>(most) + 10)) << "whoever comes back goes on";
}

TEST_F(ProbeLanesTest, ALateAnswerCounts) {
  askStuck();
  ASSERT_TRUE(gate_->isReachedBy(1));
  dispatch_.advance(Seconds(60));
  gate_->open();
  ASSERT_TRUE(areAnswered(1));
}

TEST_F(ProbeLanesTest, ItsEndWaitsForNobodyAndDropsWhatIsLeft) {
  std::atomic<bool> asked = false;
  askStuck();
  ASSERT_TRUE(gate_->isReachedBy(1));
  lanes_->ask([&]() -> Work {
    asked = true;
    return {};
  });
  lanes_.reset();  // a stuck question would hold it up for longer than any test may take
  gate_->open();
  ASSERT_TRUE(gate_->isPassedBy(1));
  dispatch_.advance(Seconds(1));
  EXPECT_FALSE(asked);
  EXPECT_THAT(answers_, IsEmpty());
  EXPECT_EQ(dispatch_.timerCount(), 0U);
}

TEST_F(ProbeLanesTest, AnAnswerThatIsUnderWayAtItsEndIsDropped) {
  ask(1);
  ASSERT_TRUE(ThreadedDispatch::waitUntil([&] { return dispatch_.queuedCount() == 1; }));
  lanes_.reset();
  dispatch_.runQueued();
  EXPECT_THAT(answers_, IsEmpty());
}

TEST_F(ProbeLanesTest, NoTimerRunsWhileNothingIsAsked) {
  ask(1);
  ASSERT_TRUE(areAnswered(1));
  losePatience();
  EXPECT_EQ(dispatch_.timerCount(), 0U);
}

}  // namespace
}  // namespace vantorel
