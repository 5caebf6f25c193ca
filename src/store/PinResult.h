// SPDX-License-Identifier: MIT
#pragma once

namespace vantorel {

enum class PinResult {
  toggled,
  limitReached,  // no more can be pinned; nothing changed
  notFound,      // nothing changed
};

}  // namespace vantorel
