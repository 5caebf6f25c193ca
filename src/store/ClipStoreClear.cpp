// Clearing the history, and the new key that nothing of the old one opens with.
#include <map>
#include <utility>

#include "store/ClipStore.h"
#include "store/SealedFile.h"

namespace vantorel {

ClipStore::~ClipStore() { settleKey(); }

void ClipStore::clear(bool includingPinned) {
  takeOut([&](const ClipItem& item) { return includingPinned || !item.pinned(); });
  // A history that could not be read may hold pins: it goes only with everything.
  if (persistenceIsReady_ || includingPinned) clearDisk();
  commit(Upkeep::none);
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
