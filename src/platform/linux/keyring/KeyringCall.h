// SPDX-License-Identifier: MIT
#pragma once

#include <condition_variable>
#include <mutex>
#include <optional>
#include <utility>

#include "platform/linux/glib/GlibThread.h"

namespace vantorel {

/// One answer on its way from the keyring's thread to the main thread, which waits for it until a
/// deadline, or does not wait, and then gives it up. Shared by both.
template <class Answer>
class KeyringCall {
 public:
  /// What the other side answered; absent when it had not by the deadline, after which no answer is
  /// taken any more. An answer is handed out once.
  [[nodiscard]] std::optional<Answer> wait(Deadline deadline) {
    std::unique_lock lock(mutex_);
    answered_.wait_until(lock, deadline, [this] { return answer_.has_value(); });
    givenUp_ = true;
    return std::exchange(answer_, std::nullopt);
  }

  /// The answer if it is there; none is taken any more.
  std::optional<Answer> giveUp() {
    const std::lock_guard lock(mutex_);
    givenUp_ = true;
    return std::exchange(answer_, std::nullopt);
  }

  [[nodiscard]] bool isAnswered() const {
    const std::lock_guard lock(mutex_);
    return answer_.has_value();
  }

  /// False when nobody wants the answer any more.
  bool deliver(Answer answer) {
    const std::lock_guard lock(mutex_);
    if (givenUp_) return false;
    answer_ = std::move(answer);
    answered_.notify_all();
    return true;
  }

 private:
  mutable std::mutex mutex_;
  std::condition_variable answered_;
  std::optional<Answer> answer_;
  bool givenUp_ = false;
};

}  // namespace vantorel
