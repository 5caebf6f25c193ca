// SPDX-License-Identifier: MIT
#pragma once

#include <memory>
#include <string>

#include "platform/Dispatch.h"

namespace vantorel {

/// The main queue and its timers on the toolkit's event loop, the system's clock, and serial
/// queues on threads of their own. Created and destroyed on the main thread; may be created before
/// the application object, and what is queued until then runs once its loop does. Work that has
/// not run when this is destroyed is dropped.
class QtDispatch : public Dispatch {
 public:
  QtDispatch();
  ~QtDispatch() override;
  QtDispatch(const QtDispatch&) = delete;
  QtDispatch& operator=(const QtDispatch&) = delete;

  [[nodiscard]] Date now() const override;
  void async(Work work) override;
  [[nodiscard]] std::unique_ptr<Timer> after(Seconds delay, Work work) override;
  [[nodiscard]] std::unique_ptr<Timer> every(Seconds interval, Work work) override;
  void detach(Work work) override;
  [[nodiscard]] std::unique_ptr<SerialQueue> serialQueue(const std::string& label) override;

 private:
  class MainQueue;
  std::unique_ptr<MainQueue> mainQueue_;
};

}  // namespace vantorel
