// SPDX-License-Identifier: MIT
#pragma once

#include <chrono>
#include <deque>
#include <filesystem>
#include <memory>
#include <mutex>
#include <optional>
#include <stop_token>
#include <string_view>

#include "base/Bytes.h"
#include "base/FileDescriptor.h"
#include "platform/Bitmap.h"
#include "platform/linux/decoding/PictureProtocol.h"

namespace vantorel {

class ConfinedProcess;

inline constexpr std::string_view pictureWorker = "vantorel-pictures";

/// Has pictures decoded in a process of its own, which is started for a picture and ends by itself
/// when no other follows. A picture made to break a decoder breaks nothing else: who breaks in
/// finds neither the history nor its key, no file and no network, and whatever comes back is
/// checked. A picture that kills the process, or that it does not finish in time, has failed; the
/// next one gets a new process, unless too many have failed of late. One picture at a time, the
/// others wait; any thread but the main one.
class PictureWorker {
 public:
  struct Settings {
    /// The worker's program. Where it is not there, no picture can be decoded.
    std::filesystem::path program;
    /// How long the process waits for another picture.
    std::chrono::seconds idleLimit{30};
    std::chrono::milliseconds pictureLimit{10'000};
    /// Processor time for a picture, somewhat more than the process allows itself.
    std::chrono::milliseconds processorLimit{25'000};
    /// So many pictures may fail within so long a time.
    std::size_t failureLimit = 5;
    std::chrono::seconds failureTime{60};
  };

  explicit PictureWorker(Settings settings);
  ~PictureWorker();
  PictureWorker(const PictureWorker&) = delete;
  PictureWorker& operator=(const PictureWorker&) = delete;

  // As the operations of `ImageDecoder` and `Image` say. Null when it cannot be had.
  [[nodiscard]] SharedBitmap bitmap(ByteView encoded, PixelSize fitting);
  [[nodiscard]] std::shared_ptr<const Bytes> png(ByteView encoded);
  [[nodiscard]] std::shared_ptr<const Bytes> jpeg(ByteView encoded, double compression);

  /// Ends what is under way; from now on nothing can be had. Any thread, answers at once.
  void stop();

  /// The process's number while there is one, else 0: for measurements.
  [[nodiscard]] int processId();

 private:
  /// What lies in the room is somebody else's to change until it was copied.
  struct Made {
    PictureReply reply;
    FileDescriptor room;
  };
  [[nodiscard]] std::optional<Made> make(ByteView encoded, const PictureRequest& request);
  [[nodiscard]] std::shared_ptr<const Bytes> encodedAs(ByteView encoded,
                                                       const PictureRequest& request);
  [[nodiscard]] bool ensureProcess();
  [[nodiscard]] std::optional<PictureReply> ask(const PictureRequest& request,
                                                const FileDescriptor& encoded,
                                                const FileDescriptor& room);
  [[nodiscard]] bool hasFailedTooOften();

  const Settings settings_;
  std::stop_source stop_;
  std::mutex mutex_;
  std::unique_ptr<ConfinedProcess> process_;  // guarded, as is what follows
  std::deque<std::chrono::steady_clock::time_point> failures_;
};

}  // namespace vantorel
