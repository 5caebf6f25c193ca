// SPDX-License-Identifier: MIT
#pragma once

namespace vantorel {

/// How much of the processors a worker gets: what any program does, a small part in any case, or
/// what nobody else wants.
enum class Share { usual, small, leftOver };

}  // namespace vantorel
