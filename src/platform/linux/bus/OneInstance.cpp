#include "platform/linux/bus/OneInstance.h"

#include <cstdio>
#include <utility>

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
      .lock =
          [this] {
            const auto path = instanceLockPath(XdgDirectories::fromEnvironment(processEnvironment));
            return path ? lock_.take(*path) : InstanceLock::Result::unavailable;
          },
  }));
}

ForwardResult OneInstance::forward() const {
  return forwardToRunningInstance(request_, processEnvironment);
}

}  // namespace vantorel
