// SPDX-License-Identifier: MIT
#pragma once

#include <filesystem>
#include <functional>
#include <string>

#include "platform/Bitmap.h"

namespace vantorel {

/// The desktop's pictures of applications, files and kinds of files. Main thread. Pictures are
/// kept, so asking again costs little.
class Icons {
 public:
  using Completion = std::function<void(SharedBitmap)>;

  virtual ~Icons() = default;

  /// The icon of the application with that bundle identifier; null when no such application is
  /// installed or it has no icon. `completion` is called exactly once: at once when the answer is
  /// known, else later on the main queue, unless this has ended by then.
  virtual void applicationIcon(const std::string& bundleIdentifier, Completion completion) = 0;

  /// The icon of the file at that path, by its type; a plain document when nothing is known about
  /// it. Null only when the desktop has no icons. Called back like `applicationIcon`.
  virtual void fileIcon(const std::filesystem::path& file, Completion completion) = 0;

  /// The icon of files with that extension (without a dot, any case, may be empty), whether or not
  /// such a file exists. Null only when the desktop has no icons. Called back like
  /// `applicationIcon`.
  virtual void typeIcon(const std::string& extension, Completion completion) = 0;
};

}  // namespace vantorel
