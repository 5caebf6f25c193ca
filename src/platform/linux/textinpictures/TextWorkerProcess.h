#pragma once

#include <sys/types.h>

#include <chrono>
#include <filesystem>
#include <memory>
#include <optional>
#include <stop_token>
#include <string>
#include <vector>

#include "base/FileDescriptor.h"
#include "platform/linux/textinpictures/TextWorkerProtocol.h"

namespace vantorel {

/// A running worker. It gets nothing of this process but one end of a socket and four variables:
/// no other open file, no other environment. It ends with the thread that started it.
///
/// A worker that is killed takes its time to die while others keep the processors busy, since it
/// only gets what they leave. Nobody here waits for that but a thread of its own.
class TextWorkerProcess {
 public:
  /// Null when the program cannot be started.
  [[nodiscard]] static std::unique_ptr<TextWorkerProcess> start(
      const std::filesystem::path& program, const std::vector<std::string>& arguments);
  /// Kills it, if it still runs.
  ~TextWorkerProcess();
  TextWorkerProcess(const TextWorkerProcess&) = delete;
  TextWorkerProcess& operator=(const TextWorkerProcess&) = delete;

  // One thread at a time asks it: a picture there, its text back. These fail when the worker ended
  // meanwhile, was terminated, or the deadline passed.
  [[nodiscard]] bool send(ByteView picture, Deadline deadline);
  [[nodiscard]] std::optional<TextReply> receive(Deadline deadline);
  /// Whether `receive` has something to do, be it to see that the worker is gone.
  [[nodiscard]] bool hasReply(Deadline deadline) const;

  /// Processor time that it has used; none when it is gone.
  [[nodiscard]] std::chrono::nanoseconds processorTime() const;

  /// Kills it; a reading that waits for it returns. Any thread, answers at once.
  void terminate();

  [[nodiscard]] bool isRunning() const;
  /// Waits for its end, which is near, and answers whether it went of its own accord: because
  /// nobody asked it for long enough. False too when the wait was stopped or took too long.
  [[nodiscard]] bool wentIdle(const std::stop_token& stop, Deadline deadline) const;
  [[nodiscard]] pid_t processId() const;

 private:
  class Life;
  TextWorkerProcess(std::shared_ptr<Life> life, FileDescriptor socket);

  const std::shared_ptr<Life> life_;  // shared with the thread that waits for its end
  const FileDescriptor socket_;
};

}  // namespace vantorel
