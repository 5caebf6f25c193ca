// SPDX-License-Identifier: MIT
#include "platform/RestingTimer.h"

#include <gtest/gtest.h>

#include <functional>
#include <memory>
#include <utility>

#include "fakes/ManualDispatch.h"

namespace vantorel {
namespace {

/// Tells of changes, or does not, as the test has it.
class ScriptedAnnouncer : public Announcer {
 public:
  [[nodiscard]] bool announcesEveryChange() const override { return announces_; }
  void setAnnouncingHandler(std::function<void()> handler) override {
    handler_ = std::move(handler);
  }

  // The test's side.

  void announce(bool announces) {
    announces_ = announces;
    const auto handler = handler_;  // it may be replaced while it runs
    if (handler) handler();
  }
  [[nodiscard]] bool isHeard() const { return static_cast<bool>(handler_); }

 private:
  bool announces_ = false;
  std::function<void()> handler_;
};

class RestingTimerTest : public testing::Test {
 protected:
  std::unique_ptr<RestingTimer> timer() {
    return std::make_unique<RestingTimer>(dispatch_, announcer_, Seconds(1), [this] { ++looks_; });
  }

  ManualDispatch dispatch_;
  ScriptedAnnouncer announcer_;
  int looks_ = 0;
};

TEST_F(RestingTimerTest, LooksAgainAndAgainWhereNothingIsAnnounced) {
  const auto timer = this->timer();
  EXPECT_EQ(looks_, 0);
  dispatch_.advance(Seconds(3));
  EXPECT_EQ(looks_, 3);
}

TEST_F(RestingTimerTest, LooksOnceMoreAndRestsWhileChangesAreAnnounced) {
  const auto timer = this->timer();
  announcer_.announce(true);
  EXPECT_EQ(looks_, 1);
  EXPECT_EQ(dispatch_.timerCount(), 0U);
  announcer_.announce(false);
  dispatch_.advance(Seconds(1));
  EXPECT_EQ(looks_, 2);
}

TEST_F(RestingTimerTest, ThatIsToldTheSameTwiceKeepsItsTime) {
  const auto timer = this->timer();
  dispatch_.advance(Seconds(0.9));
  announcer_.announce(false);
  dispatch_.advance(Seconds(0.1));
  EXPECT_EQ(looks_, 1);
}

TEST_F(RestingTimerTest, MayBeEndedByWhatItDoes) {
  std::unique_ptr<RestingTimer> timer;
  timer = std::make_unique<RestingTimer>(dispatch_, announcer_, Seconds(1), [&] {
    ++looks_;
    timer.reset();
  });
  announcer_.announce(true);
  EXPECT_EQ(looks_, 1);
  EXPECT_FALSE(announcer_.isHeard());
}

TEST_F(RestingTimerTest, DoesNothingAnyMoreOnceItIsInvalid) {
  const auto timer = this->timer();
  timer->invalidate();
  EXPECT_EQ(dispatch_.timerCount(), 0U);
  EXPECT_FALSE(announcer_.isHeard());
  dispatch_.advance(Seconds(3));
  EXPECT_EQ(looks_, 0);
}

TEST_F(RestingTimerTest, ThatIsInvalidLeavesTheNextOneAlone) {
  auto first = timer();
  first->invalidate();
  const auto second = timer();
  first.reset();
  EXPECT_TRUE(announcer_.isHeard());
}

}  // namespace
}  // namespace vantorel
