// SPDX-License-Identifier: MIT
#pragma once

#include <chrono>
#include <condition_variable>
#include <functional>
#include <memory>
#include <mutex>

#include "base/Deadline.h"
#include "base/Lifetime.h"
#include "platform/Dispatch.h"
#include "platform/Observers.h"
#include "platform/linux/portal/PortalAnswers.h"
#include "platform/linux/portal/ShortcutWish.h"

namespace vantorel {

/// The desktop's portal, from the first thing in the program to its end: which colours the user
/// wants, and where no X server tells the other settings, what those are; from its start and as
/// they change; and the shortcut where it is the portal's to give. It is talked to on a thread and
/// a connection of its own. Main thread, where nothing else is said.
class Portal {
 public:
  /// How long after the construction the first answers are waited for. A portal that runs answers
  /// within a few milliseconds; the start waits for nobody longer.
  static constexpr std::chrono::milliseconds patience{50};

  /// The same for a portal that is started first. It has to know this program before the process
  /// is closed to it, or the shortcut is not to be had until the next start.
  static constexpr std::chrono::milliseconds startPatience{1000};
  /// What becomes of a portal that does not run.
  enum class Start { whenWanted, atOnce };

  /// `asked` is called on the thread as soon as the first answers are there or late. `dispatch`
  /// outlives this.
  Portal(Dispatch& dispatch, PortalAnswers::Extent extent, Start start,
         std::function<void()> asked);
  ~Portal();
  Portal(const Portal&) = delete;
  Portal& operator=(const Portal&) = delete;

  /// Returns when `asked` has been called, or when it is late. Any thread but the main one.
  void waitUntilAsked();
  /// The session bus is another than before.
  void rejoin();

  /// What is known by now; stays when the portal goes.
  [[nodiscard]] const PortalAnswers& answers() const { return answers_; }
  [[nodiscard]] std::unique_ptr<Observation> observe(std::function<void()> changed) {
    return observers_.add(std::move(changed));
  }

  /// Before the first wish. What hears of them may be called as long as this lives.
  void hearOfShortcut(ShortcutNews news);
  /// In place of what was wished before; a portal that does not run is started for it, which helps
  /// as long as the process is open.
  void wantShortcut(const ShortcutWish& wish);
  void giveShortcutBack();

 private:
  struct Conversation;  // on the thread

  const Deadline deadline_;
  std::mutex mutex_;
  std::condition_variable changed_;
  bool asked_ = false;  // guarded
  PortalAnswers answers_;
  ChangeObservers observers_;
  Lifetime life_;
  std::unique_ptr<Conversation> conversation_;  // last: it ends before what it uses
};

}  // namespace vantorel
