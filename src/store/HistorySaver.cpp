#include "store/HistorySaver.h"

#include <algorithm>
#include <exception>
#include <utility>

#include "base/AtomicFile.h"
#include "store/ClipRetention.h"
#include "store/HistoryFile.h"
#include "store/SealedFile.h"

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

bool writeHistory(FileSystem& files, const std::filesystem::path& path,
                  const SecureStorage& storage, const std::vector<ClipItem>& items) {
  if (contentBytes(items) > maximumHistoryBytes) return false;  // nor does the JSON fit then
  try {
    const Bytes json = encodeHistory(items);
    return json.size() <= maximumHistoryBytes && writeSealed(files, path, storage, json);
  } catch (const std::exception&) {  // no memory for it
    return false;
  }
}

}  // namespace

HistorySaver::HistorySaver(Dispatch& dispatch, FileSystem& files, std::filesystem::path path,
                           AssetFolder assets, std::shared_ptr<const SecureStorage> storage,
                           const std::vector<ClipItem>& items)
    : dispatch_(dispatch),
      files_(files),
      path_(std::move(path)),
      assets_(std::move(assets)),
      storage_(std::move(storage)),
      items_(items) {}

HistorySaver::~HistorySaver() {
  const bool isOnDisk = !endsUnsaved() || saveAtOnce();
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

bool HistorySaver::saveAtOnce() {
  return storage_ && writeHistory(files_, path_, *storage_, items_);
}

void HistorySaver::save() {
  if (!storage_) return;
  isSaved_ = false;
  if (background_) {
    background_->again = true;
  } else if (contentBytes(items_) > maxBytesAtOnce) {
    saveInBackground();
  } else {
    settle(saveAtOnce());
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
  background_->queue->async([items = items_, storage = storage_, path = path_, &files = files_,
                             &main = dispatch_, hasSaved = background_->hasSaved,
                             finish = std::move(finish)] {
    const bool saved = writeHistory(files, path, *storage, items);
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

void HistorySaver::removeUnfinishedWrites() {
  const auto directory = path_.parent_path();
  for (const auto& name : files_.list(directory).value_or(std::vector<FileSystem::Path>())) {
    if (isUnfinishedWrite(name.string(), path_.filename().string()))
      (void)files_.remove(directory / name);
  }
}

void HistorySaver::deleteDiscarded() {
  for (const std::string& name : std::exchange(discarded_, {})) assets_.remove(name);
}

}  // namespace vantorel
