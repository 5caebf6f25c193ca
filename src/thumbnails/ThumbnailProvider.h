// SPDX-License-Identifier: MIT
#pragma once

#include <cstddef>
#include <functional>
#include <memory>
#include <unordered_map>
#include <vector>

#include "base/FileSystem.h"
#include "base/Lifetime.h"
#include "base/Lru.h"
#include "platform/Bitmap.h"
#include "platform/Dispatch.h"
#include "platform/FileThumbnails.h"
#include "platform/Icons.h"
#include "platform/Image.h"
#include "platform/Screens.h"
#include "store/ClipStore.h"

namespace vantorel {

/// What thumbnails are made with. All outlive the provider.
struct ThumbnailServices {
  Dispatch& dispatch;
  FileSystem& files;
  const ImageDecoder& images;
  FileThumbnails& fileThumbnails;
  Icons& icons;
  const Screens& screens;
  /// Whether the first of an entry's files is gone, by what is known of it. The main thread asks,
  /// so this does not: a disk behind a dead network would hold everything up.
  std::function<bool(const ClipItem&)> firstFileIsGone;
};

/// Small pictures of the history's entries: a copied image, or the first of copied files. They are
/// made away from the main thread and kept, at most 80 of them and 32 MB together; those looked at
/// longest ago go first. A picture takes 0.3 MB at most on a screen of one pixel a point, so 80
/// stay below 25 MB; 45 of a 4K screen take 8 MB. On sharper screens they have as many pixels as a
/// full history of them leaves room for, so that pictures in one list never push each other out: 45
/// of a 4K screen take 19 MB. When a sharper screen comes, all are made anew. Main thread.
class ThumbnailProvider {
 public:
  using Completion = std::function<void(SharedBitmap)>;

  static constexpr std::size_t countLimit = 80;
  static constexpr std::size_t byteLimit = 32'000'000;
  /// The largest place a picture is shown in, in points; more pixels are never kept.
  static constexpr Size largestShown{286, 272};

  ThumbnailProvider(const ClipStore& store, ThumbnailServices services);
  ~ThumbnailProvider();
  ThumbnailProvider(const ThumbnailProvider&) = delete;
  ThumbnailProvider& operator=(const ThumbnailProvider&) = delete;

  /// Calls `completion` exactly once with the entry's picture, or with null when there is none: at
  /// once when that is known, else later on the main queue, with null if this is gone by then. Of a
  /// file that is gone it is the icon of its type, which is not kept: the file may come back.
  /// Requests for an entry whose picture is being made wait for that one. `completion` may be
  /// empty, and may destroy this.
  void requestThumbnail(const ClipItem& item, Completion completion);

  /// What is kept of the entry, without making anything.
  [[nodiscard]] SharedBitmap cached(Uuid id);

 private:
  void requestImage(const ClipItem& item, Completion completion);
  void requestFile(const ClipItem& item, Completion completion);
  void makeFileThumbnail(Uuid id, const std::filesystem::path& file);
  /// Whether the caller is the first to wait, and has to begin.
  [[nodiscard]] bool waitFor(Uuid id, Completion completion);
  /// The picture was made for screens of that scale.
  void finish(Uuid id, double scale, const SharedBitmap& picture);
  void keep(Uuid id, const SharedBitmap& picture);
  void dropBlurred();
  [[nodiscard]] double screenScale() const;
  [[nodiscard]] PixelSize largestPicture() const;

  const ClipStore& store_;
  ThumbnailServices services_;
  Lru<Uuid, SharedBitmap> kept_;
  std::size_t keptBytes_ = 0;
  double scale_ = 0;  // what is kept is sharp at
  std::unordered_map<Uuid, std::vector<Completion>> waiting_;
  std::unique_ptr<SerialQueue> imageQueue_;
  Lifetime life_;
};

}  // namespace vantorel
