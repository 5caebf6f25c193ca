// SPDX-License-Identifier: MIT
#include "app/TroubleReporter.h"

#include <gtest/gtest.h>

#include <array>
#include <set>
#include <string>

#include "fakes/FakeNotifications.h"

namespace vantorel {
namespace {

class TroubleReporterTest : public testing::Test {
 protected:
  TroubleReporterTest() { testing::internal::CaptureStderr(); }
  ~TroubleReporterTest() override {
    if (!read_) testing::internal::GetCapturedStderr();
  }

  std::string said() {
    read_ = true;
    return testing::internal::GetCapturedStderr();
  }

  FakeNotifications notifications_;
  TroubleReporter reporter_{notifications_};

 private:
  bool read_ = false;
};

TEST(Trouble, EachHasItsOwnWords) {
  std::set<std::string_view> toolTips;
  std::set<std::string_view> bodies;
  constexpr std::array troubles = {Trouble::noKey,          Trouble::keyMissing,
                                   Trouble::folderUnusable, Trouble::historyUnreadable,
                                   Trouble::notSaved,       Trouble::tooLarge};
  for (const auto trouble : troubles) {
    toolTips.insert(wordsOf(trouble).toolTip);
    bodies.insert(wordsOf(trouble).body);
    EXPECT_FALSE(wordsOf(trouble).line.empty());
    EXPECT_FALSE(wordsOf(trouble).title.empty());
  }
  EXPECT_EQ(toolTips.size(), troubles.size());
  EXPECT_EQ(bodies.size(), troubles.size());
}

TEST_F(TroubleReporterTest, SaysATroubleOnceHoweverOftenItIsReported) {
  int changes = 0;
  reporter_.onChange = [&] { ++changes; };
  reporter_.report(Trouble::notSaved);
  reporter_.report(Trouble::notSaved);
  EXPECT_EQ(notifications_.posts(), 1);
  EXPECT_EQ(changes, 1);
  EXPECT_EQ(said(), std::string(wordsOf(Trouble::notSaved).line) + "\n");
}

TEST_F(TroubleReporterTest, TakesTheMessageBackWhenItIsOver) {
  reporter_.report(Trouble::noKey);
  ASSERT_TRUE(notifications_.shown());
  reporter_.report(Trouble::none);
  EXPECT_FALSE(notifications_.shown());
  EXPECT_EQ(reporter_.trouble(), Trouble::none);
}

TEST_F(TroubleReporterTest, NothingIsSaidWhileThereIsNone) {
  reporter_.report(Trouble::none);
  EXPECT_EQ(notifications_.posts(), 0);
  EXPECT_EQ(said(), "");
}

TEST_F(TroubleReporterTest, TheButtonIsOfferedWhereThereIsARemedyAndDoesIt) {
  int pressed = 0;
  reporter_.onAction = [&] { ++pressed; };
  reporter_.report(Trouble::notSaved);
  EXPECT_EQ(notifications_.shown()->action, "");
  reporter_.report(Trouble::historyUnreadable);
  EXPECT_EQ(notifications_.shown()->action, "Begin a New History");
  notifications_.pressAction();
  EXPECT_EQ(pressed, 1);
}

TEST_F(TroubleReporterTest, ItsMessageGoesWithIt) {
  {
    TroubleReporter other(notifications_);
    other.report(Trouble::noKey);
  }
  EXPECT_FALSE(notifications_.shown());
}

}  // namespace
}  // namespace vantorel
