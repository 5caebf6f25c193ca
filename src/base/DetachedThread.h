// SPDX-License-Identifier: MIT
#pragma once

#include <functional>

namespace vantorel {

/// Runs `work` on a thread of that name (15 bytes at most) that nobody waits for. `work` owns or
/// shares all that it touches. False when the system has no thread to give: then it does not run.
[[nodiscard]] bool runDetached(const char* name, std::function<void()> work);

}  // namespace vantorel
