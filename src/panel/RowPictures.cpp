// SPDX-License-Identifier: MIT
#include "panel/RowPictures.h"

#include <algorithm>
#include <utility>

#include "panel/ClipListView.h"

namespace vantorel {

RowPictures::RowPictures(const ClipStore& store, const PanelServices& services,
                         const DisplayedClips& clips, ClipListView& list)
    : store_(store),
      icons_(services.icons),
      clips_(clips),
      list_(list),
      availability_(services.dispatch,
                    [files = services.distantFiles](const ClipItem& item) {
                      return vantorel::availability(item, *files);
                    }),
      thumbnails_(store, ThumbnailServices{services.dispatch, services.files, services.images,
                                           services.fileThumbnails, services.icons,
                                           services.screens, [this](const ClipItem& item) {
                                             return availability_.of(item) ==
                                                    Availability::unavailable;
                                           }}) {
  availability_.onAnswer = [this](Uuid id, Availability) {
    const auto* item = prepared_.erase(id) != 0 ? findById(store_.items(), id) : nullptr;
    if (item != nullptr) requestThumbnail(*item);
    if (onAvailability) onAvailability(id);
  };
}

void RowPictures::lookAfresh() {
  availability_.lookAfresh(store_.items());
  requestedImages_.clear();
}

void RowPictures::prepare(std::size_t count) {
  const auto& items = store_.items();
  for (std::size_t index = 0; index < std::min(count, items.size()); ++index) {
    const auto& item = items[index];
    static_cast<void>(availability_.of(item));
    if (!availability_.isAnswered(item)) prepared_.insert(item.id);
    requestThumbnail(item);
  }
}

void RowPictures::requestAll() {
  std::unordered_set<std::string> applications;
  for (const auto& item : clips_.items()) {
    requestThumbnail(item);
    if (item.sourceBundleIdentifier && applications.insert(*item.sourceBundleIdentifier).second) {
      requestSourceIcon(*item.sourceBundleIdentifier);
    }
  }
}

void RowPictures::requestThumbnail(const ClipItem& item) {
  if (item.kind == ClipKind::text) return;
  if (auto picture = thumbnails_.cached(item.id)) {
    return list_.setThumbnail(item.id, std::move(picture));
  }
  // A disk that does not answer is not asked a second time, and an image that could not be read is
  // read again at the next showing.
  if (!availability_.isAnswered(item)) return;
  if (item.kind == ClipKind::image && !requestedImages_.insert(item.id).second) return;
  // Whoever makes it may take its time, or never come back.
  if (!awaitedPictures_.insert(item.id).second) return;
  thumbnails_.requestThumbnail(item, life_.guard([this, id = item.id](SharedBitmap picture) {
    awaitedPictures_.erase(id);
    if (clips_.find(id) != nullptr) list_.setThumbnail(id, std::move(picture));
  }));
}

void RowPictures::requestSourceIcon(const std::string& bundleIdentifier) {
  icons_.applicationIcon(bundleIdentifier,
                         life_.guard([this, bundleIdentifier](const SharedBitmap& icon) {
                           if (!clips_.items().empty()) {
                             list_.setSourceIcon(bundleIdentifier, icon);
                           }
                         }));
}

}  // namespace vantorel
