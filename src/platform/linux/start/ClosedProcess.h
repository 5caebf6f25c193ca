// SPDX-License-Identifier: MIT
#pragma once

namespace vantorel {

/// From now on this process leaves no core when it crashes, nor do those that it starts.
void leaveNoCore();

/// From now on no other process of the same user can read this one's memory or trace it, and no
/// service can look into its place in /proc to see who asks. Any thread, any number of times.
void closeProcess();

}  // namespace vantorel
