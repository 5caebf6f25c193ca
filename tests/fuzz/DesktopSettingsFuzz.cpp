// SPDX-License-Identifier: MIT
#include <cstdint>

#include "platform/linux/x11/XSettings.h"

/// What some window says the desktop's settings are.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  (void)vantorel::parseXSettings({reinterpret_cast<const std::byte*>(data), size});
  return 0;
}
