// SPDX-License-Identifier: MIT
#pragma once

#include "tool/ExportConsent.h"

namespace vantorel {

/// Asks on the terminal that this process was started from; empty when there is none.
[[nodiscard]] Ask terminalQuestions();

}  // namespace vantorel
