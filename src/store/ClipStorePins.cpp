// What the user does to the history: pins, names, order, removal.
#include <algorithm>
#include <exception>
#include <iterator>
#include <utility>

#include "store/ClipOrder.h"
#include "store/ClipRetention.h"
#include "store/ClipStore.h"
#include "text/Unicode.h"

namespace vantorel {

bool ClipStore::canPinMore() const { return pinnedCount(items_) < maxPinnedItems; }

PinResult ClipStore::togglePinned(Uuid id) {
  ClipItem* const item = findById(items_, id);
  if (item == nullptr) return PinResult::notFound;
  if (!item->pinned() && !canPinMore()) return PinResult::limitReached;
  item->isPinned = !item->pinned();
  item->pinOrder.reset();
  if (item->pinned()) item->pinOrder = static_cast<std::int64_t>(pinnedCount(items_)) - 1;
  prune();
  numberPins(items_);
  saveAndNotify();
  return PinResult::toggled;
}

bool ClipStore::renamePinned(Uuid id, std::string_view name) {
  constexpr std::size_t longestName = 80;  // characters
  ClipItem* const item = findById(items_, id);
  if (item == nullptr || !item->pinned()) return false;
  const std::string customName(prefixOfCharacters(trimmed(name), longestName));
  item->customName.reset();
  if (!customName.empty()) item->customName = customName;
  saveAndNotify();
  return true;
}

bool ClipStore::movePinned(Uuid id, Uuid relativeTo, bool before) {
  auto moved = withMovedPin(items_, id, relativeTo, before);
  if (!moved) return false;
  items_ = std::move(*moved);
  numberPins(items_);
  saveAndNotify();
  return true;
}

void ClipStore::remove(Uuid id) {
  const auto goes = [wanted = id](const ClipItem& item) { return item.id == wanted; };
  const auto firstGone = std::stable_partition(items_.begin(), items_.end(),
                                               [&](const ClipItem& item) { return !goes(item); });
  if (firstGone == items_.end()) return;
  const std::vector<ClipItem> gone(std::make_move_iterator(firstGone),
                                   std::make_move_iterator(items_.end()));
  items_.erase(firstGone, items_.end());
  discardAssetsOf(gone);
  saveAndNotify();
}

void ClipStore::clear(bool includingPinned) {
  const auto firstGone = std::stable_partition(
      items_.begin(), items_.end(),
      [&](const ClipItem& item) { return item.pinned() && !includingPinned; });
  const std::vector<ClipItem> gone(std::make_move_iterator(firstGone),
                                   std::make_move_iterator(items_.end()));
  items_.erase(firstGone, items_.end());
  discardAssetsOf(gone);
  // A history that could not be read may hold pins: it goes only with everything.
  const bool clearsDisk = persistenceIsReady_ || includingPinned;
  if (clearsDisk) {
    // Nothing may bring back what is being taken away.
    endBackgroundSave();
    // The legacy history first: left alone without the other, it would be taken up again.
    (void)services_.files.remove(legacyIndexUrl_);
    if (items_.empty()) {
      (void)services_.files.remove(indexUrl_);
      replaceStorageKey();
    }
  }
  saveNowOrLater();
  removeDiscardedAssets();
  if (clearsDisk && !backgroundSave_) assets_.removeOrphans(namedAssets(items_));
  if (onChange) onChange();
}

/// So that no copy of what was cleared can be opened. The old key stays when the keychain does not
/// take the new one.
void ClipStore::replaceStorageKey() {
  if (!secureStorage_) return;
  try {
    secureStorage_->rotateKey();
  } catch (const std::exception&) {
    return;  // the next clear tries again
  }
}

}  // namespace vantorel
