// SPDX-License-Identifier: MIT
#pragma once

#include <filesystem>
#include <functional>

#include "platform/Bitmap.h"

namespace vantorel {

/// Small pictures of what is in a file, as the desktop makes them.
class FileThumbnails {
 public:
  using Completion = std::function<void(SharedBitmap)>;

  virtual ~FileThumbnails() = default;

  /// Finds or makes the best picture of the file within `size` points at `scale` pixels per point.
  /// Calls `completion` exactly once, later, on a thread of its own choosing: with a picture whose
  /// size in points is its size in pixels, or with null when there is none (an unknown type, a
  /// damaged or vanished file, a directory, a program that failed or took too long). What is not
  /// answered when this ends may stay unanswered; nothing is called after that. Never waits; main
  /// thread.
  virtual void generateBestRepresentation(const std::filesystem::path& file, Size size,
                                          double scale, Completion completion) = 0;
};

}  // namespace vantorel
