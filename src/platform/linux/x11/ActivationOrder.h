#pragma once

#include <cstddef>
#include <cstdint>
#include <mutex>
#include <vector>

namespace vantorel {

/// Which windows were in front, the last first. Any thread.
class ActivationOrder {
 public:
  void note(std::uint32_t window);
  /// 0 for the window that was in front last; larger than every other for one that never was.
  [[nodiscard]] std::size_t rank(std::uint32_t window) const;

 private:
  mutable std::mutex mutex_;
  std::vector<std::uint32_t> windows_;  // the last first
};

}  // namespace vantorel
