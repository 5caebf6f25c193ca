// SPDX-License-Identifier: MIT
#include "platform/linux/bus/BusSessionLock.h"

#include "platform/MainQueue.h"

namespace vantorel {

BusSessionLock::BusSessionLock(Dispatch& dispatch, SessionBus& bus)
    : savers_(bus, [this] { know(); }),
      login_(onMainQueue(dispatch, life_.guard([this](bool isHinted) {
        isHinted_ = isHinted;
        know();
      }))) {}

void BusSessionLock::know() {
  const bool isLocked = isHinted_ || savers_.isActive();
  if (std::exchange(isLocked_, isLocked) != isLocked) observers_.notify();
}

}  // namespace vantorel
