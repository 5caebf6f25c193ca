// SPDX-License-Identifier: MIT
#pragma once

#include <chrono>
#include <functional>
#include <map>

#include "base/FileDescriptor.h"
#include "platform/linux/wayland/WaylandThread.h"
#include "platform/linux/windows/OwnerForms.h"

namespace vantorel {

/// Takes what owners of a clipboard write into pipes, any number at once. On the Wayland thread.
class PipeReader {
 public:
  /// How long an owner may be silent, before its first piece and between two of them. Those that
  /// fetch over a network, or have been swapped out, take seconds.
  static constexpr std::chrono::milliseconds usualPatience{5000};

  /// How long all of it may take, however busy an owner seems.
  static constexpr std::chrono::seconds wholeLimit{60};

  using Completion = std::function<void(OwnerForms::Answer)>;

  /// `thread` outlives the reader.
  PipeReader(WaylandThread& thread, std::chrono::milliseconds patience)
      : thread_(thread), patience_(patience) {}
  ~PipeReader() { abortAll(); }
  PipeReader(const PipeReader&) = delete;
  PipeReader& operator=(const PipeReader&) = delete;

  /// Begins to read and answers the end to write to, which the caller hands on and closes; none
  /// when there is no pipe to be had. Completes exactly once.
  [[nodiscard]] FileDescriptor read(Completion completion);
  /// Completes everything under way as lost.
  void abortAll();

 private:
  struct Transfer {
    FileDescriptor pipe;
    Completion completion;
    Bytes received;
    WaylandThread::TimerId silenceTimer = 0;
    WorkLine::Clock::time_point deadline = WorkLine::Clock::now() + wholeLimit;
  };
  using Transfers = std::map<int, Transfer>;

  void take(int pipe);
  void startSilenceTimer(Transfer& transfer);
  void finish(Transfers::iterator transfer, OwnerForms::Outcome outcome);

  WaylandThread& thread_;
  std::chrono::milliseconds patience_;
  Transfers transfers_;  // by their descriptors
};

}  // namespace vantorel
