#pragma once

#include <functional>
#include <memory>
#include <optional>
#include <string>

#include "paste/PasteOutcome.h"
#include "platform/Dispatch.h"
#include "platform/FileSystem.h"
#include "platform/Image.h"
#include "platform/Pasteboard.h"
#include "platform/SyntheticInput.h"
#include "platform/Workspace.h"
#include "store/ClipStore.h"

namespace vantorel {

/// What the controller needs of the desktop. All outlive it.
struct PasteServices {
  Pasteboard& pasteboard;
  Workspace& workspace;
  SyntheticInput& input;
  Dispatch& dispatch;
  FileSystem& files;
  const ImageDecoder& images;
};

/// Puts an entry back on the pasteboard and, when it may, pastes it into the application that the
/// user came from. Main thread.
class PasteController {
 public:
  /// How often the target is looked at before the paste gives up, and how long between.
  static constexpr int activationChecks = 24;
  static constexpr Seconds activationCheckInterval{0.05};

  PasteController(ClipStore& store, PasteServices services);
  ~PasteController();
  PasteController(const PasteController&) = delete;
  PasteController& operator=(const PasteController&) = delete;

  /// After every successful write to the pasteboard.
  std::function<void()> onInternalPasteboardWrite;
  /// Exactly once for each paste, perhaps later; never when a newer paste, the end of this
  /// controller or the end of the target overtook the wait for the target.
  std::function<void(PasteOutcome)> onOutcome;

  /// Where the next paste goes; this program itself, or nothing, clears the target.
  void setTargetApplication(const std::optional<RunningApplication>& application);

  void paste(const ClipItem& item, bool asPlainText);

  /// Replaces the pasteboard's contents by the entry; a failed write leaves the pasteboard empty.
  /// A file that may not be looked at is written like any other: it has not been seen to be gone,
  /// and whoever receives it may have more rights or can say better what is wrong.
  [[nodiscard]] bool writeToPasteboard(const ClipItem& item, bool asPlainText);

  /// The target as it runs now, under a new process if it was started anew.
  [[nodiscard]] std::optional<RunningApplication> resolveTargetApplication();

 private:
  [[nodiscard]] bool writeText(const ClipItem& item, bool asPlainText);
  [[nodiscard]] bool writeImage(const ClipItem& item);
  [[nodiscard]] bool writeFiles(const ClipItem& item);

  void waitForActivation(RunningApplication target, int attemptsRemaining);
  void targetAnnounced(const RunningApplication& target);
  [[nodiscard]] bool isInFront(const RunningApplication& target);
  [[nodiscard]] PasteOutcome postPaste(ProcessId pid);
  void endWait();
  /// Ends the wait and reports; nothing may follow it, since the report may end this controller.
  void finish(PasteOutcome outcome);

  ClipStore& store_;
  PasteServices services_;
  std::optional<ProcessId> targetPid_;
  std::optional<std::string> targetBundleIdentifier_;
  std::unique_ptr<Timer> nextCheck_;
  std::unique_ptr<Observation> activations_;
};

}  // namespace vantorel
