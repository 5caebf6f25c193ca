// SPDX-License-Identifier: MIT
#include "platform/ProbeLanes.h"

#include <algorithm>
#include <deque>
#include <mutex>
#include <utility>
#include <vector>

namespace vantorel {

struct ProbeLanes::Lane {
  std::size_t question = 0;  // its number
  std::size_t seen = 0;      // the question it was at when it was looked at last
  bool overdue = false;
};

/// What the threads know of; they never reach for anything else.
struct ProbeLanes::Shared {
  std::mutex mutex;              // all below
  Dispatch* dispatch = nullptr;  // null once nobody wants answers
  std::deque<Question> questions;
  std::size_t begun = 0;
  std::vector<std::shared_ptr<Lane>> lanes;

  [[nodiscard]] bool allLanesAreOverdue() const {
    return std::all_of(lanes.begin(), lanes.end(), [](const auto& lane) { return lane->overdue; });
  }
};

ProbeLanes::ProbeLanes(Dispatch& dispatch)
    : dispatch_(dispatch), shared_(std::make_shared<Shared>()) {
  shared_->dispatch = &dispatch;
}

ProbeLanes::~ProbeLanes() {
  std::deque<Question> dropped;
  const std::lock_guard lock(shared_->mutex);
  shared_->dispatch = nullptr;
  dropped.swap(shared_->questions);
}

void ProbeLanes::ask(Question question) {
  bool nobodyIsAtIt = false;
  {
    const std::lock_guard lock(shared_->mutex);
    shared_->questions.push_back(std::move(question));
    nobodyIsAtIt = shared_->allLanesAreOverdue();
  }
  if (nobodyIsAtIt) startLanes(1);
  if (!timer_) timer_ = dispatch_.every(patience, [this] { lookAround(); });
}

void ProbeLanes::startLanes(std::size_t count) {
  for (; count > 0; --count) {
    auto lane = std::make_shared<Lane>();
    {
      const std::lock_guard lock(shared_->mutex);
      if (shared_->lanes.size() >= maxLanes) return;
      shared_->lanes.push_back(lane);
    }
    dispatch_.detach([shared = shared_, lane] { work(shared, lane); });
  }
}

/// Starts more lanes when every one is stuck: as many again, so that a whole directory of files
/// that do not answer is soon behind us.
void ProbeLanes::lookAround() {
  std::size_t missing = 0;
  {
    const std::lock_guard lock(shared_->mutex);
    if (shared_->questions.empty()) {
      timer_.reset();
      return;
    }
    for (const auto& lane : shared_->lanes) {
      lane->overdue = std::exchange(lane->seen, lane->question) == lane->question;
    }
    if (shared_->allLanesAreOverdue()) {
      missing =
          std::min(std::max<std::size_t>(shared_->lanes.size(), 1), shared_->questions.size());
    }
  }
  startLanes(missing);
}

void ProbeLanes::work(const std::shared_ptr<Shared>& shared, const std::shared_ptr<Lane>& lane) {
  std::unique_lock lock(shared->mutex);
  while (!shared->questions.empty()) {
    auto question = std::move(shared->questions.front());
    shared->questions.pop_front();
    lane->question = ++shared->begun;
    lane->overdue = false;
    lock.unlock();
    auto answer = question();
    question = nullptr;
    lock.lock();
    if (!answer || shared->dispatch == nullptr) continue;
    shared->dispatch->async([weak = std::weak_ptr(shared), answer = std::move(answer)] {
      const auto alive = weak.lock();
      // Set and read on the main thread only.
      if (alive && alive->dispatch != nullptr) answer();
    });
  }
  std::erase(shared->lanes, lane);
}

}  // namespace vantorel
