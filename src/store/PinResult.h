#pragma once

namespace vantorel {

enum class PinResult {
  toggled,
  limitReached,  // five are pinned already; nothing changed
  notFound,      // nothing changed
};

}  // namespace vantorel
