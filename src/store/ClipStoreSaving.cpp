// How the list comes onto the disk, and when files that it no longer names leave it.
#include <algorithm>
#include <exception>
#include <utility>

#include "store/ClipRetention.h"
#include "store/ClipStore.h"
#include "store/HistoryFile.h"
#include "store/SealedFile.h"

namespace vantorel {
namespace {

constexpr Seconds longestRetry{300};

// Encoding, sealing and writing so much takes about half of the time between two frames.
constexpr std::size_t mostBytesAtOnce = 2'000'000;

std::size_t contentBytes(const std::vector<ClipItem>& items) {
  std::size_t total = 0;
  for (const ClipItem& item : items) {
    if (item.text) total += item.text->get().size();
    if (item.rtfData) total += item.rtfData->get().size();
    if (item.htmlData) total += item.htmlData->get().size();
  }
  return total;
}

bool writeHistory(FileSystem& files, const std::filesystem::path& path,
                  const SecureStorage& storage, const std::vector<ClipItem>& items) {
  try {
    const Bytes json = encodeHistory(items);
    return json.size() <= maximumHistoryBytes && writeSealed(files, path, storage, json);
  } catch (const std::exception&) {  // no memory for it
    return false;
  }
}

}  // namespace

ClipStore::~ClipStore() {
  alive_.reset();
  for (auto& [id, stop] : scheduledRecognition_) stop.request_stop();
  if (!backgroundSave_) return;
  endBackgroundSave();
  (void)save();
}

bool ClipStore::save() {
  if (!persistenceIsReady_ || !secureStorage_) return false;
  return writeHistory(services_.files, indexUrl_, *secureStorage_, items_);
}

void ClipStore::saveNowOrLater() {
  stopNeedlessRecognition();
  if (backgroundSave_) {
    backgroundSave_->again = true;
  } else if (persistenceIsReady_ && secureStorage_ && contentBytes(items_) > mostBytesAtOnce) {
    saveInBackground();
  } else {
    settleSave(save());
  }
}

/// Writes the list as it is now; what it becomes meanwhile is written after that, once.
void ClipStore::saveInBackground() {
  backgroundSave_ = std::make_unique<BackgroundSave>();
  backgroundSave_->queue = services_.dispatch.serialQueue("com.vantorel.history");
  backgroundSave_->queue->async([this, items = items_, storage = secureStorage_, path = indexUrl_,
                                 &files = services_.files, &main = services_.dispatch,
                                 underWay = std::weak_ptr(backgroundSave_->underWay)] {
    const bool saved = writeHistory(files, path, *storage, items);
    main.async([this, underWay, saved] {
      if (!underWay.expired()) finishBackgroundSave(saved);
    });
  });
}

void ClipStore::finishBackgroundSave(bool saved) {
  const bool again = backgroundSave_->again;
  backgroundSave_.reset();
  if (again) {
    saveNowOrLater();
  } else {
    settleSave(saved);
  }
  removeDiscardedAssets();
  removeOrphanedAssets();
}

/// Returns when nothing writes any more. Whether the last write came to its end is not known then.
void ClipStore::endBackgroundSave() { backgroundSave_.reset(); }

void ClipStore::settleSave(bool saved) {
  if (saved) {
    saveRetry_.reset();
    saveRetryDelay_ = firstSaveRetry;
    return;
  }
  if (!persistenceIsReady_ || saveRetry_) return;
  saveRetry_ = services_.dispatch.after(saveRetryDelay_, [this] {
    const auto fired = std::move(saveRetry_);  // this very timer: it goes when its work is done
    saveRetryDelay_ = std::min(saveRetryDelay_ * 2, longestRetry);
    saveNowOrLater();
  });
}

void ClipStore::saveAndNotify() {
  saveNowOrLater();
  removeDiscardedAssets();
  if (onChange) onChange();
}

/// While the list is being written, the one on the disk still names them.
void ClipStore::removeDiscardedAssets() {
  if (backgroundSave_) return;
  for (const std::string& name : std::exchange(discardedAssets_, {})) assets_.remove(name);
}

void ClipStore::removeOrphanedAssets() {
  // Without the list that is on the disk, every file there would look like an orphan.
  if (persistenceIsReady_ && !backgroundSave_) assets_.removeOrphans(namedAssets(items_));
}

}  // namespace vantorel
