// SPDX-License-Identifier: MIT
#include "platform/linux/start/StartDecision.h"

#include <gtest/gtest.h>

#include <deque>

namespace vantorel {
namespace {

using Course = StartDecision::Course;

/// Answers one after the other; the last one again and again.
template <class Value>
class Script {
 public:
  Script(std::initializer_list<Value> values) : values_(values) {}
  Value next() {
    const Value value = values_.front();
    if (values_.size() > 1) values_.pop_front();
    return value;
  }

 private:
  std::deque<Value> values_;
};

struct Surroundings {
  Script<ForwardResult> forward{ForwardResult::notRunning};
  Script<NameClaim> claim{NameClaim::owned};
  InstanceLock::Result lock = InstanceLock::Result::taken;
  int forwarded = 0;
  int locked = 0;

  StartSteps steps() {
    return {.forward =
                [this] {
                  ++forwarded;
                  return forward.next();
                },
            .claim = [this] { return claim.next(); },
            .lock =
                [this] {
                  ++locked;
                  return lock;
                }};
  }
};

StartDecision before(ForwardResult answer, IfNobodyRuns ifNobodyRuns = IfNobodyRuns::start) {
  return decideBeforeToolkit(answer, ifNobodyRuns);
}
StartDecision with(Surroundings& s) { return decideWithToolkit(s.steps()); }

TEST(StartDecision, ASecondStartEndsBeforeTheToolkit) {
  const auto decision = before(ForwardResult::forwarded);
  EXPECT_EQ(decision.course, Course::exit);
  EXPECT_EQ(decision.exitStatus, 0);
  EXPECT_EQ(decision.message, "");
}

TEST(StartDecision, WithNobodyThereTheStartGoesOn) {
  for (const auto result : {ForwardResult::notRunning, ForwardResult::noBus}) {
    EXPECT_EQ(before(result).course, Course::run);
  }
}

TEST(StartDecision, QuittingNobodyIsDone) {
  const auto decision = before(ForwardResult::notRunning, IfNobodyRuns::end);
  EXPECT_EQ(decision.course, Course::exit);
  EXPECT_EQ(decision.exitStatus, 0);
}

TEST(StartDecision, QuittingWithoutABusFailsAndSaysSo) {
  const auto decision = before(ForwardResult::noBus, IfNobodyRuns::end);
  EXPECT_EQ(decision.course, Course::exit);
  EXPECT_EQ(decision.exitStatus, 1);
  EXPECT_NE(decision.message, "");
}

TEST(StartDecision, AStrangerWithOurNameIsReported) {
  const auto decision = before(ForwardResult::refused);
  EXPECT_EQ(decision.course, Course::exit);
  EXPECT_EQ(decision.exitStatus, 1);
  EXPECT_NE(decision.message, "");
}

TEST(StartDecision, TheOwnerOfTheNameRuns) {
  Surroundings s;
  EXPECT_EQ(with(s).course, Course::run);
  EXPECT_EQ(s.forwarded, 0);
  EXPECT_EQ(s.locked, 1);
}

TEST(StartDecision, TheLoserOfARaceForwards) {
  Surroundings s{.forward = {ForwardResult::forwarded}, .claim = {NameClaim::taken}};
  const auto decision = with(s);
  EXPECT_EQ(decision.course, Course::exit);
  EXPECT_EQ(decision.exitStatus, 0);
  EXPECT_EQ(s.forwarded, 1);
}

TEST(StartDecision, AWinnerThatIsGoneAgainLeavesItsPlace) {
  Surroundings s{.forward = {ForwardResult::notRunning},
                 .claim = {NameClaim::taken, NameClaim::owned}};
  EXPECT_EQ(with(s).course, Course::run);
}

TEST(StartDecision, EndlessChangeEndsWithAnError) {
  Surroundings s{.forward = {ForwardResult::notRunning}, .claim = {NameClaim::taken}};
  const auto decision = with(s);
  EXPECT_EQ(decision.course, Course::exit);
  EXPECT_EQ(decision.exitStatus, 1);
}

TEST(StartDecision, WithOrWithoutABusTheLockDecides) {
  for (const auto claim : {NameClaim::noBus, NameClaim::owned}) {
    Surroundings s{.claim = {claim}};
    EXPECT_EQ(with(s).course, Course::run);
    s.lock = InstanceLock::Result::heldByAnother;
    const auto decision = with(s);
    EXPECT_EQ(decision.course, Course::exit);
    EXPECT_EQ(decision.exitStatus, 1);
    EXPECT_NE(decision.message, "");
    s.lock = InstanceLock::Result::unavailable;
    EXPECT_EQ(with(s).course, Course::run);
  }
}

}  // namespace
}  // namespace vantorel
