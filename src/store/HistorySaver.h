// SPDX-License-Identifier: MIT
#pragma once

#include <atomic>
#include <functional>
#include <memory>
#include <set>
#include <string>
#include <vector>

#include "base/Lifetime.h"
#include "platform/Dispatch.h"
#include "store/AssetFolder.h"
#include "store/ClipItem.h"
#include "store/SealedHistory.h"

namespace vantorel {

/// Brings the history onto the disk. A save that failed is tried again by itself, but not one of a
/// list that is too large, which waits until the list changes. A list of some
/// megabytes is written on a queue of its own, and once more if it has changed meanwhile, so that a
/// long text stops nothing. Until a save has succeeded the list on the disk may name files that the
/// list in memory no longer does: only then are they deleted. Main thread.
class HistorySaver {
 public:
  /// Saves `items`, as it then is, to `file`. All outlive this but what is copied.
  HistorySaver(Dispatch& dispatch, SealedHistory file, AssetFolder assets,
               const std::vector<ClipItem>& items);
  /// Finishes.
  ~HistorySaver();
  HistorySaver(const HistorySaver&) = delete;
  HistorySaver& operator=(const HistorySaver&) = delete;

  /// Saves have begun to fail, or do so otherwise, or no longer. Not called while this ends.
  std::function<void()> onTroubleChange;
  /// What became of the last save that has ended; `saved` before there was one.
  [[nodiscard]] SealedHistory::Outcome lastSave() const { return lastSave_; }

  /// Saves at once, or a long list on a queue; tries again by itself when that fails.
  void save();
  /// For the end of the process: waits for a save under way, and unless that brought the latest
  /// list to the disk, or nothing had to go there, saves once more. Nobody is told of trouble any
  /// more.
  void finish();
  /// Tells whether the list as it is came to the disk: at once, or when the save under way has
  /// ended. Never once that was given up, or this ends.
  void whenSaved(std::function<void(bool)> tell);
  /// Returns when nothing writes any more, and nothing will until the next `save`. Whether the last
  /// save came to its end is not known then.
  void giveUpSave() {
    background_.reset();
    retry_.reset();
    waiting_.clear();
    isOwed_ = false;
  }

  /// Asset files that the list names no longer, and the disk perhaps still does.
  void discard(const std::set<std::string>& names) {
    discarded_.insert(names.begin(), names.end());
  }
  [[nodiscard]] const std::set<std::string>& discarded() const { return discarded_; }

 private:
  // A full disk is usually noticed and freed within minutes.
  static constexpr Seconds firstRetry{5};

  struct Background {
    std::unique_ptr<SerialQueue> queue;
    bool again = false;  // the list has changed since
    /// What has become of it so far.
    std::shared_ptr<std::atomic<SealedHistory::Outcome>> outcome =
        std::make_shared<std::atomic<SealedHistory::Outcome>>(SealedHistory::Outcome::failed);
    Lifetime life;
  };

  void saveInBackground();
  void settle(SealedHistory::Outcome outcome);

  Dispatch& dispatch_;
  SealedHistory file_;
  AssetFolder assets_;
  const std::vector<ClipItem>& items_;
  std::set<std::string> discarded_;
  Seconds retryDelay_ = firstRetry;
  std::unique_ptr<Timer> retry_;
  std::unique_ptr<Background> background_;          // while a save is under way
  std::vector<std::function<void(bool)>> waiting_;  // for the save under way
  SealedHistory::Outcome lastSave_ = SealedHistory::Outcome::saved;
  bool isOwed_ = false;  // the list is to be saved, and no save has ended
};

}  // namespace vantorel
