// SPDX-License-Identifier: MIT
#include "platform/linux/start/TerminationSignals.h"

#include <gtest/gtest.h>
#include <sys/wait.h>
#include <unistd.h>

#include <chrono>
#include <condition_variable>
#include <mutex>

#include "fakes/ManualDispatch.h"

namespace vantorel {
namespace {

/// A main queue that tells when something has been put on it.
class AnnouncingDispatch : public ManualDispatch {
 public:
  void async(Work work) override {
    ManualDispatch::async(std::move(work));
    const std::lock_guard lock(mutex_);
    arrived_ = true;
    changed_.notify_all();
  }

  bool waitForWork() {
    std::unique_lock lock(mutex_);
    return changed_.wait_for(lock, std::chrono::seconds(20), [this] { return arrived_; });
  }

 private:
  std::mutex mutex_;
  std::condition_variable changed_;
  bool arrived_ = false;
};

/// What a signal does to this process as if it had been started so, while this lives.
class Disposition {
 public:
  Disposition(int signal, void (*handler)(int)) : signal_(signal) {
    struct sigaction action {};
    action.sa_handler = handler;
    sigaction(signal_, &action, &before_);
  }
  ~Disposition() { sigaction(signal_, &before_, nullptr); }
  Disposition(const Disposition&) = delete;
  Disposition& operator=(const Disposition&) = delete;

  [[nodiscard]] bool ignores() const {
    struct sigaction current {};
    sigaction(signal_, nullptr, &current);
    return current.sa_handler == SIG_IGN;
  }

 private:
  int signal_;
  struct sigaction before_ {};
};

/// Also where whoever runs the tests ignores hang-ups.
class TerminationSignalsTest : public testing::TestWithParam<int> {
 private:
  Disposition default_{GetParam(), SIG_DFL};
};

TEST_P(TerminationSignalsTest, CallTheHandlerOnTheMainQueue) {
  AnnouncingDispatch dispatch;
  int calls = 0;
  const TerminationSignals signals(dispatch, [&] { ++calls; });
  ASSERT_EQ(raise(GetParam()), 0);
  ASSERT_TRUE(dispatch.waitForWork());
  EXPECT_EQ(calls, 0);
  dispatch.runQueued();
  EXPECT_EQ(calls, 1);
}

TEST_P(TerminationSignalsTest, EndTheProcessWhenAskedTwice) {
  const int signal = GetParam();
  EXPECT_EXIT(
      {
        ManualDispatch dispatch;
        const TerminationSignals signals(dispatch, [] {});
        raise(signal);
        raise(signal);
        _exit(0);
      },
      testing::KilledBySignal(signal), "");
}

TEST_P(TerminationSignalsTest, AreRestoredAtTheEnd) {
  struct sigaction before {};
  sigaction(GetParam(), nullptr, &before);
  {
    ManualDispatch dispatch;
    const TerminationSignals signals(dispatch, [] {});
    struct sigaction during {};
    sigaction(GetParam(), nullptr, &during);
    EXPECT_NE(during.sa_handler, before.sa_handler);
  }
  struct sigaction after {};
  sigaction(GetParam(), nullptr, &after);
  EXPECT_EQ(after.sa_handler, before.sa_handler);
}

INSTANTIATE_TEST_SUITE_P(Each, TerminationSignalsTest, testing::Values(SIGTERM, SIGINT, SIGHUP));

TEST(TerminationSignals, AHangUpThatWasIgnoredAtTheStartStaysIgnored) {
  const Disposition ignored(SIGHUP, SIG_IGN);
  ManualDispatch dispatch;
  const TerminationSignals signals(dispatch, [] {});
  EXPECT_TRUE(ignored.ignores());
}

// A shell without job control starts what runs in its background with interrupts ignored.
TEST(TerminationSignals, AnInterruptIsHeardAlsoWhenTheProgramWasStartedInTheBackground) {
  for (const int signal : {SIGINT, SIGTERM}) {
    const Disposition ignored(signal, SIG_IGN);
    {
      AnnouncingDispatch dispatch;
      int calls = 0;
      const TerminationSignals signals(dispatch, [&] { ++calls; });
      ASSERT_EQ(raise(signal), 0);
      ASSERT_TRUE(dispatch.waitForWork());
      dispatch.runQueued();
      EXPECT_EQ(calls, 1);
    }
    EXPECT_TRUE(ignored.ignores());
  }
}

TEST(TerminationSignals, WritingToAClosedPipeIsNoSignal) {
  ManualDispatch dispatch;
  const TerminationSignals signals(dispatch, [] {});
  int ends[2];
  ASSERT_EQ(pipe(ends), 0);
  close(ends[0]);
  EXPECT_EQ(write(ends[1], "x", 1), -1);
  EXPECT_EQ(errno, EPIPE);
  close(ends[1]);
}

TEST(TerminationSignals, ALateCallFindsItsOwnerGone) {
  AnnouncingDispatch dispatch;
  int calls = 0;
  {
    const TerminationSignals signals(dispatch, [&] { ++calls; });
    raise(SIGTERM);
    ASSERT_TRUE(dispatch.waitForWork());
  }
  dispatch.runQueued();
  EXPECT_EQ(calls, 0);
}

}  // namespace
}  // namespace vantorel
