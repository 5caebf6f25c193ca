// SPDX-License-Identifier: MIT
#pragma once

#include <chrono>
#include <string>

#include "platform/ActionRequest.h"
#include "platform/linux/xdg/XdgDirectories.h"

namespace vantorel {

/// forwarded: the running instance has the request, even if it is too busy to have answered yet.
/// notRunning: nobody is there, or whoever was there left without doing it. refused: somebody has
/// our name and does not know the request. noBus: there is no session bus, or it is silent.
enum class ForwardResult { forwarded, notRunning, refused, noBus };

inline constexpr std::chrono::seconds forwardTimeLimit{2};

/// Hands `request` to the running instance over the session bus. Never starts one. Needs no toolkit
/// and no application object; waits no longer than `forwardTimeLimit`. A text that is not valid
/// UTF-8 is refused.
[[nodiscard]] ForwardResult forwardToRunningInstance(const ActionRequest& request,
                                                     const EnvironmentLookup& lookup);

/// What came of a request that is answered when it was done. unanswered: the running instance has
/// it, and has not said within the time what came of it.
struct AwaitedRequest {
  enum class Outcome { done, failed, unanswered, notRunning, refused, noBus };
  Outcome outcome = Outcome::noBus;
  std::string trouble = {};  // why it `failed`, in one sentence
};

/// The error by which a request is answered that was understood and could not be done.
inline constexpr const char* notDoneError = "com.vantorel.Vantorel.Error.NotDone";

/// The same as `forwardToRunningInstance`, but waits until the request was done, no longer than
/// `timeLimit`.
[[nodiscard]] AwaitedRequest awaitRunningInstance(const ActionRequest& request,
                                                  const EnvironmentLookup& lookup,
                                                  std::chrono::seconds timeLimit);

}  // namespace vantorel
