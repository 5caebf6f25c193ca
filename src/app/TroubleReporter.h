// SPDX-License-Identifier: MIT
#pragma once

#include <functional>

#include "app/Trouble.h"
#include "platform/Notifications.h"

namespace vantorel {

/// Makes a trouble known where a user looks, once, and says when it is over. Main thread.
class TroubleReporter {
 public:
  /// `notifications` outlives this object.
  explicit TroubleReporter(Notifications& notifications) : notifications_(notifications) {}
  /// What it had shown goes with it.
  ~TroubleReporter();
  TroubleReporter(const TroubleReporter&) = delete;
  TroubleReporter& operator=(const TroubleReporter&) = delete;

  /// The notification's button was pressed.
  std::function<void()> onAction;
  /// There is another trouble, or none any more.
  std::function<void()> onChange;

  void report(Trouble trouble);
  [[nodiscard]] Trouble trouble() const { return trouble_; }

 private:
  Notifications& notifications_;
  Trouble trouble_ = Trouble::none;
};

}  // namespace vantorel
