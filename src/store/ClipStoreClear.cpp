// Clearing the history, the new key that nothing of the old one opens with, and the way out for who
// has a history that does not open.
#include <algorithm>
#include <map>
#include <utility>

#include "base/Iso8601.h"
#include "store/ClipStore.h"
#include "store/HistoryFile.h"
#include "store/SealedFile.h"

namespace vantorel {

ClipStore::~ClipStore() { settleKey(); }

bool ClipStore::clear(bool includingPinned) {
  // What kept it from being read may be over; then it is like any other.
  if (!persistenceIsReady_ && secureStorage_) open();
  takeOut([&](const ClipItem& item) { return includingPinned || !item.pinned(); });
  const bool goes = persistenceIsReady_ || (secureStorage_ && (includingPinned || doesNotOpen()));
  if (goes) clearDisk();
  if (goes && !persistenceIsReady_) open();
  commit(Upkeep::none);
  return goes && persistenceIsReady_;
}

/// Whether what could not be loaded has been read and is of no use. With the key in hand it will
/// not be tomorrow either.
bool ClipStore::doesNotOpen() {
  if (!secureStorage_ || persistenceIsReady_) return false;
  const bool isSealed = services_.files.exists(indexUrl_);
  auto json = services_.files.readFile(isSealed ? indexUrl_ : legacyIndexUrl_, maximumHistoryBytes);
  if (!json) return false;
  if (isSealed) json = opened(*secureStorage_, *json);
  return !json || !decodeHistory(std::move(*json));
}

ClipStore::SetAsideResult ClipStore::setAside() {
  if (!secureStorage_) return {};
  if (!persistenceIsReady_) {
    if (directories_.prepare()) return {};  // it is not the history that stands in the way
    open();
  }
  if (persistenceIsReady_) return {.outcome = SetAside::notNeeded, .history = {}};
  const std::string suffix = freeSuffix();
  const auto& stands = services_.files.exists(indexUrl_) ? indexUrl_ : legacyIndexUrl_;
  const std::filesystem::path kept = stands.string() + suffix;
  if (!moveAside(suffix)) return {};
  open();
  if (!persistenceIsReady_) return {};
  commit(Upkeep::none);
  return {.outcome = SetAside::done, .history = kept};
}

/// Ends names that nothing has yet: ".20250314-092653" in UTC, and a number behind it if need be.
std::string ClipStore::freeSuffix() {
  std::string moment = iso8601(services_.dispatch.now());
  std::erase_if(moment, [](char c) { return c == '-' || c == ':' || c == 'Z'; });
  std::replace(moment.begin(), moment.end(), 'T', '-');
  std::string suffix = "." + moment;
  const auto isTaken = [this](const std::filesystem::path& path, const std::string& ending) {
    return services_.files.exists(path.string() + ending);
  };
  for (int number = 2; isTaken(indexUrl_, suffix) || isTaken(legacyIndexUrl_, suffix) ||
                       isTaken(assetsUrl(), suffix);
       ++number) {
    suffix = "." + moment + "-" + std::to_string(number);
  }
  return suffix;
}

/// The pictures first: without their history they would be taken for files that nobody names.
/// Whatever fails, what was moved goes back.
bool ClipStore::moveAside(const std::string& suffix) {
  std::vector<std::filesystem::path> moved;
  for (const auto& path : {assetsUrl(), indexUrl_, legacyIndexUrl_}) {
    if (!services_.files.exists(path)) continue;
    if (services_.files.rename(path, path.string() + suffix)) {
      std::reverse(moved.begin(), moved.end());
      for (const auto& back : moved) (void)services_.files.rename(back.string() + suffix, back);
      return false;
    }
    moved.push_back(path);
  }
  return !services_.files.syncDirectory(baseUrl());
}

/// Takes away what the list on the disk has besides the pins that are left.
void ClipStore::clearDisk() {
  // Nothing may bring back what is being taken away.
  saver_.giveUpSave();
  // The legacy history first: left alone without the other, it would be taken up again.
  (void)services_.files.remove(legacyIndexUrl_);
  if (!items_.empty()) return;
  (void)services_.files.remove(indexUrl_);
  replaceKey();
  // The disk names no picture any more, and may have no room to say so.
  if (!services_.files.exists(indexUrl_)) assets_.removeOrphans({});
}

/// So that no copy of what was cleared can be opened. Where the keychain does not take the new key
/// the old one stays, and the next clear tries again.
void ClipStore::replaceKey() {
  if (secureStorage_) secureStorage_->beginRotation(life_.guard([this] { settleKey(); }));
}

/// Brings what was written while the keychain was asked under the key that it has now.
void ClipStore::settleKey() {
  if (!isRotatingKey()) return;
  saver_.giveUpSave();  // it may be sealing under the key that goes
  std::map<std::filesystem::path, Bytes> pictures;
  for (const ClipItem& item : items_) {
    auto bytes = assetData(item);
    if (bytes) pictures.emplace(assetsUrl() / *item.assetFilename, std::move(*bytes));
  }
  if (secureStorage_->settleRotation()) {
    for (const auto& [path, bytes] : pictures) {
      (void)writeSealed(services_.files, path, *secureStorage_, bytes);
    }
    // Nothing opens it any more. Without it, the next start finds no history, not a foreign one.
    (void)services_.files.remove(indexUrl_);
  }
  if (persistenceIsReady_) saver_.save();
}

}  // namespace vantorel
