// SPDX-License-Identifier: MIT
#pragma once

#include <functional>
#include <string>

#include "platform/linux/start/InstanceLock.h"
#include "platform/linux/start/RunningInstance.h"

namespace vantorel {

/// Who has the program's name on the session bus after asking for it.
enum class NameClaim { owned, taken, noBus };

/// How a start of the program goes on: as the one instance, or to its end with an exit status and
/// perhaps a line for stderr.
struct StartDecision {
  enum class Course { run, exit };
  Course course = Course::run;
  int exitStatus = 0;
  std::string message;
};

/// First, before the toolkit is made ready, since most second starts end here, quickly: `answer` is
/// what came of handing the request to the running instance.
[[nodiscard]] StartDecision decideBeforeToolkit(ForwardResult answer, IfNobodyRuns ifNobodyRuns);

/// What a start with a toolkit may ask its surroundings.
struct StartSteps {
  std::function<ForwardResult()> forward;  // hands its request to the running instance
  std::function<NameClaim()> claim;
  std::function<InstanceLock::Result()> lock;
};

/// Then, once there is an application object: becomes the one instance, or hands the request to
/// whoever became it at the same moment. Locks keep a second instance away from the history of one
/// that the session bus does not know of; where none is to be had the program runs without.
[[nodiscard]] StartDecision decideWithToolkit(const StartSteps& steps);

}  // namespace vantorel
