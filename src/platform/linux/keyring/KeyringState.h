// SPDX-License-Identifier: MIT
#pragma once

#include <chrono>

#include "platform/DesktopFacts.h"

namespace vantorel {

/// How the user's keyring stands. Asks for no password and changes nothing; waits for the service,
/// which the bus may have to start, at most so long: one that has not answered by then is absent.
[[nodiscard]] DesktopFacts::Keyring keyringState(std::chrono::seconds timeLimit);

}  // namespace vantorel
