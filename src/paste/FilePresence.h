// SPDX-License-Identifier: MIT
#pragma once

#include <cstdint>
#include <filesystem>
#include <functional>
#include <map>
#include <memory>
#include <vector>

#include "base/FileSystem.h"
#include "platform/Dispatch.h"
#include "platform/ProbeLanes.h"

namespace vantorel {

/// Tells whether files still stand where they stood. The disk may be one behind a dead network, so
/// it is asked on threads that nobody waits for. Main thread.
class FilePresence {
 public:
  using Answer = std::function<void(bool allThere)>;

  /// A disk that takes longer is not waited for: its files have not been seen to be gone, and
  /// whoever receives them can say better what is wrong.
  static constexpr Seconds patience{1};

  /// `dispatch` outlives this; `files` is shared with threads that may outlive it.
  FilePresence(Dispatch& dispatch, std::shared_ptr<FileSystem> files);
  ~FilePresence();
  FilePresence(const FilePresence&) = delete;
  FilePresence& operator=(const FilePresence&) = delete;

  /// Calls `answer` in a later turn of the main queue, once, unless this has ended by then. Any
  /// number of questions may be under way.
  void ask(std::vector<std::filesystem::path> paths, Answer answer);

 private:
  using Number = std::uint64_t;
  struct Question {
    Answer answer;
    std::unique_ptr<Timer> patience;
  };

  void give(Number number, bool allThere);

  Dispatch& dispatch_;
  std::shared_ptr<FileSystem> files_;
  std::map<Number, Question> questions_;  // those without an answer yet
  Number lastNumber_ = 0;
  ProbeLanes lanes_;
};

}  // namespace vantorel
