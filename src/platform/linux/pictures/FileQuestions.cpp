// SPDX-License-Identifier: MIT
#include "platform/linux/pictures/FileQuestions.h"

#include <fcntl.h>
#include <sys/stat.h>

#include <array>
#include <condition_variable>
#include <mutex>
#include <set>
#include <utility>

#include "base/DetachedThread.h"
#include "base/FileDescriptor.h"
#include "base/PathName.h"
#include "platform/linux/pictures/ThumbnailNames.h"

namespace vantorel {
namespace {

using Path = std::filesystem::path;

std::optional<std::int64_t> changeTimeOf(const Path& file) {
  struct stat status {};
  if (::stat(file.c_str(), &status) != 0 || !S_ISREG(status.st_mode)) return std::nullopt;
  return status.st_mtim.tv_sec;
}

bool fileBeginsLikePicture(const Path& path) {
  const FileDescriptor file(::open(path.c_str(), O_RDONLY | O_CLOEXEC | O_NONBLOCK | O_NOCTTY));
  std::array<std::byte, 16> start{};
  if (!file.isOpen()) return false;
  const auto count =
      retryingInterrupted([&] { return ::read(file.get(), start.data(), start.size()); });
  return count > 0 && beginsLikePicture(ByteView(start).first(static_cast<std::size_t>(count)));
}

}  // namespace

/// What questions that were left behind may still touch.
struct FileQuestions::Shared {
  std::mutex mutex;  // all below
  std::condition_variable answered;
  bool stopped = false;
  std::set<Path> underWay;
};

FileQuestions::FileQuestions(std::shared_ptr<FileSystem> files, Limits limits)
    : files_(std::move(files)), limits_(limits), shared_(std::make_shared<Shared>()) {}

FileQuestions::~FileQuestions() { stop(); }

void FileQuestions::stop() {
  {
    const std::lock_guard lock(shared_->mutex);
    shared_->stopped = true;
  }
  shared_->answered.notify_all();
}

template <class Answer>
Answer FileQuestions::ask(const Path& file, std::chrono::milliseconds limit,
                          std::function<Answer()> question) {
  if (!isNameable(file)) return {};
  {
    const std::lock_guard lock(shared_->mutex);
    if (shared_->stopped || !shared_->underWay.insert(file).second) return {};
  }
  auto answer = std::make_shared<std::optional<Answer>>();
  const bool isAsked = runDetached(
      "file question", [shared = shared_, file, answer, question = std::move(question)] {
        auto found = question();
        {
          const std::lock_guard lock(shared->mutex);
          *answer = std::move(found);
          shared->underWay.erase(file);
        }
        shared->answered.notify_all();
      });
  std::unique_lock lock(shared_->mutex);
  if (!isAsked) {
    shared_->underWay.erase(file);
    return {};
  }
  shared_->answered.wait_for(lock, limit, [&] { return shared_->stopped || answer->has_value(); });
  return answer->has_value() ? std::move(**answer) : Answer();
}

std::optional<std::int64_t> FileQuestions::changeTime(const Path& file) {
  return ask<std::optional<std::int64_t>>(file, limits_.look,
                                          [file] { return changeTimeOf(file); });
}

bool FileQuestions::isDirectory(const Path& file) {
  return ask<bool>(file, limits_.look, [file] {
    std::error_code error;
    return std::filesystem::is_directory(file, error);
  });
}

std::optional<Bytes> FileQuestions::contents(const Path& file, std::uint64_t maximumBytes,
                                             Wanted wanted) {
  return ask<std::optional<Bytes>>(
      file, limits_.read, [files = files_, file, maximumBytes, wanted]() -> std::optional<Bytes> {
        if (wanted == Wanted::pictures && !fileBeginsLikePicture(file)) return std::nullopt;
        return files->readFile(file, maximumBytes);
      });
}

}  // namespace vantorel
