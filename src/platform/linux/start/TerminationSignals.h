// SPDX-License-Identifier: MIT
#pragma once

#include <csignal>
#include <functional>
#include <optional>
#include <thread>
#include <vector>

#include "base/FileDescriptor.h"
#include "base/Lifetime.h"
#include "platform/Dispatch.h"

namespace vantorel {

/// Turns a request to end this process (SIGTERM, SIGINT, SIGHUP) into a call of `handler` on the
/// main queue, once; SIGPIPE is ignored. The handler should begin the normal quit. A second request
/// of the same kind ends the process at once, so that a quit that hangs can be ended too. Only a
/// hang-up that was ignored when the process began (by nohup) stays ignored.
///
/// Create one, on the main thread, as soon as there is a `Dispatch`; its end restores what was in
/// force before. `dispatch` outlives it.
class TerminationSignals {
 public:
  TerminationSignals(Dispatch& dispatch, std::function<void()> handler);
  ~TerminationSignals();
  TerminationSignals(const TerminationSignals&) = delete;
  TerminationSignals& operator=(const TerminationSignals&) = delete;

 private:
  struct Previous {
    int signal = 0;
    struct sigaction action {};
  };

  struct Pipe {
    FileDescriptor readEnd;
    FileDescriptor writeEnd;
  };

  void install(int signal);
  void waitForSignal();

  Dispatch& dispatch_;
  std::function<void()> handler_;
  std::function<void()> notify_;  // calls the handler, on the main queue
  std::vector<Previous> previous_;
  std::optional<Pipe> pipe_;  // absent where none was to be had: nobody listens then
  std::thread thread_;
  Lifetime life_;
};

}  // namespace vantorel
