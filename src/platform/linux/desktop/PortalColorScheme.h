#pragma once

#include <condition_variable>
#include <cstdint>
#include <functional>
#include <memory>
#include <mutex>
#include <optional>

#include "base/Deadline.h"
#include "base/Lifetime.h"
#include "platform/Dispatch.h"

namespace vantorel {

class GlibThread;

/// Asks the desktop's portal, first thing in the program, which colours the user wants. Portals
/// look into the asking process to see who it is, and answer none that is closed to others; so this
/// is the one question that they answer. It is asked on a thread of its own and given up soon.
class PortalColorScheme {
 public:
  /// How long after the construction an answer is waited for. A portal that runs answers within a
  /// few milliseconds; the start waits for nobody longer.
  static constexpr std::chrono::milliseconds patience{50};

  /// `asked` is called on the thread as soon as there is an answer or will be none. `dispatch`
  /// outlives this. Main thread.
  PortalColorScheme(Dispatch& dispatch, std::function<void()> asked);
  ~PortalColorScheme();
  PortalColorScheme(const PortalColorScheme&) = delete;
  PortalColorScheme& operator=(const PortalColorScheme&) = delete;

  /// Returns when `asked` has been called, or when it is late. Any thread but the main one.
  void waitUntilAsked();

  /// Calls the handler with the answer, now or when it comes; never when there is none. Main
  /// thread; the handler goes through its owner's lifetime.
  void observe(std::function<void(std::uint32_t)> handler);

 private:
  [[nodiscard]] std::optional<std::uint32_t> ask();
  void answered(std::uint32_t scheme);

  const Deadline deadline_ = std::chrono::steady_clock::now() + patience;
  std::mutex mutex_;
  std::condition_variable changed_;
  bool asked_ = false;
  std::optional<std::uint32_t> answer_;  // on the main thread
  std::function<void(std::uint32_t)> handler_;
  Lifetime life_;
  std::unique_ptr<GlibThread> thread_;  // last: it ends before what it uses
};

}  // namespace vantorel
