// SPDX-License-Identifier: MIT
#pragma once

#include <functional>
#include <string>
#include <unordered_set>

#include "base/Lifetime.h"
#include "panel/DisplayedClips.h"
#include "panel/FileAvailability.h"
#include "panel/PanelServices.h"
#include "store/ClipStore.h"
#include "thumbnails/ThumbnailProvider.h"

namespace vantorel {

class ClipListView;

/// What rows show that takes time to get: pictures, the icons of applications, and whether files
/// are still there. Main thread.
class RowPictures {
 public:
  /// All outlive this; `list` shows the rows of `clips`.
  RowPictures(const ClipStore& store, const PanelServices& services, const DisplayedClips& clips,
              ClipListView& list);

  /// More is known of an entry's files.
  std::function<void(Uuid id)> onAvailability;

  /// By what is known; asks the disk when that has not been done since `lookAfresh`.
  [[nodiscard]] Availability availability(const ClipItem& item) { return availability_.of(item); }

  /// Another showing of the panel begins: files may have gone since, and what could not be read may
  /// be read now.
  void lookAfresh();

  /// Has the pictures made that the next showing begins with: those of the first `count` entries.
  void prepare(std::size_t count);

  /// Gives the rows what is there, and has the rest made.
  void requestAll();
  void requestThumbnail(const ClipItem& item);

 private:
  void requestSourceIcon(const std::string& bundleIdentifier);

  const ClipStore& store_;
  Icons& icons_;
  const DisplayedClips& clips_;
  ClipListView& list_;
  FileAvailability availability_;
  ThumbnailProvider thumbnails_;
  std::unordered_set<Uuid> requestedImages_;  // in this showing of the panel
  std::unordered_set<Uuid> awaitedPictures_;  // being made
  std::unordered_set<Uuid> prepared_;         // to be made when the disk has answered
  Lifetime life_;
};

}  // namespace vantorel
