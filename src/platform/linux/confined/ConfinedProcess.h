// SPDX-License-Identifier: MIT
#pragma once

#include <sys/types.h>

#include <chrono>
#include <filesystem>
#include <memory>
#include <stop_token>
#include <string>
#include <vector>

#include "base/Deadline.h"
#include "base/FileDescriptor.h"

namespace vantorel {

/// A running worker, which closes itself in. It gets nothing of this process but one end of a
/// socket and four variables: no other open file, no other environment. It ends with this process,
/// however that ends.
///
/// A worker that is killed takes its time to die while others keep the processors busy, since it
/// only gets what they leave. Nobody here waits for that but a thread of its own.
class ConfinedProcess {
 public:
  /// Null when the program cannot be started.
  [[nodiscard]] static std::unique_ptr<ConfinedProcess> start(
      const std::filesystem::path& program, const std::vector<std::string>& arguments);
  /// Kills it, if it still runs.
  ~ConfinedProcess();
  ConfinedProcess(const ConfinedProcess&) = delete;
  ConfinedProcess& operator=(const ConfinedProcess&) = delete;

  /// This end of the socket, for one thread at a time. It is silent for good once the worker ended
  /// or was terminated.
  [[nodiscard]] int socket() const { return socket_.get(); }

  /// Processor time that it has used; none when it is gone.
  [[nodiscard]] std::chrono::nanoseconds processorTime() const;

  /// From now on it may use so much more; then it is killed, a second later at most, whatever its
  /// own limits say. Any thread.
  void allowProcessorTime(std::chrono::nanoseconds more);

  /// Kills it; a reading that waits for it returns. Any thread, answers at once.
  void terminate();

  [[nodiscard]] bool isRunning() const;
  /// Waits for its end, which is near, and answers whether it went of its own accord: because
  /// nobody asked it for long enough. False too when the wait was stopped or took too long.
  [[nodiscard]] bool wentIdle(const std::stop_token& stop, Deadline deadline) const;
  [[nodiscard]] pid_t processId() const;

 private:
  class Life;
  ConfinedProcess(std::shared_ptr<Life> life, FileDescriptor socket);

  const std::shared_ptr<Life> life_;  // shared with the thread that waits for its end
  const FileDescriptor socket_;
};

}  // namespace vantorel
