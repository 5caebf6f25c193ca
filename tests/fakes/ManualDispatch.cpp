// SPDX-License-Identifier: MIT
#include "fakes/ManualDispatch.h"

#include <algorithm>
#include <optional>
#include <system_error>
#include <utility>

namespace vantorel {

struct ManualDispatch::Entry {
  Date due{};
  Seconds interval{0};  // 0: once
  Work work;
  bool armed = true;
};

struct ManualDispatch::Queue {
  mutable std::mutex mutex;
  Date now{};
  std::deque<Work> work;
  std::vector<std::shared_ptr<Entry>> timers;
};

class ManualDispatch::ManualTimer : public Timer {
 public:
  explicit ManualTimer(std::shared_ptr<Entry> entry) : entry_(std::move(entry)) {}
  ~ManualTimer() override { entry_->armed = false; }
  void invalidate() override { entry_->armed = false; }

 private:
  std::shared_ptr<Entry> entry_;
};

class ManualDispatch::ManualSerialQueue : public SerialQueue {
 public:
  explicit ManualSerialQueue(std::shared_ptr<Queue> queue) : queue_(std::move(queue)) {}
  ~ManualSerialQueue() override { *alive_ = false; }
  void async(Work work) override {
    const std::lock_guard lock(queue_->mutex);
    queue_->work.emplace_back([alive = alive_, work = std::move(work)] {
      if (*alive) work();
    });
  }

 private:
  std::shared_ptr<Queue> queue_;
  std::shared_ptr<bool> alive_ = std::make_shared<bool>(true);
};

ManualDispatch::ManualDispatch() : queue_(std::make_shared<Queue>()) {
  using namespace std::chrono;
  queue_->now = sys_days(year(2025) / 3 / 14) + hours(9) + minutes(26) + seconds(53);
}

ManualDispatch::~ManualDispatch() = default;

Date ManualDispatch::now() const {
  const std::lock_guard lock(queue_->mutex);
  return queue_->now;
}

void ManualDispatch::async(Work work) {
  const std::lock_guard lock(queue_->mutex);
  queue_->work.push_back(std::move(work));
}

std::unique_ptr<Timer> ManualDispatch::after(Seconds delay, Work work) {
  auto entry = std::make_shared<Entry>();
  entry->work = std::move(work);
  const std::lock_guard lock(queue_->mutex);
  entry->due = advanced(queue_->now, delay);
  queue_->timers.push_back(entry);
  return std::make_unique<ManualTimer>(entry);
}

std::unique_ptr<Timer> ManualDispatch::every(Seconds interval, Work work) {
  auto entry = std::make_shared<Entry>();
  entry->work = std::move(work);
  entry->interval = interval;
  const std::lock_guard lock(queue_->mutex);
  entry->due = advanced(queue_->now, interval);
  queue_->timers.push_back(entry);
  return std::make_unique<ManualTimer>(entry);
}

void ManualDispatch::detach(Work work) { async(std::move(work)); }

std::unique_ptr<SerialQueue> ManualDispatch::serialQueue(const std::string& /*label*/) {
  if (refusesQueues_) {
    throw std::system_error(std::make_error_code(std::errc::resource_unavailable_try_again));
  }
  return std::make_unique<ManualSerialQueue>(queue_);
}

bool ManualDispatch::runOne() {
  Work work;
  {
    const std::lock_guard lock(queue_->mutex);
    if (queue_->work.empty()) return false;
    work = std::move(queue_->work.front());
    queue_->work.pop_front();
  }
  work();
  return true;
}

int ManualDispatch::runQueued() {
  int count = 0;
  while (runOne()) ++count;
  return count;
}

void ManualDispatch::advance(Seconds interval) {
  const Date end = advanced(now(), interval);
  runQueued();
  for (;;) {
    std::shared_ptr<Entry> next;
    {
      const std::lock_guard lock(queue_->mutex);
      std::erase_if(queue_->timers, [](const auto& entry) { return !entry->armed; });
      for (const auto& entry : queue_->timers) {
        if (entry->due <= end && (!next || entry->due < next->due)) next = entry;
      }
      if (!next) {
        queue_->now = std::max(queue_->now, end);
        break;
      }
      queue_->now = std::max(queue_->now, next->due);
      if (next->interval > Seconds(0)) {
        next->due = advanced(next->due, next->interval);
      } else {
        next->armed = false;
      }
    }
    next->work();
    runQueued();
  }
}

void ManualDispatch::setNow(Date now) {
  const std::lock_guard lock(queue_->mutex);
  for (const auto& timer : queue_->timers) timer->due += now - queue_->now;
  queue_->now = now;
}

std::size_t ManualDispatch::queuedCount() const {
  const std::lock_guard lock(queue_->mutex);
  return queue_->work.size();
}

std::size_t ManualDispatch::timerCount() const {
  const std::lock_guard lock(queue_->mutex);
  return static_cast<std::size_t>(std::count_if(queue_->timers.begin(), queue_->timers.end(),
                                                [](const auto& entry) { return entry->armed; }));
}

std::vector<Seconds> ManualDispatch::repeatingIntervals() const {
  const std::lock_guard lock(queue_->mutex);
  std::vector<Seconds> intervals;
  for (const auto& entry : queue_->timers) {
    if (entry->armed && entry->interval > Seconds(0)) intervals.push_back(entry->interval);
  }
  return intervals;
}

}  // namespace vantorel
