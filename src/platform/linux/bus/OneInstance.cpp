// SPDX-License-Identifier: MIT
#include "platform/linux/bus/OneInstance.h"

#include <cstdio>
#include <utility>

#include "platform/ApplicationId.h"
#include "platform/linux/bus/ApplicationService.h"
#include "platform/linux/start/StartDecision.h"
#include "platform/linux/xdg/XdgDirectories.h"

namespace vantorel {
namespace {

std::optional<int> statusOf(const StartDecision& decision) {
  if (decision.course == StartDecision::Course::run) return std::nullopt;
  if (!decision.message.empty()) std::fprintf(stderr, "%s\n", decision.message.c_str());
  return decision.exitStatus;
}

}  // namespace

OneInstance::OneInstance(ActionRequest request) : request_(std::move(request)) {}

std::optional<int> OneInstance::endsBeforeToolkit() const {
  return statusOf(decideBeforeToolkit(forward(), request_.ifNobodyRuns));
}

std::optional<int> OneInstance::endsWithToolkit(ApplicationService& service) {
  return statusOf(decideWithToolkit({
      .forward = [this] { return forward(); },
      .claim = [&service] { return service.claim(); },
      .lock = [this] { return takeLocks(); },
  }));
}

/// The session's lock tells of an instance whose history stands nowhere yet, the history's own of
/// one that has another session.
InstanceLock::Result OneInstance::takeLocks() {
  using Result = InstanceLock::Result;
  const auto directories = XdgDirectories::fromEnvironment(processEnvironment);
  const auto path = instanceLockPath(directories);
  const Result session = path ? lock_.take(*path) : Result::unavailable;
  if (session == Result::heldByAnother || !directories.dataHome) return session;
  const Result history = historyLock_.take(*directories.dataHome / applicationId::historyDirectory);
  return history == Result::unavailable ? session : history;
}

ForwardResult OneInstance::forward() const {
  return forwardToRunningInstance(request_, processEnvironment);
}

}  // namespace vantorel
