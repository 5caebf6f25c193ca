// SPDX-License-Identifier: MIT
#pragma once

#include <filesystem>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "base/Lifetime.h"
#include "capture/OwnWrite.h"
#include "capture/PrivacyPreferences.h"
#include "platform/Dispatch.h"
#include "platform/Pasteboard.h"
#include "platform/SessionLock.h"
#include "platform/Workspace.h"
#include "store/ClipStore.h"

namespace vantorel {

/// What the watcher needs of the desktop. All outlive it.
struct ClipboardServices {
  Pasteboard& pasteboard;
  Workspace& workspace;
  Dispatch& dispatch;
  const SessionLock& lock;
};

/// Notices every change of the pasteboard, by the platform's announcement and by polling, and
/// hands what privacy allows to the store. Reading takes several turns of the main queue; a newer
/// change supersedes the reading of an older one, of which a text that has come already is kept.
/// What is copied behind a locked screen is taken as seen. Main thread.
class ClipboardWatcher {
 public:
  static constexpr Seconds pollInterval{0.35};

  /// Whatever is on the pasteboard now is never captured.
  ClipboardWatcher(ClipStore& store, PrivacyPreferences& privacy, ClipboardServices services);
  ~ClipboardWatcher();
  ClipboardWatcher(const ClipboardWatcher&) = delete;
  ClipboardWatcher& operator=(const ClipboardWatcher&) = delete;

  /// Called when the program that owned the newest captured contents has ended without a
  /// successor, or is about to end and asks for them to be kept: the entry may be put on the
  /// pasteboard, so that copy, close, paste works. `done` is called then, or when it is not,
  /// perhaps later; who takes time looks again whether anybody copied meanwhile.
  std::function<void(const ClipItem&, std::function<void()> done)> onContentsLost;

  /// Starts, or restarts, polling, and listens to the pasteboard's announcements.
  void start();
  /// Ends both; a reading under way is dropped.
  void stop();
  /// One step: begins to read the contents if they changed since the last look.
  void poll();

  [[nodiscard]] Pasteboard::ChangeCount lastChangeCount() const { return lastChangeCount_; }
  /// Takes the current contents as seen: they are not captured, and a reading under way is
  /// dropped.
  void advanceLastChangeCount();

  /// The same for contents that this program has just written, which are remembered until others
  /// are copied: a program that takes them over and offers them anew has copied nothing. One that
  /// is in front has.
  void noteOwnWrite();

  [[nodiscard]] SourceApp currentSourceApp() const;

 private:
  struct Reading;

  // What follows each answer of the pasteboard, for the reading under way.
  void typesRead(Reading& reading, const std::optional<std::vector<std::string>>& types);
  void filesRead(Reading& reading, const std::vector<std::filesystem::path>& paths);
  void stringRead(Reading& reading, std::optional<std::string> string);
  void dataRead(Reading& reading, PasteboardDataType type, std::optional<Bytes> data);
  void compared(Reading& reading, const std::shared_ptr<const Image>& image, bool same);
  void imageRead(Reading& reading, const std::shared_ptr<const Image>& image);

  /// A completion that goes on with `next` while the reading under way now still is.
  template <class Value, class Next>
  [[nodiscard]] Pasteboard::Completion<Value> whileReading(Next next);
  /// Ends the reading by what `capture` hands to the store.
  void finish(const std::function<std::optional<ClipStore::Capture>()>& capture);
  /// What may have been taken over with that change, `front` being in front at that moment.
  [[nodiscard]] std::shared_ptr<const OwnWrite> ownWriteTakenOver(
      Pasteboard::ChangeCount change, const std::optional<RunningApplication>& front) const;
  [[nodiscard]] SourceApp sourceAppOf(const std::optional<RunningApplication>& front) const;
  ClipStore::Capture insertText(Reading& reading);
  void endTakenOver(const std::function<bool(const ClipItem&)>& isTheEntry);
  /// Ends the reading of contents that are nobody's new copy and not our own either.
  void endUncaptured();
  /// Ends the reading under way, whatever came of it.
  void endReading();
  /// Ends it for newer contents; a text that has come already is kept without its richer forms.
  void supersedeReading();
  void answerSaves(const Reading& reading);
  void ownerExited(Pasteboard::ChangeCount change);
  void saveAsked(Pasteboard::ChangeCount change, std::function<void()> done);
  void save(Pasteboard::ChangeCount change, const std::function<void()>& done);
  /// The entry that holds the present contents, if they are of that change and were captured.
  [[nodiscard]] std::optional<ClipItem> entryOf(Pasteboard::ChangeCount change) const;

  ClipStore& store_;
  PrivacyPreferences& privacy_;
  ClipboardServices services_;
  Pasteboard::ChangeCount lastChangeCount_;
  std::unique_ptr<Timer> timer_;
  std::unique_ptr<Observation> lock_;  // while it is started
  std::shared_ptr<Reading> reading_;   // under way; queued steps hold it weakly
  std::shared_ptr<const OwnWrite> ownWrite_;
  std::unique_ptr<SerialQueue> pictures_;  // compares them; made when first needed
  /// The change that was captured last, and its entry.
  std::optional<std::pair<Pasteboard::ChangeCount, Uuid>> newestCapture_;
  Lifetime life_;  // of what listens to the pasteboard
};

}  // namespace vantorel
