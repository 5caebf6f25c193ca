// SPDX-License-Identifier: MIT
#pragma once

#include <chrono>
#include <cstdint>
#include <filesystem>
#include <functional>
#include <map>
#include <memory>
#include <mutex>
#include <string>
#include <tuple>
#include <vector>

#include "base/FileSystem.h"
#include "platform/Bitmap.h"
#include "platform/Dispatch.h"
#include "platform/Image.h"
#include "platform/linux/pictures/Bubblewrap.h"
#include "platform/linux/pictures/LimitedProcess.h"
#include "platform/linux/pictures/ThumbnailerEntry.h"

namespace vantorel {

/// Runs installed thumbnailers, one file after the other. One that is not done within `firstTry` is
/// begun anew on a queue for slow ones, with its whole time limit, so that files that hang do not
/// hold up the others. A file whose thumbnailer took too long even there, or crashed, is not tried
/// again before it changes, as long as the program runs.
///
/// Made by hand, since the one library that runs thumbnailers belongs to a single desktop.
class ThumbnailerRuns {
 public:
  using Completion = std::function<void(SharedBitmap)>;
  struct Limits {
    ProcessLimits process;
    std::chrono::milliseconds firstTry{2'000};
  };
  /// All outlive this.
  struct Services {
    Dispatch& dispatch;
    FileSystem& files;
    const ImageDecoder& decoder;
  };
  struct Request {
    std::filesystem::path file;
    std::int64_t changeTime = 0;  // seconds since 1970
    PixelSize most;
  };

  struct Places {
    std::filesystem::path temporary;   // where thumbnailers leave their pictures for a moment
    std::filesystem::path bubblewrap;  // what they are boxed with, where it is there and works
  };

  ThumbnailerRuns(Services services, Places places, Limits limits);
  ~ThumbnailerRuns();
  ThumbnailerRuns(const ThumbnailerRuns&) = delete;
  ThumbnailerRuns& operator=(const ThumbnailerRuns&) = delete;

  /// `completion` is called once, on a thread of this one's choosing, with null when no picture
  /// could be made; at once when the file is not to be tried again. Who asks while a thumbnailer is
  /// at work on it waits for the same picture. Any thread.
  void make(const Request& request, const ThumbnailerEntry& thumbnailer,
            const Completion& completion);

  /// Kills the running thumbnailers and starts none any more. Any thread.
  void stop();

 private:
  using Key = std::tuple<std::string, int, int>;
  struct Attempt {
    ProcessEnd end = ProcessEnd::notStarted;
    SharedBitmap picture;
  };

  [[nodiscard]] bool hasFailed(const Request& request) const;
  void tryWithTimeout(const Request& request, const ThumbnailerEntry& thumbnailer);
  [[nodiscard]] Attempt attempt(const Request& request, const ThumbnailerEntry& thumbnailer,
                                std::chrono::milliseconds time);
  void finish(const Request& request, const Attempt& attempt);

  Services services_;
  const std::filesystem::path temporary_;
  Bubblewrap bubblewrap_;
  const Limits limits_;
  StopSignal stop_;

  mutable std::mutex mutex_;                        // the two below
  std::map<Key, std::vector<Completion>> waiting_;  // by file and size
  std::map<std::string, std::int64_t> failed_;      // by path: the change time it failed with

  // Last, as they use what is above; the quick one feeds the slow one and so ends first.
  std::unique_ptr<SerialQueue> slowQueue_;
  std::unique_ptr<SerialQueue> quickQueue_;
};

}  // namespace vantorel
