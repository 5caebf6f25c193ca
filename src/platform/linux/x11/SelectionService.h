// SPDX-License-Identifier: MIT
#pragma once

#include <atomic>
#include <chrono>
#include <functional>
#include <memory>
#include <mutex>
#include <optional>
#include <set>
#include <utility>

#include "platform/Pasteboard.h"
#include "platform/linux/windows/SelectionPasteboard.h"
#include "platform/linux/x11/ClientProcesses.h"
#include "platform/linux/x11/ClipboardManagerRole.h"
#include "platform/linux/x11/SelectionForms.h"
#include "platform/linux/x11/SelectionOwner.h"
#include "platform/linux/x11/SelectionReader.h"
#include "platform/linux/x11/X11Thread.h"

namespace vantorel {

/// The clipboard as this process sees it: counts its changes, knows who holds the contents, takes
/// it over and gives it away. On the X thread, except where said.
class SelectionService {
 public:
  using ChangeCount = Pasteboard::ChangeCount;
  /// An owner that ends is often succeeded at once, by a program that keeps its contents.
  static constexpr std::chrono::milliseconds successionLimit{100};
  static constexpr std::chrono::milliseconds handOverLimit{300};
  /// A program that had its contents saved may still clear the clipboard as it ends, whoever has
  /// it.
  static constexpr std::chrono::seconds farewellLimit{2};

  /// compositor: the window manager is one of another window system, and owns here what is copied
  /// there.
  enum class Bridge { none, compositor };

  /// Called on the X thread.
  struct Observer {
    std::function<void()> onForeignChange;
    std::function<void(ChangeCount)> onOwnerExit;
    /// The owner of that change asks for its contents to be kept; `done` follows once, on the same
    /// thread, when they were written or will not be.
    std::function<void(ChangeCount, Work done)> onSave;
  };

  /// Null when the server lacks the extension that tells of owner changes. Before the thread
  /// starts; `thread` outlives the service, and stops before it is destroyed. `patience` is for
  /// other programs that say nothing.
  [[nodiscard]] static std::unique_ptr<SelectionService> create(
      X11Thread& thread, Observer observer, SelectionOwner::Worker runElsewhere,
      std::chrono::milliseconds patience = SelectionReader::usualPatience,
      Bridge bridge = Bridge::none);

  /// Ends every read under way, as aborted.
  ~SelectionService();
  SelectionService(const SelectionService&) = delete;
  SelectionService& operator=(const SelectionService&) = delete;

  void handle(const xcb_generic_event_t& event);
  /// The server has gone: everything under way ends, everything asked later finds nothing.
  void handleLoss();

  /// Any thread.
  [[nodiscard]] ChangeCount changeCount() const { return count_; }
  [[nodiscard]] bool wroteContents(ChangeCount change) const { return change == ownCount_; }
  [[nodiscard]] std::optional<ProcessId> ownerProcess(ChangeCount change) const;
  [[nodiscard]] bool isBridged(ChangeCount change) const { return change == bridgedCount_; }
  /// Whether the program that made that window was told what this process has on the clipboard.
  /// Any thread.
  [[nodiscard]] bool isListedTo(xcb_window_t window) const;

  using Own = SelectionPasteboard::Own;
  [[nodiscard]] SelectionPasteboard::Contents contents(ChangeCount change) const;

  /// Becomes the owner with these contents. Waits for the server alone.
  [[nodiscard]] bool write(Own contents);
  /// Counts and shows the clipboard as empty in this process; other programs see it by
  /// `publishEmptiness()`, unless something was written before: so clearing and writing are one
  /// change to them.
  void clear();
  void publishEmptiness();
  /// Owns PRIMARY too, with what was written last. False when nothing of ours is on the clipboard.
  [[nodiscard]] bool offerPrimary();

  /// Keeps for others what they ask to be kept, where no other program does, or no longer.
  void keepForOthers();
  void stopKeepingForOthers() { role_.leave(); }

  /// Gives our contents to the clipboard manager, if there is another than this process, and goes
  /// on serving meanwhile. `done` is called when it has them, refuses, or takes longer than the
  /// limit.
  void handOver(Work done);

 private:
  enum class Holder { nobody, self, other };
  enum class Counting { count, countedAlready };

  SelectionService(X11Thread& thread, Observer observer, SelectionOwner::Worker runElsewhere,
                   std::chrono::milliseconds patience, Bridge bridge,
                   std::uint8_t ownerChangeEvent);

  void noteFirstOwner();
  [[nodiscard]] xcb_timestamp_t serverTime();
  [[nodiscard]] bool take(Own contents, Counting counting);
  void adopt();
  void changeHands(Holder holder);
  void noteOwnerProcess(xcb_window_t owner);
  [[nodiscard]] bool isBridge(xcb_window_t owner) const;
  [[nodiscard]] SelectionPasteboard::Foreign foreignSince(xcb_timestamp_t time);
  void handleOwnerChange(const xcb_generic_event_t& event);
  void handleOwnerEnd();
  void handleProperty(const xcb_property_notify_event_t& event);
  void handleNotify(const xcb_selection_notify_event_t& event);
  void finishHandOver();
  void save(xcb_window_t requestor, std::function<void(bool)> done);
  [[nodiscard]] bool servesContents() const;
  [[nodiscard]] bool isFarewell(const xcb_xfixes_selection_notify_event_t& change);
  void takeBack();

  X11Thread& thread_;
  X11Connection& connection_;
  Observer observer_;
  std::uint8_t ownerChangeEvent_;
  xcb_atom_t clipboard_;
  xcb_atom_t timeProperty_;
  xcb_window_t window_;
  SelectionReader reader_;
  SelectionOwner owner_;
  ClipboardManagerRole role_;

  std::atomic<ChangeCount> count_{1};
  std::atomic<ChangeCount> ownCount_{0};      // of the last change that was made here
  std::atomic<ChangeCount> bridgedCount_{0};  // of the last change by the bridge
  const Bridge bridge_;
  ClientProcesses processes_;
  mutable std::mutex mutex_;  // what follows
  std::pair<ChangeCount, std::optional<ProcessId>> ownerProcess_;
  std::set<std::uint32_t> listedTo_;  // clients that know what is there since it is

  Holder holder_ = Holder::nobody;
  Own own_;
  SelectionPasteboard::Foreign foreign_;
  xcb_window_t foreignWindow_ = XCB_WINDOW_NONE;
  std::optional<X11Thread::Clock::time_point> savedAt_;  // what is ours was another program's
  xcb_timestamp_t serverTime_ = XCB_CURRENT_TIME;

  struct Taking {
    Own contents;
    Counting counting = Counting::count;
  };
  std::optional<Taking> taking_;  // asked of the server, not yet told by it
  enum class Emptiness { published, pending } emptiness_ = Emptiness::published;
  bool ownerHasEnded_ = false;  // a moment ago, without a successor so far
  X11Thread::TimerId successionTimer_ = 0;
  X11Thread::TimerId handOverTimer_ = 0;
  Work handOverDone_;
};

}  // namespace vantorel
