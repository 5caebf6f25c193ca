// SPDX-License-Identifier: MIT
#include "base/Lifetime.h"

#include <gtest/gtest.h>

#include <memory>
#include <string>

namespace vantorel {
namespace {

TEST(Lifetime, AGuardedCallbackIsCalledWithWhatItIsGivenWhileItsOwnerLives) {
  const Lifetime life;
  const auto sum = life.guard([](int a, int b) { return a + b; });
  EXPECT_EQ(sum(1, 2), 3);
}

TEST(Lifetime, AfterItsEndNothingIsCalledAndTheAnswerIsEmpty) {
  auto life = std::make_unique<Lifetime>();
  int calls = 0;
  const auto tell = life->guard([&] { ++calls; });
  const auto answer = life->guard([&] {
    ++calls;
    return std::string("text");
  });
  life.reset();
  tell();
  EXPECT_EQ(answer(), "");
  EXPECT_EQ(calls, 0);
}

TEST(Lifetime, EndingTakesTheLifeOfWhatWasGuardedSoFarAlone) {
  Lifetime life;
  int calls = 0;
  const auto earlier = life.guard([&] { ++calls; });
  life.end();
  const auto later = life.guard([&] { calls += 10; });
  earlier();
  later();
  EXPECT_EQ(calls, 10);
}

}  // namespace
}  // namespace vantorel
