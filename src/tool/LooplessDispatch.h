// SPDX-License-Identifier: MIT
#pragma once

#include <chrono>
#include <memory>
#include <string>

#include "base/DetachedThread.h"
#include "platform/Dispatch.h"
#include "platform/posix/ThreadedQueue.h"

namespace vantorel {

/// Of a process that does one thing and ends: there is no main queue, so nothing is ever called
/// back, and no timer fires. Queues of their own work as everywhere.
class LooplessDispatch : public Dispatch {
 public:
  [[nodiscard]] Date now() const override {
    return std::chrono::time_point_cast<Date::duration>(std::chrono::system_clock::now());
  }
  void async(Work /*work*/) override {}
  [[nodiscard]] std::unique_ptr<Timer> after(Seconds /*delay*/, Work /*work*/) override {
    return nullptr;
  }
  [[nodiscard]] std::unique_ptr<Timer> every(Seconds /*interval*/, Work /*work*/) override {
    return nullptr;
  }
  void detach(Work work) override { (void)runDetached("detached", std::move(work)); }
  [[nodiscard]] std::unique_ptr<SerialQueue> serialQueue(const std::string& label) override {
    return std::make_unique<ThreadedQueue>(label);
  }
};

}  // namespace vantorel
