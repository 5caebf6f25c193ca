// SPDX-License-Identifier: MIT
#pragma once

#include <chrono>
#include <cstdint>
#include <filesystem>
#include <functional>
#include <memory>
#include <optional>

#include "base/FileSystem.h"

namespace vantorel {

/// Looks at files of the user's, which may lie behind a dead network, and gives up waiting after a
/// while: the question is left behind on a thread of its own, and until it returns, the same file
/// is unanswered at once. Waits; not for the main thread.
class FileQuestions {
 public:
  struct Limits {
    std::chrono::milliseconds look{500};
    std::chrono::milliseconds read{3'000};
  };
  enum class Wanted { anything, pictures };

  explicit FileQuestions(std::shared_ptr<FileSystem> files)
      : FileQuestions(std::move(files), Limits()) {}
  FileQuestions(std::shared_ptr<FileSystem> files, Limits limits);
  ~FileQuestions();
  FileQuestions(const FileQuestions&) = delete;
  FileQuestions& operator=(const FileQuestions&) = delete;

  /// Ends every wait: nothing is answered any more. Any thread.
  void stop();

  /// When a regular file last changed, in seconds since 1970; absent for whatever else.
  [[nodiscard]] std::optional<std::int64_t> changeTime(const std::filesystem::path& file);
  [[nodiscard]] bool isDirectory(const std::filesystem::path& file);
  /// The whole file, unless it is larger than that; with `pictures`, only if it begins like one.
  [[nodiscard]] std::optional<Bytes> contents(const std::filesystem::path& file,
                                              std::uint64_t maximumBytes, Wanted wanted);

 private:
  struct Shared;

  template <class Answer>
  Answer ask(const std::filesystem::path& file, std::chrono::milliseconds limit,
             std::function<Answer()> question);

  const std::shared_ptr<FileSystem> files_;
  const Limits limits_;
  const std::shared_ptr<Shared> shared_;
};

}  // namespace vantorel
