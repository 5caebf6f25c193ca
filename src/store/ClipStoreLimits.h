// SPDX-License-Identifier: MIT
#pragma once

#include <cstddef>
#include <cstdint>

#include "base/Date.h"
#include "platform/CaptureLimits.h"
#include "store/HistoryFile.h"

namespace vantorel {

struct ClipStoreLimits {
  std::size_t maxItems = 50;                  // pins included; pins themselves are never cut
  Seconds maxAge{604'800};                    // of unpinned entries
  std::uint64_t maxAssetBytes = 157'286'400;  // all image files together
  std::size_t maxSingleImageBytes = largestEncodedImage;
  std::uint64_t maxHistoryBytes = maximumHistoryBytes;  // of JSON; what is over is not saved
};

}  // namespace vantorel
