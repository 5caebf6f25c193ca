// SPDX-License-Identifier: MIT
#include "platform/linux/glib/BusReturn.h"

#include <utility>

#include "platform/linux/glib/BusConnection.h"
#include "platform/linux/glib/GlibThread.h"

namespace vantorel {
namespace {

using Clock = std::chrono::steady_clock;

constexpr std::chrono::seconds answerLimit{5};

bool answers(GlibThread& thread, const std::string& address) {
  const auto deadline = Clock::now() + answerLimit;
  const auto connection = openBusConnection(
      address, [&](const GlibLoop::Start& start) { return thread.await(deadline, start); });
  return connection != nullptr;
}

/// False when the thread is to end before the bus is back.
bool waitForBus(GlibThread& thread, const std::string& address) {
  while (!answers(thread, address)) {
    const auto next = Clock::now() + BusReturn::interval;
    thread.runUntil(next, [] { return false; });
    if (Clock::now() < next) return false;
  }
  return true;
}

}  // namespace

BusReturn::BusReturn(const std::string& address, std::function<void()> back)
    : thread_(std::make_unique<GlibThread>("bus return", [] {})) {
  thread_->post([thread = thread_.get(), address, back = std::move(back)] {
    if (waitForBus(*thread, address)) back();
  });
}

BusReturn::~BusReturn() = default;

}  // namespace vantorel
