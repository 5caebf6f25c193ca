// SPDX-License-Identifier: MIT
#include "store/HistorySaver.h"

#include <algorithm>
#include <system_error>
#include <utility>

#include "store/ClipRetention.h"

namespace vantorel {
namespace {

using Outcome = SealedHistory::Outcome;

constexpr Seconds longestRetry{300};

// Encoding, sealing and writing so much takes about half of the time between two frames.
constexpr std::size_t maxBytesAtOnce = 2'000'000;

std::size_t contentBytes(const std::vector<ClipItem>& items) {
  std::size_t total = 0;
  for (const ClipItem& item : items) {
    if (item.text) total += item.text->get().size();
    if (item.rtfData) total += item.rtfData->get().size();
    if (item.htmlData) total += item.htmlData->get().size();
    if (item.recognizedText) total += item.recognizedText->size();
    total += item.preview.size();
    for (const std::string& path : item.filePaths) total += path.size();
  }
  return total;
}

}  // namespace

HistorySaver::HistorySaver(Dispatch& dispatch, SealedHistory file, AssetFolder assets,
                           const std::vector<ClipItem>& items)
    : dispatch_(dispatch), file_(std::move(file)), assets_(std::move(assets)), items_(items) {}

HistorySaver::~HistorySaver() { finish(); }

void HistorySaver::finish() {
  onTroubleChange = nullptr;
  waiting_.clear();
  if (background_) {
    const auto outcome = background_->outcome;
    const bool again = background_->again;
    background_.reset();
    if (!again) settle(*outcome);
  }
  if (isOwed_) settle(file_.write(items_));
}

void HistorySaver::save() {
  isOwed_ = true;
  if (background_) {
    background_->again = true;
  } else if (contentBytes(items_) > maxBytesAtOnce) {
    saveInBackground();
  } else {
    settle(file_.write(items_));
  }
}

void HistorySaver::whenSaved(std::function<void(bool)> tell) {
  if (!background_) return tell(lastSave_ == Outcome::saved);
  waiting_.push_back(std::move(tell));
}

void HistorySaver::saveInBackground() {
  auto background = std::make_unique<Background>();
  try {
    background->queue = dispatch_.serialQueue("com.vantorel.history");
  } catch (const std::system_error&) {
    return settle(Outcome::failed);
  }
  background_ = std::move(background);
  auto finish = background_->life.guard([this](Outcome outcome) {
    const bool again = std::exchange(background_, nullptr)->again;
    if (again) {
      save();
    } else {
      settle(outcome);
    }
  });
  background_->queue->async([items = items_, file = file_, &main = dispatch_,
                             last = background_->outcome, finish = std::move(finish)] {
    const Outcome outcome = file.write(items);
    *last = outcome;
    main.async([finish, outcome] { finish(outcome); });
  });
}

void HistorySaver::settle(Outcome outcome) {
  if (outcome != Outcome::failed) {
    isOwed_ = false;
    retry_.reset();
    retryDelay_ = firstRetry;
  }
  if (outcome == Outcome::saved) {
    discarded_.clear();
    assets_.removeOrphans(namedAssets(items_));
  }
  if (std::exchange(lastSave_, outcome) != outcome && onTroubleChange) onTroubleChange();
  for (const auto& tell : std::exchange(waiting_, {})) tell(outcome == Outcome::saved);
  if (retry_ || !isOwed_) return;
  retry_ = dispatch_.after(retryDelay_, [this] {
    const auto fired = std::move(retry_);  // this very timer: it goes when its work is done
    retryDelay_ = std::min(retryDelay_ * 2, longestRetry);
    save();
  });
}

}  // namespace vantorel
