#pragma once

#include <chrono>
#include <string>

#include "platform/linux/start/CommandLine.h"
#include "platform/linux/xdg/XdgDirectories.h"

namespace vantorel {

/// forwarded: the running instance has the request, even if it is too busy to have answered yet.
/// notRunning: nobody is there, or whoever was there left without doing it. refused: somebody has
/// our name and does not know the request. noBus: there is no session bus, or it is silent.
enum class ForwardResult { forwarded, notRunning, refused, noBus };

inline constexpr std::chrono::seconds forwardTimeLimit{2};

/// Asks the running instance, over the session bus, to do `command` (`open` is "reopen"). Never
/// starts one. Needs no toolkit and no application object; waits no longer than `forwardTimeLimit`.
/// `version` and `help` are refused. `argument` goes with a command that takes one.
[[nodiscard]] ForwardResult forwardToRunningInstance(Command command, const std::string& argument,
                                                     const EnvironmentLookup& lookup);

}  // namespace vantorel
