// SPDX-License-Identifier: MIT
#pragma once

#include <chrono>
#include <functional>
#include <memory>
#include <string>

namespace vantorel {

class GlibThread;

/// Looks for a message bus that went away, on a thread of its own, until programs can connect again
/// or this object ends.
class BusReturn {
 public:
  static constexpr std::chrono::seconds interval{1};

  /// `back` is called once, on that thread.
  BusReturn(const std::string& address, std::function<void()> back);
  ~BusReturn();
  BusReturn(const BusReturn&) = delete;
  BusReturn& operator=(const BusReturn&) = delete;

 private:
  std::unique_ptr<GlibThread> thread_;
};

}  // namespace vantorel
