// Where the rows' pictures and icons come from.

#include "panel/HistoryPanelController.h"
#include "panel/HistoryPanelView.h"

namespace vantorel {

/// Gives the rows the pictures that are there, and has the others made.
void HistoryPanelController::requestPictures() {
  std::unordered_set<std::string> applications;
  for (const auto& item : displayedItems_) {
    requestThumbnail(item);
    if (item.sourceBundleIdentifier && applications.insert(*item.sourceBundleIdentifier).second) {
      requestSourceIcon(*item.sourceBundleIdentifier);
    }
  }
}

void HistoryPanelController::requestThumbnail(const ClipItem& item) {
  if (item.kind == ClipKind::text) return;
  if (auto picture = thumbnails_.cached(item.id)) {
    return view_->list.setThumbnail(item.id, std::move(picture));
  }
  // A disk that does not answer is not asked a second time, and an image that could not be read is
  // read again at the next showing.
  if (!availability_.isAnswered(item)) return;
  if (item.kind == ClipKind::image && !requestedImages_.insert(item.id).second) return;
  // Whoever makes it may take its time, or never come back.
  if (!awaitedPictures_.insert(item.id).second) return;
  thumbnails_.requestThumbnail(
      item, [this, alive = std::weak_ptr(alive_), id = item.id](SharedBitmap picture) {
        if (alive.expired()) return;
        awaitedPictures_.erase(id);
        if (displayed(id) == nullptr) return;
        view_->list.setThumbnail(id, std::move(picture));
      });
}

void HistoryPanelController::requestSourceIcon(const std::string& bundleIdentifier) {
  services_.icons.applicationIcon(bundleIdentifier, [this, alive = std::weak_ptr(alive_),
                                                     bundleIdentifier](const SharedBitmap& icon) {
    if (!alive.expired() && !displayedItems_.empty()) {
      view_->list.setSourceIcon(bundleIdentifier, icon);
    }
  });
}

}  // namespace vantorel
