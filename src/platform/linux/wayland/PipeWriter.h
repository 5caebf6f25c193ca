// SPDX-License-Identifier: MIT
#pragma once

#include <chrono>
#include <map>

#include "base/FileDescriptor.h"
#include "platform/linux/wayland/WaylandThread.h"
#include "platform/linux/windows/SelectionOffer.h"

namespace vantorel {

/// Writes contents into the pipes of those who asked for them, each at the pace at which it is
/// read: one who stops reading holds up nobody else. On the Wayland thread.
class PipeWriter {
 public:
  /// A reader that takes nothing for so long gets no more.
  static constexpr std::chrono::seconds stallLimit{10};

  /// `thread` outlives the writer.
  explicit PipeWriter(WaylandThread& thread) : thread_(thread) {}

  /// Writes all of it and closes the pipe.
  void write(FileDescriptor pipe, OfferedBytes contents);
  /// Closes every pipe.
  void drop();

 private:
  struct Transfer {
    FileDescriptor pipe;
    OfferedBytes contents;
    std::size_t written = 0;
    WaylandThread::TimerId stallTimer = 0;
  };

  void goOn(int pipe);
  void end(int pipe);

  WaylandThread& thread_;
  std::map<int, Transfer> transfers_;  // by their descriptors
};

}  // namespace vantorel
