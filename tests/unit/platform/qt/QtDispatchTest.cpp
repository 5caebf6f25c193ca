// SPDX-License-Identifier: MIT
#include "platform/qt/QtDispatch.h"

#include <gtest/gtest.h>

#include <QCoreApplication>
#include <QElapsedTimer>
#include <QEventLoop>
#include <QThread>
#include <algorithm>
#include <functional>
#include <future>
#include <thread>
#include <vector>

namespace vantorel {
namespace {

/// Lets the loop turn until the condition holds; the limit only bounds a failure.
bool turnsUntil(const std::function<bool()>& condition) {
  QElapsedTimer elapsed;
  elapsed.start();
  while (!condition()) {
    if (elapsed.hasExpired(20'000)) return false;
    QCoreApplication::processEvents(QEventLoop::AllEvents | QEventLoop::WaitForMoreEvents, 50);
  }
  return true;
}

TEST(MainQueue, RunsInOrderInALaterTurn) {
  QtDispatch dispatch;
  std::vector<int> ran;
  for (int i = 0; i < 100; ++i) dispatch.async([&ran, i] { ran.push_back(i); });
  EXPECT_TRUE(ran.empty());
  ASSERT_TRUE(turnsUntil([&] { return ran.size() == 100; }));
  for (int i = 0; i < 100; ++i) EXPECT_EQ(ran[static_cast<std::size_t>(i)], i);
}

TEST(MainQueue, RunsOnTheMainThreadWhoeverAsked) {
  QtDispatch dispatch;
  constexpr int each = 5000;
  int count = 0;
  bool onMain = true;
  std::vector<std::thread> threads;
  threads.reserve(3);
  for (int i = 0; i < 3; ++i) {
    threads.emplace_back([&] {
      for (int k = 0; k < each; ++k) {
        dispatch.async([&] {
          ++count;
          onMain = onMain && QThread::currentThread() == QCoreApplication::instance()->thread();
        });
      }
    });
  }
  EXPECT_TRUE(turnsUntil([&] { return count == 3 * each; }));
  for (auto& thread : threads) thread.join();
  EXPECT_TRUE(onMain);
}

TEST(MainQueue, LeavesWorkThatWorkQueuesToALaterTurn) {
  QtDispatch dispatch;
  std::vector<int> ran;
  dispatch.async([&] {
    dispatch.async([&] { ran.push_back(2); });
    ran.push_back(1);
  });
  QCoreApplication::sendPostedEvents();
  ASSERT_TRUE(turnsUntil([&] { return ran.size() == 2; }));
  EXPECT_EQ(ran, (std::vector{1, 2}));
}

TEST(MainQueue, DoesNotStarveTheLoopWithWorkThatRenewsItself) {
  QtDispatch dispatch;
  int runs = 0;
  std::function<void()> again = [&] {
    ++runs;
    dispatch.async(again);
  };
  dispatch.async(again);
  bool timerRan = false;
  const auto timer = dispatch.after(Seconds(0.001), [&] { timerRan = true; });
  EXPECT_TRUE(turnsUntil([&] { return timerRan; }));
  EXPECT_GT(runs, 0);
}

TEST(MainQueue, GoesOnWhileAMenuLetsTheLoopTurn) {
  QtDispatch dispatch;
  std::vector<int> ran;
  dispatch.async([&] {
    QEventLoop menu;
    dispatch.async([&] {
      ran.push_back(3);
      menu.quit();
    });
    menu.exec();
    ran.push_back(4);
  });
  dispatch.async([&] { ran.push_back(2); });
  ASSERT_TRUE(turnsUntil([&] { return ran.size() == 3; }));
  EXPECT_EQ(ran, (std::vector{2, 3, 4}));
}

TEST(MainQueue, DropsWorkWhenItGoes) {
  bool ran = false;
  {
    QtDispatch dispatch;
    dispatch.async([&] { ran = true; });
  }
  QtDispatch other;
  bool done = false;
  other.async([&] { done = true; });
  ASSERT_TRUE(turnsUntil([&] { return done; }));
  EXPECT_FALSE(ran);
}

TEST(QtTimers, RunOnceOrAgainAndAgain) {
  QtDispatch dispatch;
  int once = 0;
  int often = 0;
  const auto single = dispatch.after(Seconds(0.002), [&] { ++once; });
  const auto repeating = dispatch.every(Seconds(0.002), [&] { ++often; });
  ASSERT_TRUE(turnsUntil([&] { return often >= 5; }));
  EXPECT_EQ(once, 1);
}

TEST(QtTimers, NeverRunEarly) {
  QtDispatch dispatch;
  QElapsedTimer elapsed;
  elapsed.start();
  bool ran = false;
  const auto timer = dispatch.after(Seconds(0.05), [&] { ran = true; });
  ASSERT_TRUE(turnsUntil([&] { return ran; }));
  EXPECT_GE(elapsed.elapsed(), 50);
}

TEST(QtTimers, DoNotRunAfterBeingCancelledOrDropped) {
  QtDispatch dispatch;
  bool ran = false;
  const auto cancelled = dispatch.after(Seconds(0.001), [&] { ran = true; });
  cancelled->invalidate();
  auto dropped = dispatch.after(Seconds(0.001), [&] { ran = true; });
  dropped.reset();
  auto repeating = dispatch.every(Seconds(0.001), [&] { ran = true; });
  repeating.reset();
  bool done = false;
  const auto later = dispatch.after(Seconds(0.02), [&] { done = true; });
  ASSERT_TRUE(turnsUntil([&] { return done; }));
  EXPECT_FALSE(ran);
}

TEST(QtTimers, MayBeDroppedByTheirOwnWork) {
  QtDispatch dispatch;
  int runs = 0;
  std::unique_ptr<Timer> timer;
  timer = dispatch.every(Seconds(0.001), [&] {
    ++runs;
    timer.reset();
  });
  bool done = false;
  const auto later = dispatch.after(Seconds(0.02), [&] { done = true; });
  ASSERT_TRUE(turnsUntil([&] { return done; }));
  EXPECT_EQ(runs, 1);
}

TEST(QtSerialQueue, RunsInOrderOnAThreadOfItsOwn) {
  QtDispatch dispatch;
  const auto queue = dispatch.serialQueue("com.vantorel.test");
  std::promise<void> done;
  std::vector<int> ran;
  std::thread::id thread;
  for (int i = 0; i < 50; ++i) {
    queue->async([&, i] {
      ran.push_back(i);
      thread = std::this_thread::get_id();
    });
  }
  queue->async([&] { done.set_value(); });
  done.get_future().wait();
  EXPECT_EQ(ran.size(), 50U);
  EXPECT_TRUE(std::is_sorted(ran.begin(), ran.end()));
  EXPECT_NE(thread, std::this_thread::get_id());
}

TEST(QtSerialQueue, LetsTheRunningWorkEndAndDropsTheRest) {
  QtDispatch dispatch;
  std::promise<void> begun;
  std::promise<void> dropped;
  bool ended = false;
  bool secondRan = false;
  auto queue = dispatch.serialQueue("com.vantorel.test");
  queue->async([&] {
    begun.set_value();
    dropped.get_future().wait();
    ended = true;
  });
  // The first piece goes on only once the second is gone without having run.
  queue->async([&secondRan, gone = std::shared_ptr<void>(nullptr, [&](void*) {
                              dropped.set_value();
                            })] { secondRan = true; });
  begun.get_future().wait();
  queue.reset();
  EXPECT_TRUE(ended);
  EXPECT_FALSE(secondRan);
}

TEST(QtClock, IsTheWallClock) {
  const QtDispatch dispatch;
  const auto before = std::chrono::system_clock::now();
  const auto now = dispatch.now();
  EXPECT_GE(now + std::chrono::milliseconds(1), before);
  EXPECT_LE(now, std::chrono::system_clock::now());
}

}  // namespace
}  // namespace vantorel
