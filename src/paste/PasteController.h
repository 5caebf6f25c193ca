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
  PasteController(ClipStore& store, PasteServices services);
  ~PasteController();
  PasteController(const PasteController&) = delete;
  PasteController& operator=(const PasteController&) = delete;

  /// After every successful write to the pasteboard.
  std::function<void()> onInternalPasteboardWrite;
  /// Exactly once for each paste, perhaps later; never when a newer paste or the end of this
  /// controller overtook the wait for the target.
  std::function<void(PasteOutcome)> onOutcome;

  /// Where the next paste goes; this program itself, or nothing, clears the target.
  void setTargetApplication(const std::optional<RunningApplication>& application);

  void paste(const ClipItem& item, bool asPlainText);

  /// Replaces the pasteboard's contents by the entry; a failed write leaves the pasteboard empty.
  [[nodiscard]] bool writeToPasteboard(const ClipItem& item, bool asPlainText);

  /// The target as it runs now, under a new process if it was started anew.
  [[nodiscard]] std::optional<RunningApplication> resolveTargetApplication();

 private:
  void waitForActivation(const RunningApplication& target, int attemptsRemaining);

  ClipStore& store_;
  PasteServices services_;
  std::optional<ProcessId> targetPid_;
  std::optional<std::string> targetBundleIdentifier_;
  std::unique_ptr<Timer> nextCheck_;
  std::unique_ptr<Observation> activations_;
};

}  // namespace vantorel
