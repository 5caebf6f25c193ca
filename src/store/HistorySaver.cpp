#include "store/HistorySaver.h"

#include <algorithm>
#include <utility>

#include "store/ClipRetention.h"

namespace vantorel {
namespace {

constexpr Seconds longestRetry{300};

// Encoding, sealing and writing so much takes about half of the time between two frames.
constexpr std::size_t maxBytesAtOnce = 2'000'000;

std::size_t contentBytes(const std::vector<ClipItem>& items) {
  std::size_t total = 0;
  for (const ClipItem& item : items) {
    if (item.text) total += item.text->get().size();
    if (item.rtfData) total += item.rtfData->get().size();
    if (item.htmlData) total += item.htmlData->get().size();
  }
  return total;
}

}  // namespace

HistorySaver::HistorySaver(Dispatch& dispatch, SealedHistory file, AssetFolder assets,
                           const std::vector<ClipItem>& items)
    : dispatch_(dispatch), file_(std::move(file)), assets_(std::move(assets)), items_(items) {}

HistorySaver::~HistorySaver() {
  const bool isOnDisk = !endsUnsaved() || file_.write(items_);
  if (isOnDisk && !discarded_.empty()) assets_.removeOrphans(namedAssets(items_));
}

/// Gives up the save under way, if any; whether the latest list is still to be written.
bool HistorySaver::endsUnsaved() {
  if (!background_) return !isSaved_;
  const auto hasSaved = background_->hasSaved;
  const bool again = background_->again;
  giveUpSave();
  return again || !*hasSaved;
}

void HistorySaver::save() {
  isSaved_ = false;
  if (background_) {
    background_->again = true;
  } else if (contentBytes(items_) > maxBytesAtOnce) {
    saveInBackground();
  } else {
    settle(file_.write(items_));
  }
}

void HistorySaver::saveInBackground() {
  background_ = std::make_unique<Background>();
  background_->queue = dispatch_.serialQueue("com.vantorel.history");
  auto finish = background_->life.guard([this](bool saved) {
    const bool again = std::exchange(background_, nullptr)->again;
    if (again) {
      save();
    } else {
      settle(saved);
    }
  });
  background_->queue->async([items = items_, file = file_, &main = dispatch_,
                             hasSaved = background_->hasSaved, finish = std::move(finish)] {
    const bool saved = file.write(items);
    *hasSaved = saved;
    main.async([finish, saved] { finish(saved); });
  });
}

void HistorySaver::settle(bool saved) {
  if (saved) {
    isSaved_ = true;
    retry_.reset();
    retryDelay_ = firstRetry;
    discarded_.clear();
    assets_.removeOrphans(namedAssets(items_));
    return;
  }
  if (retry_) return;
  retry_ = dispatch_.after(retryDelay_, [this] {
    const auto fired = std::move(retry_);  // this very timer: it goes when its work is done
    retryDelay_ = std::min(retryDelay_ * 2, longestRetry);
    save();
  });
}

void HistorySaver::deleteDiscarded() {
  for (const std::string& name : std::exchange(discarded_, {})) assets_.remove(name);
}

}  // namespace vantorel
