// SPDX-License-Identifier: MIT
#pragma once

#include <cstddef>
#include <functional>
#include <memory>
#include <optional>
#include <string>

#include "base/FileSystem.h"
#include "paste/FilePresence.h"
#include "paste/PasteOutcome.h"
#include "platform/Dispatch.h"
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
  std::shared_ptr<FileSystem> files;  // asked on other threads, which may outlive the controller
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
  /// Exactly once for each paste, perhaps later; never when a newer paste, a withdrawal, the end of
  /// this controller or the end of the target overtook it.
  std::function<void(PasteOutcome)> onOutcome;

  /// Where the next paste goes; this program itself, or nothing, clears the target.
  void setTargetApplication(const std::optional<RunningApplication>& application);

  void paste(const ClipItem& item, bool asPlainText);
  /// Ends a paste that is under way: keys that are not pressed yet will not be.
  void withdraw();

  /// Replaces the pasteboard's contents by the entry; a failed write leaves the pasteboard empty.
  /// Files are written as they stand in the entry: whether they are there has been asked before,
  /// where nobody waits for the disk.
  [[nodiscard]] bool writeToPasteboard(const ClipItem& item, bool asPlainText);

  /// Puts the entry back after the program that owned it has ended. Unlike a paste it changes
  /// nothing, and answers false, when the entry cannot be had or somebody else wrote meanwhile.
  void restoreToPasteboard(const ClipItem& item, std::function<void(bool)> written);

  /// The target as it is now: the very window, or the application when it was launched anew after
  /// that window was last seen. Nothing else of the same application is the target.
  [[nodiscard]] std::optional<RunningApplication> resolveTargetApplication();

 private:
  /// One paste, from the choice to its outcome; callbacks hold it weakly.
  struct UnderWay {
    std::optional<RunningApplication> target;  // when the entry was chosen
    std::size_t keysAwaited = 0;
    bool allDelivered = true;
  };

  /// Answers at once for what is no list of files. A file that may not be looked at counts as
  /// there: it has not been seen to be gone, and whoever receives it may have more rights.
  void whenThere(const ClipItem& item, FilePresence::Answer answer);
  [[nodiscard]] std::optional<RunningApplication> resolve(
      const std::optional<RunningApplication>& target);
  /// The decoded picture of an image entry; null when it cannot be had.
  [[nodiscard]] std::shared_ptr<const Image> pictureOf(const ClipItem& item) const;
  /// Puts the entry on the cleared pasteboard; `picture` is that of an image entry.
  [[nodiscard]] bool put(const ClipItem& item, bool asPlainText,
                         std::shared_ptr<const Image> picture);
  [[nodiscard]] bool putText(const ClipItem& item, bool asPlainText);

  void bringTargetToFront();
  void waitForActivation(RunningApplication target, int attemptsRemaining);
  void lookAgain(const RunningApplication& target, int attemptsRemaining);
  void targetAnnounced(const RunningApplication& target);
  [[nodiscard]] bool isInFront(const RunningApplication& target);
  void postPaste(const RunningApplication& target);
  void keyAnswered(UnderWay& paste, KeyDelivery delivery);
  /// Ends the paste and reports; nothing may follow it, since the report may end this controller.
  void finish(PasteOutcome outcome);

  ClipStore& store_;
  PasteServices services_;
  FilePresence presence_;
  std::optional<RunningApplication> target_;
  std::shared_ptr<UnderWay> underWay_;
  std::unique_ptr<Timer> nextCheck_;
  std::unique_ptr<Observation> activations_;
};

}  // namespace vantorel
