// SPDX-License-Identifier: MIT
#pragma once

#include <chrono>
#include <filesystem>
#include <memory>
#include <mutex>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "platform/TextRecognition.h"
#include "platform/linux/confined/Share.h"
#include "platform/linux/textinpictures/TextWorkerProtocol.h"

namespace vantorel {

class ConfinedProcess;

inline constexpr std::string_view textWorker = "vantorel-text";

/// Recognises text in a process of its own, which is started for a picture and ends by itself when
/// no other follows: so the engine costs this program no memory and no time at its start, a picture
/// made to break the engine breaks nothing else, and a reading is stopped by ending the process.
/// The worker gets the time that nobody else wants; where others want all of it for long, as when
/// something large is compiled, it gets a small share, or a picture would never be read.
class WorkerTextRecognition : public TextRecognition {
 public:
  struct Settings {
    /// The worker's program. One that is not there makes everything unavailable.
    std::filesystem::path program;
    std::vector<std::filesystem::path> modelDirectories;
    /// How long the worker waits for another picture.
    std::chrono::seconds idleLimit{15};
    /// A picture that takes longer is given up. Generous, since the worker only gets the time that
    /// nobody else wants, and others may want it all for long; its processor time is limited to
    /// far less.
    std::chrono::seconds pictureLimit{1800};
    /// Processor time for a picture, somewhat more than the worker allows itself.
    std::chrono::milliseconds processorLimit{25'000};
    /// How long a worker may be kept from working by everybody else before another takes over that
    /// asks for a small share of its own.
    std::chrono::milliseconds patience{10'000};
  };

  explicit WorkerTextRecognition(Settings settings);
  ~WorkerTextRecognition() override;
  WorkerTextRecognition(const WorkerTextRecognition&) = delete;
  WorkerTextRecognition& operator=(const WorkerTextRecognition&) = delete;

  /// Looks at which models are installed: they may come and go with packages.
  [[nodiscard]] std::vector<std::string> supportedLanguages() override;
  [[nodiscard]] Recognition recognize(ByteView image, const std::vector<std::string>& languages,
                                      const std::stop_token& stop) override;

  /// The worker's number while there is one, else 0: for measurements.
  [[nodiscard]] int workerProcessId();

 private:
  struct Attempt {
    std::optional<TextReply> reply;
    bool isWorthAnother = false;
  };
  [[nodiscard]] bool ensureWorker(std::vector<std::string> arguments);
  [[nodiscard]] Attempt attempt(ByteView image, bool wasWaiting, const std::stop_token& stop);
  [[nodiscard]] bool waitForReply(Deadline deadline, const std::stop_token& stop);

  const Settings settings_;
  std::mutex mutex_;
  std::unique_ptr<ConfinedProcess> worker_;  // guarded, as is what follows
  std::vector<std::string> arguments_;
  Share share_ = Share::leftOver;
};

}  // namespace vantorel
