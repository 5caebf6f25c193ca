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

class TerminationSignalsTest : public testing::TestWithParam<int> {};

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

/// Ignores a signal while it lives, as a process that was started with it ignored does.
class Ignored {
 public:
  explicit Ignored(int signal) : signal_(signal) {
    struct sigaction ignore {};
    ignore.sa_handler = SIG_IGN;
    sigaction(signal_, &ignore, &before_);
  }
  ~Ignored() { sigaction(signal_, &before_, nullptr); }
  Ignored(const Ignored&) = delete;
  Ignored& operator=(const Ignored&) = delete;

  [[nodiscard]] bool still() const {
    struct sigaction current {};
    sigaction(signal_, nullptr, &current);
    return current.sa_handler == SIG_IGN;
  }

 private:
  int signal_;
  struct sigaction before_ {};
};

TEST(TerminationSignals, AHangUpThatWasIgnoredAtTheStartStaysIgnored) {
  const Ignored ignored(SIGHUP);
  ManualDispatch dispatch;
  const TerminationSignals signals(dispatch, [] {});
  EXPECT_TRUE(ignored.still());
}

// A shell without job control starts what runs in its background with interrupts ignored.
TEST(TerminationSignals, AnInterruptIsHeardAlsoWhenTheProgramWasStartedInTheBackground) {
  for (const int signal : {SIGINT, SIGTERM}) {
    const Ignored ignored(signal);
    {
      AnnouncingDispatch dispatch;
      int calls = 0;
      const TerminationSignals signals(dispatch, [&] { ++calls; });
      ASSERT_EQ(raise(signal), 0);
      ASSERT_TRUE(dispatch.waitForWork());
      dispatch.runQueued();
      EXPECT_EQ(calls, 1);
    }
    EXPECT_TRUE(ignored.still());
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
