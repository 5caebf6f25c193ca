// SPDX-License-Identifier: MIT
#pragma once

#include <chrono>

namespace vantorel {

/// The moment until which somebody waits, by the clock that is never set.
using Deadline = std::chrono::steady_clock::time_point;

}  // namespace vantorel
