// SPDX-License-Identifier: MIT
#pragma once

#include <cstdint>

namespace vantorel {

/// What the window system calls a window of this program.
using WindowNumber = std::uint64_t;

}  // namespace vantorel
