// SPDX-License-Identifier: MIT
#include "store/ClipStore.h"

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <exception>
#include <iterator>
#include <map>
#include <new>
#include <utility>

#include "base/ContentFingerprint.h"
#include "platform/ApplicationId.h"
#include "security/SecureStorageError.h"
#include "store/CapturedEntries.h"
#include "store/ClipDuplicates.h"
#include "store/ClipOrder.h"
#include "store/ClipRetention.h"
#include "store/HistoryFile.h"
#include "store/SealedFile.h"
#include "store/SetAside.h"
#include "store/StoredPicture.h"

namespace vantorel {
namespace {

std::filesystem::path baseDirectory(const ClipStoreServices& services,
                                    const std::optional<std::filesystem::path>& baseUrl) {
  if (baseUrl) return *baseUrl;
  if (services.applicationSupport.empty()) {
    std::fputs("vantorel: there is no directory to keep the history in\n", stderr);
    std::abort();
  }
  return services.applicationSupport / applicationId::historyDirectory;
}

std::shared_ptr<SecureStorage> storageFor(const ClipStoreServices& services,
                                          const std::filesystem::path& index,
                                          ClipStore::Obstacle& obstacle) {
  try {
    return SecureStorage::production(
        services.keychain, [&] { return !SealedHistory::mayBeSealed(services.files, index); });
  } catch (const SecureStorageError& error) {
    obstacle = error.status() == keychainStatus::itemNotFound ? ClipStore::Obstacle::keyMissing
                                                              : ClipStore::Obstacle::noKey;
  } catch (const std::exception&) {
    obstacle = ClipStore::Obstacle::noKey;
  }
  return nullptr;
}

}  // namespace

ClipStore::ClipStore(ClipStoreServices services,
                     const std::optional<std::filesystem::path>& baseUrl,
                     std::shared_ptr<SecureStorage> secureStorage, ClipStoreLimits limits)
    : services_(std::move(services)),
      limits_(limits),
      directories_(services_.files, baseDirectory(services_, baseUrl)),
      indexUrl_(directories_.base() / SealedHistory::fileName),
      legacyIndexUrl_(directories_.base() / SealedHistory::legacyFileName),
      assets_(services_.files, directories_.assets()),
      secureStorage_(secureStorage ? std::move(secureStorage)
                     : baseUrl     ? SecureStorage::ephemeral()
                                   : storageFor(services_, indexUrl_, obstacle_)),
      file_({services_.files, secureStorage_}, directories_, indexUrl_, limits_.maxHistoryBytes),
      saver_(services_.dispatch, file_, assets_, items_),
      readings_({.dispatch = services_.dispatch,
                 .recognition = services_.recognition,
                 .queue = services_.recognitionQueue,
                 .assets = assets_,
                 .storage = secureStorage_},
                items_, [this](Uuid id, const auto& contentHash, const std::string& text) {
                  setRecognizedText(id, contentHash, text);
                }) {
  saver_.onTroubleChange = [this] {
    if (onSavingChange) onSavingChange();
  };
  open();
  if (assets_.isLink()) {
    std::fputs("vantorel: no pictures are kept, for their directory is a symbolic link\n", stderr);
  }
}

void ClipStore::open() {
  items_.clear();  // a history that was read and could not be sealed is read again
  const bool hasDirectories = !directories_.prepare();
  if (!secureStorage_) return;
  obstacle_ = !hasDirectories ? Obstacle::directory
              : load()        ? Obstacle::none
                              : Obstacle::unreadable;
  if (persistenceIsReady()) tidyLoadedHistory();
}

bool ClipStore::load() {
  if (!services_.files.exists(indexUrl_)) return migrateLegacy();
  auto items = file_.read();
  if (!items) return false;
  items_ = std::move(*items);
  return true;
}

bool ClipStore::migrateLegacy() {
  auto json = services_.files.readFile(legacyIndexUrl_, maximumHistoryBytes);
  // One that stands there and cannot be read names pictures that nothing else does.
  if (!json) return !services_.files.exists(legacyIndexUrl_);
  auto items = decodeHistory(std::move(*json));
  if (!items) return false;
  items_ = std::move(*items);
  if (!encryptLegacyAssets() || file_.write(items_) != SealedHistory::Outcome::saved) {
    return false;
  }
  (void)services_.files.remove(legacyIndexUrl_);
  return true;
}

bool ClipStore::encryptLegacyAssets() {
  for (const ClipItem& item : items_) {
    if (item.kind != ClipKind::image || !item.assetFilename) continue;
    const auto bytes = assets_.read(*item.assetFilename);
    if (!bytes || SecureStorage::isSealed(*bytes)) continue;
    if (!assets_.seal(*item.assetFilename, *secureStorage_, *bytes)) return false;
  }
  return true;
}

void ClipStore::tidyLoadedHistory() {
  separateIdentities(items_);
  items_ = coalesced(std::move(items_));
  file_.removeUnfinishedWrites();  // before there is one under way
  commit(Upkeep::all);
  for (const ClipItem& item : items_) readings_.begin(item);
}

/// The only way out for every change: tidied as far as it asks, saved, and told.
void ClipStore::commit(Upkeep upkeep) {
  if (upkeep == Upkeep::all) prune();
  if (upkeep != Upkeep::none) numberPins(items_);
  readings_.stopNeedless();
  if (persistenceIsReady()) {
    // Nothing is lost meanwhile, and no file lies there under a key that the keychain has not.
    const bool saysNothing = items_.empty() && isRotatingKey();
    if (!saysNothing) saver_.save();
  }
  if (onChange) onChange();
}

void ClipStore::prune() {
  const auto keep = [this](Retention retention) {
    items_ = std::move(retention.kept);
    discardAssetsOf(retention.dropped);
  };
  keep(pruned(std::move(items_), services_.dispatch.now(), limits_.maxAge, limits_.maxItems));
  keep(withinAssetBudget(std::move(items_), assets_.assetBytes(saver_.discarded()),
                         limits_.maxAssetBytes,
                         [this](const std::string& name) { return assets_.fileSize(name); }));
}

/// Answers whether there were such entries.
bool ClipStore::takeOut(const std::function<bool(const ClipItem&)>& goes) {
  const auto firstGone = std::stable_partition(items_.begin(), items_.end(), std::not_fn(goes));
  const std::vector<ClipItem> gone(std::make_move_iterator(firstGone),
                                   std::make_move_iterator(items_.end()));
  items_.erase(firstGone, items_.end());
  discardAssetsOf(gone);
  return !gone.empty();
}

void ClipStore::discardAssetsOf(const std::vector<ClipItem>& dropped) {
  // The history that stands on the disk names them, or may, and no list will take its place.
  if (!persistenceIsReady()) return;
  auto names = namedAssets(dropped);
  for (const std::string& stillNamed : namedAssets(items_)) names.erase(stillNamed);
  saver_.discard(names);
}

ClipStore::Capture ClipStore::insert(const ClipItem& item) {
  auto insertion = inserted(items_, item);
  items_ = std::move(insertion.items);
  const Capture capture{items_.front().id, insertion.isNews};
  commit(Upkeep::all);
  return capture;
}

std::optional<ClipStore::Capture> ClipStore::captureFiles(
    const std::vector<std::filesystem::path>& urls, const SourceApp& source) {
  if (urls.empty()) return std::nullopt;
  std::vector<std::string> paths;
  paths.reserve(urls.size());
  for (const auto& url : urls) paths.push_back(url.string());
  return insert(filesEntry(std::move(paths), source, services_.dispatch.now()));
}

std::optional<ClipStore::Capture> ClipStore::captureImage(const Image& image,
                                                          const SourceApp& source) {
  const auto encoded = encodedImage(image, limits_.maxSingleImageBytes);
  if (!encoded || !secureStorage_) return std::nullopt;
  std::string hash = ContentFingerprint::data(*encoded->bytes);
  std::string name = Uuid::random().string() + "." + encoded->extension;
  if (const ClipItem* const stored = storedImage(hash)) {
    name = *stored->assetFilename;
  } else if (directories_.restore() || !assets_.seal(name, *secureStorage_, *encoded->bytes)) {
    return std::nullopt;
  }
  const Capture capture = insert(
      imageEntry(image.size(), std::move(name), std::move(hash), source, services_.dispatch.now()));
  if (const ClipItem* const item = findById(items_, capture.id)) readings_.begin(*item);
  return capture;
}

/// An entry with these contents whose file is there and can be opened.
const ClipItem* ClipStore::storedImage(const std::string& contentHash) const {
  const auto found = std::find_if(items_.begin(), items_.end(), [&](const ClipItem& item) {
    return item.kind == ClipKind::image && item.contentHash == contentHash && assetData(item);
  });
  return found == items_.end() ? nullptr : &*found;
}

void ClipStore::setRecognizedText(Uuid id, const std::optional<std::string>& contentHash,
                                  const std::string& text) {
  ClipItem* const item = findById(items_, id);
  if (item == nullptr || item->kind != ClipKind::image || item->contentHash != contentHash ||
      item->recognizedText) {
    return;
  }
  item->recognizedText = text;
  commit(Upkeep::none);
  if (onSearchIndexChange) onSearchIndexChange();
}

std::optional<std::size_t> ClipStore::takeIn(const std::vector<ImportedClip>& clips) {
  if (!persistenceIsReady() || directories_.restore()) return std::nullopt;
  const auto nameOf = [this](const std::string& hash) -> std::optional<std::string> {
    const ClipItem* const stored = storedImage(hash);
    return stored != nullptr ? stored->assetFilename : std::nullopt;
  };
  // What would go again at once is not sealed first.
  const HistoryRoom room{services_.dispatch.now(), limits_, maxPinnedItems, assets_,
                         saver_.discarded()};
  auto items =
      withStoredPictures(withinRoom(clips, items_, room), assets_, *secureStorage_, nameOf);
  if (!items) return std::nullopt;
  items_ = merged(std::move(items_), std::move(*items), maxPinnedItems);
  commit(Upkeep::all);
  for (const ClipItem& item : items_) readings_.begin(item);
  return withContentsIn(items_, clips).size();
}

bool ClipStore::canPinMore() const { return pinnedCount(items_) < maxPinnedItems; }

PinResult ClipStore::togglePinned(Uuid id) {
  ClipItem* const item = findById(items_, id);
  if (item == nullptr) return PinResult::notFound;
  if (!item->pinned() && !canPinMore()) return PinResult::limitReached;
  numberPins(items_);  // one that was removed has left a gap
  item->isPinned = !item->pinned();
  item->pinOrder.reset();
  if (item->pinned()) item->pinOrder = static_cast<std::int64_t>(pinnedCount(items_)) - 1;
  commit(Upkeep::all);
  return PinResult::toggled;
}

bool ClipStore::renamePinned(Uuid id, std::string_view name) {
  ClipItem* const item = findById(items_, id);
  if (item == nullptr || !item->pinned()) return false;
  item->customName = pinName(name);
  commit(Upkeep::none);
  return true;
}

bool ClipStore::movePinned(Uuid id, Uuid relativeTo, bool before) {
  auto moved = withMovedPin(items_, id, relativeTo, before);
  if (!moved) return false;
  items_ = std::move(*moved);
  commit(Upkeep::numbers);
  return true;
}

void ClipStore::remove(Uuid id) {
  if (takeOut([id](const ClipItem& item) { return item.id == id; })) commit(Upkeep::none);
}

std::optional<Bytes> ClipStore::assetData(const ClipItem& item) const {
  return storedPicture(assets_, secureStorage_.get(), item);
}

ClipStore::~ClipStore() {
  saver_.onTroubleChange = nullptr;
  settleKey();
}

bool ClipStore::clear(bool includingPinned) {
  // What kept it from being read may be over; then it is like any other.
  if (!persistenceIsReady() && secureStorage_) open();
  // What another program holds, or no directory can be made for, is not this one's to delete.
  const bool isOurs = persistenceIsReady() || !directories_.prepare();
  takeOut([&](const ClipItem& item) { return includingPinned || !item.pinned(); });
  const bool goes =
      persistenceIsReady() || (secureStorage_ && isOurs && (includingPinned || doesNotOpen()));
  if (goes) clearDisk();
  if (goes && !persistenceIsReady()) open();
  commit(Upkeep::none);
  return goes && persistenceIsReady() && isClearOnDisk();
}

/// Whether no more than the list stands there, or is on its way.
bool ClipStore::isClearOnDisk() {
  if (services_.files.exists(legacyIndexUrl_)) return false;
  const bool stands = services_.files.exists(indexUrl_);
  // Nothing is written before the new key is known.
  if (items_.empty() && (!stands || isRotatingKey())) return !stands;
  return lastSave() == SealedHistory::Outcome::saved;
}

/// Whether what could not be loaded has been read and is of no use. With the key in hand it will
/// not be tomorrow either.
bool ClipStore::doesNotOpen() {
  if (!secureStorage_ || persistenceIsReady()) return false;
  const bool isSealed = services_.files.exists(indexUrl_);
  auto json = services_.files.readFile(
      isSealed ? indexUrl_ : legacyIndexUrl_,
      maximumHistoryBytes + (isSealed ? SealedHistory::maximumOverhead : 0));
  if (!json) return false;
  try {
    if (isSealed) json = secureStorage_->open(*json);
  } catch (const std::bad_alloc&) {
    return false;  // it may open when there is memory for it
  } catch (const std::exception&) {
    return true;
  }
  return !decodeHistory(std::move(*json));
}

ClipStore::SetAsideResult ClipStore::setAside() {
  if (obstacle_ == Obstacle::noKey) return {};
  if (!persistenceIsReady()) {
    if (directories_.prepare()) return {};  // it is not the history that stands in the way
    open();
  }
  if (persistenceIsReady()) return {.outcome = SetAside::notNeeded, .history = {}};
  const auto& stands = services_.files.exists(indexUrl_) ? indexUrl_ : legacyIndexUrl_;
  // The pictures first: without their history they would be taken for files that nobody names.
  const auto suffix = moveAside(services_.files, {assetsUrl(), indexUrl_, legacyIndexUrl_},
                                services_.dispatch.now());
  if (!suffix) return {};
  const std::filesystem::path kept = stands.string() + *suffix;
  open();
  if (secureStorage_ && !persistenceIsReady()) {
    return {.outcome = SetAside::failed, .history = kept};
  }
  commit(Upkeep::none);
  return {.outcome = SetAside::done, .history = kept};
}

/// Takes away what the list on the disk has besides the pins that are left.
void ClipStore::clearDisk() {
  // Nothing may bring back what is being taken away.
  saver_.giveUpSave();
  // The legacy history first: left alone without the other, it would be taken up again.
  (void)services_.files.remove(legacyIndexUrl_);
  if (!items_.empty()) return;
  (void)services_.files.remove(indexUrl_);
  // Before its key is gone: were it to come back with the power, nothing would open it.
  (void)services_.files.syncDirectory(directories_.base());
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
    // Nothing opens the one on the disk any more. Without it, the next start finds no history, not
    // a foreign one.
    if (file_.write(items_) != SealedHistory::Outcome::saved) {
      (void)services_.files.remove(indexUrl_);
    }
  }
  if (persistenceIsReady()) saver_.save();
}

}  // namespace vantorel
