// SPDX-License-Identifier: MIT
#pragma once

#include <cstddef>
#include <cstdint>
#include <mutex>
#include <optional>
#include <string>

#include "base/Lru.h"
#include "platform/Bitmap.h"

namespace vantorel {

/// A bounded number of pictures by name, those used last. That there is no picture of a name is
/// kept too, as null. Any thread.
class KeptIcons {
 public:
  explicit KeptIcons(std::size_t maxCount) : maxCount_(maxCount) {}

  /// Absent when nothing is known about the name.
  [[nodiscard]] std::optional<SharedBitmap> find(const std::string& name);

  /// A number that `clear()` changes. What was looked for before that is not to be kept after it.
  [[nodiscard]] std::uint64_t generation() const;
  /// Does nothing when the generation is another one by now.
  void keep(const std::string& name, SharedBitmap picture, std::uint64_t generation);
  void clear();

 private:
  const std::size_t maxCount_;
  mutable std::mutex mutex_;  // all below
  Lru<std::string, SharedBitmap> pictures_;
  std::uint64_t generation_ = 0;
};

}  // namespace vantorel
