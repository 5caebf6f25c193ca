// SPDX-License-Identifier: MIT
#pragma once

#include <condition_variable>
#include <cstdint>
#include <functional>
#include <memory>
#include <mutex>
#include <optional>
#include <string>

#include "base/Deadline.h"
#include "base/Lifetime.h"
#include "platform/Dispatch.h"

namespace vantorel {

class GlibThread;

/// Asks the desktop's portal, first thing in the program, which colours the user wants, and where
/// no X server tells the other settings, what those are. Portals look into the asking process to
/// see who it is, and answer none that is closed to others; so these are the only questions that
/// they answer. They are asked on a thread of its own and given up soon.
class PortalColorScheme {
 public:
  /// How long after the construction an answer is waited for. A portal that runs answers within a
  /// few milliseconds; the start waits for nobody longer.
  static constexpr std::chrono::milliseconds patience{50};

  enum class Questions { colors, allSettings };
  /// As far as the portal answered.
  struct OtherSettings {
    std::optional<std::uint32_t> contrast;
    std::optional<bool> animations;
    std::optional<std::string> theme;
    std::optional<std::string> iconTheme;
  };

  /// `asked` is called on the thread as soon as there is an answer or will be none. `dispatch`
  /// outlives this. Main thread.
  PortalColorScheme(Dispatch& dispatch, Questions questions, std::function<void()> asked);
  ~PortalColorScheme();
  PortalColorScheme(const PortalColorScheme&) = delete;
  PortalColorScheme& operator=(const PortalColorScheme&) = delete;

  /// Returns when `asked` has been called, or when it is late. Any thread but the main one.
  void waitUntilAsked();

  /// Calls the handler with the answer, now or when it comes; never when there is none. Main
  /// thread; the handler goes through its owner's lifetime.
  void observe(std::function<void(std::uint32_t)> handler);
  /// The same for the other settings, if they were asked for.
  void observeOthers(std::function<void(const OtherSettings&)> handler);

 private:
  struct Answers {
    std::optional<std::uint32_t> scheme;
    OtherSettings others;
  };

  [[nodiscard]] Answers ask(Questions questions);
  void answered(const Answers& answers);

  const Deadline deadline_ = std::chrono::steady_clock::now() + patience;
  std::mutex mutex_;
  std::condition_variable changed_;
  bool asked_ = false;
  std::optional<Answers> answers_;  // on the main thread, as the handlers are
  std::function<void(std::uint32_t)> handler_;
  std::function<void(const OtherSettings&)> othersHandler_;
  Lifetime life_;
  std::unique_ptr<GlibThread> thread_;  // last: it ends before what it uses
};

}  // namespace vantorel
