// SPDX-License-Identifier: MIT
#pragma once

#include <QPointer>
#include <functional>

#include "platform/Bitmap.h"
#include "platform/Dispatch.h"
#include "store/ClipItem.h"

class QWidget;

namespace vantorel {

class MediaPreview;
class ReadableGlassView;

/// What the preview of one entry shows, for one showing. Main thread.
class ClipPreviewViewController {
 public:
  /// `image` may be null and come later.
  ClipPreviewViewController(ClipItem item, SharedBitmap image, Size maximumSize,
                            Dispatch& dispatch);

  /// The pointer has come to the preview (true) or gone (false).
  std::function<void(bool)> onHoverChanged;

  /// How large the preview of the entry wants to be, in points.
  [[nodiscard]] static Size previewSize(const ClipItem& item);
  /// The same within the maximum.
  [[nodiscard]] Size preferredContentSize() const { return size_; }

  /// Puts the content on a glass of the preferred size, which owns it. This has to outlive the
  /// glass.
  void loadView(ReadableGlassView& glass);

  void updateImage(SharedBitmap image);

 private:
  [[nodiscard]] QWidget* textPreview(QWidget& root) const;
  [[nodiscard]] QWidget* mediaPreview(QWidget& root);

  ClipItem item_;
  SharedBitmap image_;
  Size size_;
  Dispatch& dispatch_;
  QPointer<MediaPreview> mediaImageView_;
};

}  // namespace vantorel
