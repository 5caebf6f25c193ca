// SPDX-License-Identifier: MIT
#include "platform/posix/ThreadedQueue.h"

#include <gtest/gtest.h>
#include <pthread.h>

#include <algorithm>
#include <array>
#include <atomic>
#include <memory>
#include <set>
#include <string>
#include <thread>
#include <vector>

#include "fakes/Gate.h"
#include "fakes/ThreadedDispatch.h"

namespace vantorel {
namespace {

TEST(ThreadedQueue, RunsInTheOrderGivenOnOneThreadOfItsOwn) {
  std::vector<int> ran;
  std::set<std::thread::id> threads;
  std::atomic<bool> done = false;
  ThreadedQueue queue("label");
  for (int i = 0; i < 50; ++i) {
    queue.async([&, i] {
      ran.push_back(i);
      threads.insert(std::this_thread::get_id());
      done = i == 49;
    });
  }
  ASSERT_TRUE(ThreadedDispatch::waitUntil([&] { return done.load(); }));
  EXPECT_TRUE(std::is_sorted(ran.begin(), ran.end()));
  EXPECT_EQ(ran.size(), 50U);
  EXPECT_EQ(threads.size(), 1U);
  EXPECT_FALSE(threads.contains(std::this_thread::get_id()));
}

TEST(ThreadedQueue, ItsEndLetsTheRunningWorkEndAndDropsTheRest) {
  Gate gate;
  bool ended = false;
  bool begun = false;
  auto queue = std::make_unique<ThreadedQueue>("label");
  queue->async([&] {
    gate.pass();
    ended = true;
  });
  ASSERT_TRUE(gate.isReachedBy(1));
  // What is dropped opens the gate, so that nothing but dropping it lets the first one go on.
  queue->async([&, dropped = std::shared_ptr<Gate>(&gate, [](Gate* each) { each->open(); })] {
    begun = true;
  });
  queue.reset();
  EXPECT_TRUE(ended);
  EXPECT_FALSE(begun);
}

TEST(ThreadedQueue, ItsThreadHasTheEndOfTheLabelForAName) {
  const auto nameOf = [](const char* label) {
    std::array<char, 16> name{};
    std::atomic<bool> done = false;
    ThreadedQueue queue(label);
    queue.async([&] {
      ::pthread_getname_np(::pthread_self(), name.data(), name.size());
      done = true;
    });
    EXPECT_TRUE(ThreadedDispatch::waitUntil([&] { return done.load(); }));
    return std::string(name.data());
  };
  EXPECT_EQ(nameOf("short"), "short");
  EXPECT_EQ(nameOf("com.example.a-long-label"), "le.a-long-label");
}

}  // namespace
}  // namespace vantorel
