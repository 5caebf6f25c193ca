// SPDX-License-Identifier: MIT
#pragma once

#include <optional>

#include "platform/ActionRequest.h"
#include "platform/linux/start/HistoryLock.h"
#include "platform/linux/start/InstanceLock.h"
#include "platform/linux/start/RunningInstance.h"

namespace vantorel {

class ApplicationService;

/// Sees to it that one instance of the program serves a session: a start becomes that one, or hands
/// its request to the one that runs. Lives as long as the instance. Main thread.
///
/// Both questions answer the exit status of a start that ends there, and have said on stderr what
/// its user should know; absent when it goes on.
class OneInstance {
 public:
  explicit OneInstance(ActionRequest request);

  /// Before the toolkit is made ready, since most second starts end here, quickly.
  [[nodiscard]] std::optional<int> endsBeforeToolkit() const;
  /// Once there is an application object and with it `service`.
  [[nodiscard]] std::optional<int> endsWithToolkit(ApplicationService& service);

  /// What keeps the history this instance's own; lives as long as this.
  [[nodiscard]] HistoryLock& historyLock() { return historyLock_; }

 private:
  [[nodiscard]] ForwardResult forward() const;
  [[nodiscard]] InstanceLock::Result takeLocks();

  const ActionRequest request_;
  InstanceLock lock_;
  HistoryLock historyLock_;
};

}  // namespace vantorel
