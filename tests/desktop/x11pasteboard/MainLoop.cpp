// SPDX-License-Identifier: MIT
#include "desktop/x11pasteboard/MainLoop.h"

#include <thread>
#include <utility>

#include "base/DetachedThread.h"

namespace vantorel {

struct MainLoop::Entry {
  Work work;
  Seconds interval{0};  // 0: once
  bool armed = true;
};

class MainLoop::LoopTimer : public Timer {
 public:
  explicit LoopTimer(std::shared_ptr<Entry> entry) : entry_(std::move(entry)) {}
  ~LoopTimer() override { entry_->armed = false; }
  void invalidate() override { entry_->armed = false; }

 private:
  std::shared_ptr<Entry> entry_;
};

namespace {

class ThreadQueue : public SerialQueue {
 public:
  ThreadQueue() : thread_([this] { run(); }) {}
  ~ThreadQueue() override {
    {
      const std::lock_guard lock(mutex_);
      ending_ = true;
    }
    condition_.notify_one();
    thread_.join();
  }
  void async(Work work) override {
    {
      const std::lock_guard lock(mutex_);
      queue_.push_back(std::move(work));
    }
    condition_.notify_one();
  }

 private:
  void run() {
    std::unique_lock lock(mutex_);
    for (;;) {
      condition_.wait(lock, [this] { return ending_ || !queue_.empty(); });
      if (ending_) return;
      Work work = std::move(queue_.front());
      queue_.pop_front();
      lock.unlock();
      work();
      work = nullptr;
      lock.lock();
    }
  }

  std::mutex mutex_;
  std::condition_variable condition_;
  std::deque<Work> queue_;
  bool ending_ = false;
  std::thread thread_;
};

}  // namespace

Date MainLoop::now() const {
  return std::chrono::floor<Date::duration>(std::chrono::system_clock::now());
}

void MainLoop::async(Work work) {
  {
    const std::lock_guard lock(mutex_);
    queue_.push_back(std::move(work));
  }
  condition_.notify_one();
}

std::unique_ptr<Timer> MainLoop::after(Seconds delay, Work work) {
  return schedule(delay, Seconds(0), std::move(work));
}

std::unique_ptr<Timer> MainLoop::every(Seconds interval, Work work) {
  return schedule(interval, interval, std::move(work));
}

std::unique_ptr<Timer> MainLoop::schedule(Seconds delay, Seconds interval, Work work) {
  auto entry = std::make_shared<Entry>();
  entry->work = std::move(work);
  entry->interval = interval;
  timers_.emplace(Clock::now() + std::chrono::ceil<Clock::duration>(delay), entry);
  return std::make_unique<LoopTimer>(std::move(entry));
}

void MainLoop::detach(Work work) {
  // Without a thread it is as if the work never came back.
  static_cast<void>(runDetached("probe", std::move(work)));
}

std::unique_ptr<SerialQueue> MainLoop::serialQueue(const std::string& /*label*/) {
  return std::make_unique<ThreadQueue>();
}

bool MainLoop::runOne(Clock::time_point limit) {
  Work work;
  {
    std::unique_lock lock(mutex_);
    const auto due = timers_.empty() ? limit : std::min(limit, timers_.begin()->first);
    condition_.wait_until(lock, due, [this] { return !queue_.empty(); });
    if (!queue_.empty()) {
      work = std::move(queue_.front());
      queue_.pop_front();
    }
  }
  if (work) {
    work();
    return true;
  }
  if (timers_.empty() || timers_.begin()->first > Clock::now()) return false;
  const auto entry = timers_.begin()->second;
  timers_.erase(timers_.begin());
  if (!entry->armed) return true;
  if (entry->interval > Seconds(0)) {
    timers_.emplace(Clock::now() + std::chrono::ceil<Clock::duration>(entry->interval), entry);
  }
  entry->work();
  return true;
}

bool MainLoop::runUntil(const std::function<bool()>& condition, std::chrono::seconds limit) {
  const auto end = Clock::now() + limit;
  while (!condition()) {
    if (Clock::now() >= end) return false;
    runOne(end);
  }
  return true;
}

void MainLoop::runQueued() {
  while (runOne(Clock::now())) {
  }
}

}  // namespace vantorel
