// SPDX-License-Identifier: MIT
#pragma once

#include <condition_variable>
#include <deque>
#include <mutex>
#include <string>
#include <thread>

#include "platform/Dispatch.h"

namespace vantorel {

/// A serial queue on a thread of its own, which sleeps while there is nothing to do.
class ThreadedQueue : public SerialQueue {
 public:
  /// `label` names the thread for debuggers, up to 15 bytes of it: the last ones, since labels
  /// begin alike.
  explicit ThreadedQueue(const std::string& label);
  ~ThreadedQueue() override;
  ThreadedQueue(const ThreadedQueue&) = delete;
  ThreadedQueue& operator=(const ThreadedQueue&) = delete;

  void async(Work work) override;

 private:
  void run();

  std::mutex mutex_;
  std::condition_variable wake_;
  std::deque<Work> work_;  // guarded
  bool ending_ = false;    // guarded
  std::thread thread_;
};

}  // namespace vantorel
