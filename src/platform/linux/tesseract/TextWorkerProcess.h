#pragma once

#include <sys/types.h>

#include <condition_variable>
#include <filesystem>
#include <memory>
#include <mutex>
#include <optional>
#include <string>
#include <thread>
#include <vector>

#include "platform/linux/tesseract/TextWorkerProtocol.h"
#include "platform/posix/FileDescriptor.h"

namespace vantorel {

/// A running worker. It gets nothing of this process but one end of a socket and four variables:
/// no other open file, no other environment. It ends with the thread that started it.
class TextWorkerProcess {
 public:
  /// Null when the program cannot be started.
  [[nodiscard]] static std::unique_ptr<TextWorkerProcess> start(
      const std::filesystem::path& program, const std::vector<std::string>& arguments);
  /// Kills it, if it still runs, and waits until it is gone.
  ~TextWorkerProcess();
  TextWorkerProcess(const TextWorkerProcess&) = delete;
  TextWorkerProcess& operator=(const TextWorkerProcess&) = delete;

  /// Sends a picture and waits for its text. Absent when the worker ended meanwhile, was
  /// terminated, or the deadline passed. One thread at a time.
  [[nodiscard]] std::optional<TextReply> read(ByteView picture, Deadline deadline);

  /// Kills it; a reading that waits for it returns. Any thread, answers at once.
  void terminate();

  [[nodiscard]] bool isRunning();
  [[nodiscard]] pid_t processId() const { return pid_; }

 private:
  TextWorkerProcess(pid_t pid, int socket);
  void reap();

  const pid_t pid_;
  FileDescriptor socket_;
  std::mutex mutex_;
  bool isGone_ = false;  // guarded; after that the number may belong to another process
  std::thread reaper_;
};

}  // namespace vantorel
