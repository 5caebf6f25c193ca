// SPDX-License-Identifier: MIT
#include "program/Timing.h"

#include <stdexcept>
#include <string>
#include <thread>

namespace vantorel::bench {

void failWaiting(std::string_view what) {
  throw std::runtime_error("waited in vain for " + std::string(what));
}

void restBetweenLooks() { std::this_thread::sleep_for(std::chrono::microseconds(500)); }

}  // namespace vantorel::bench
