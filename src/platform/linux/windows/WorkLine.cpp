// SPDX-License-Identifier: MIT
#include "platform/linux/windows/WorkLine.h"

#include <sys/eventfd.h>
#include <unistd.h>

#include <algorithm>
#include <climits>
#include <future>
#include <memory>
#include <utility>

namespace vantorel {

WorkLine::WorkLine() : wakeUp_(eventfd(0, EFD_CLOEXEC | EFD_NONBLOCK)) {}

bool WorkLine::post(Work work) {
  {
    const std::lock_guard lock(mutex_);
    if (state_ == State::stopping) return false;
    posted_.push_back(std::move(work));
    if (posted_.size() > 1) return true;  // woken already
  }
  wake();
  return true;
}

bool WorkLine::runAndWait(const Work& work) {
  bool ran = false;
  auto promise = std::make_shared<std::promise<void>>();
  const auto settled = promise->get_future();
  post([&, promise = std::move(promise)] {
    work();
    ran = true;
    promise->set_value();
  });
  // Ends too when the work is dropped unrun, and the promise with it.
  settled.wait();
  return ran;
}

void WorkLine::stop() {
  std::vector<Work> dropped;
  {
    const std::lock_guard lock(mutex_);
    state_ = State::stopping;
    dropped.swap(posted_);
  }
  wake();
}

WorkLine::TimerId WorkLine::after(Clock::duration delay, Work work) {
  const TimerId id = ++lastTimer_;
  timers_.emplace(Clock::now() + delay, PendingTimer{id, std::move(work)});
  return id;
}

void WorkLine::cancel(TimerId timer) {
  const auto found = std::find_if(timers_.begin(), timers_.end(),
                                  [timer](const auto& entry) { return entry.second.id == timer; });
  if (found != timers_.end()) timers_.erase(found);
}

bool WorkLine::run() {
  runPosted();
  {
    const std::lock_guard lock(mutex_);
    if (state_ == State::stopping) return false;
  }
  runDueTimers();
  return true;
}

void WorkLine::runPosted() {
  std::vector<Work> batch;
  {
    const std::lock_guard lock(mutex_);
    batch.swap(posted_);
  }
  for (auto& work : batch) {
    work();
    work = nullptr;
  }
}

void WorkLine::runDueTimers() {
  const auto now = Clock::now();
  while (!timers_.empty() && timers_.begin()->first <= now) {
    const Work work = std::move(timers_.begin()->second.work);
    timers_.erase(timers_.begin());
    work();
  }
}

int WorkLine::sleepMilliseconds() const {
  if (timers_.empty()) return -1;
  const auto left = timers_.begin()->first - Clock::now();
  const auto rounded = std::chrono::ceil<std::chrono::milliseconds>(left).count();
  return static_cast<int>(std::clamp<std::int64_t>(rounded, 0, INT_MAX));
}

void WorkLine::wokenUp() const {
  std::uint64_t count = 0;
  // Empties the counter; there is nothing to do about a counter that was empty.
  if (read(wakeUp_.get(), &count, sizeof count) < 0) return;
}

void WorkLine::wake() const {
  const std::uint64_t one = 1;
  // Fails only when the counter is full, and then the thread is awake.
  if (write(wakeUp_.get(), &one, sizeof one) < 0) return;
}

}  // namespace vantorel
