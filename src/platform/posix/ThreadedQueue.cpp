// SPDX-License-Identifier: MIT
#include "platform/posix/ThreadedQueue.h"

#include <pthread.h>

#include <utility>

namespace vantorel {

ThreadedQueue::ThreadedQueue(const std::string& label) : thread_([this] { run(); }) {
  constexpr std::size_t longestName = 15;
  const std::string name =
      label.size() > longestName ? label.substr(label.size() - longestName) : label;
  pthread_setname_np(thread_.native_handle(), name.c_str());
}

ThreadedQueue::~ThreadedQueue() {
  {
    const std::lock_guard lock(mutex_);
    ending_ = true;
    work_.clear();
  }
  wake_.notify_one();
  thread_.join();
}

void ThreadedQueue::async(Work work) {
  {
    const std::lock_guard lock(mutex_);
    if (ending_) return;
    work_.push_back(std::move(work));
  }
  wake_.notify_one();
}

void ThreadedQueue::run() {
  std::unique_lock lock(mutex_);
  for (;;) {
    wake_.wait(lock, [this] { return ending_ || !work_.empty(); });
    if (ending_) return;
    {
      const Work work = std::move(work_.front());
      work_.pop_front();
      lock.unlock();
      work();
    }
    lock.lock();
  }
}

}  // namespace vantorel
