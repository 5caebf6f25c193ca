// SPDX-License-Identifier: MIT
#include "platform/MainQueue.h"

#include <gtest/gtest.h>

#include <memory>
#include <string>
#include <thread>
#include <vector>

#include "base/Lifetime.h"
#include "fakes/ManualDispatch.h"

namespace vantorel {
namespace {

TEST(OnMainQueue, CallsLaterInTheOrderOfTheCalls) {
  ManualDispatch dispatch;
  std::vector<std::string> told;
  const auto tell = onMainQueue(dispatch, [&](const std::string& text, int number) {
    told.push_back(text + std::to_string(number));
  });
  tell(std::string("a"), 1);
  tell(std::string("b"), 2);
  EXPECT_TRUE(told.empty());
  dispatch.runQueued();
  EXPECT_EQ(told, (std::vector<std::string>{"a1", "b2"}));
}

TEST(OnMainQueue, CallsOnTheThreadThatRunsTheQueue) {
  ManualDispatch dispatch;
  std::thread::id calledOn;
  const auto tell = onMainQueue(dispatch, [&] { calledOn = std::this_thread::get_id(); });
  std::thread([tell] { tell(); }).join();
  dispatch.runQueued();
  EXPECT_EQ(calledOn, std::this_thread::get_id());
}

TEST(OnMainQueue, WhatWasQueuedForAnOwnerThatIsGoneIsNotCalled) {
  ManualDispatch dispatch;
  int calls = 0;
  auto life = std::make_unique<Lifetime>();
  const auto tell = onMainQueue(dispatch, life->guard([&] { ++calls; }));
  tell();
  dispatch.runQueued();
  EXPECT_EQ(calls, 1);
  tell();
  life.reset();
  dispatch.runQueued();
  EXPECT_EQ(calls, 1);
}

}  // namespace
}  // namespace vantorel
