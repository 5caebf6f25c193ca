// SPDX-License-Identifier: MIT
#include "panel/ClipPreviewViewController.h"

#include <utility>

#include "chrome/ReadableGlassView.h"
#include "panel/MediaPreview.h"
#include "panel/PreviewGeometry.h"
#include "panel/PreviewText.h"
#include "panel/TextPreview.h"

namespace vantorel {

ClipPreviewViewController::ClipPreviewViewController(ClipItem item, SharedBitmap image,
                                                     Size maximumSize, Dispatch& dispatch)
    : item_(std::move(item)),
      image_(std::move(image)),
      size_(PreviewGeometry::limited(previewSize(item_), maximumSize)),
      dispatch_(dispatch) {}

Size ClipPreviewViewController::previewSize(const ClipItem& item) {
  if (item.kind != ClipKind::text) return PreviewGeometry::mediaSize();
  return PreviewGeometry::textSize(TextPreview::measuredHeight(PreviewText(item)));
}

void ClipPreviewViewController::loadView(ReadableGlassView& glass) {
  glass.onHoverChanged = [this](bool hovering) {
    if (onHoverChanged) onHoverChanged(hovering);
  };
  const bool text = item_.kind == ClipKind::text;
  auto* content = text ? textPreview(glass) : mediaPreview(glass);
  const int rim = text ? PreviewGeometry::rim : 0;
  content->setGeometry(glass.rect().adjusted(0, rim, 0, -rim));
  content->show();
}

QWidget* ClipPreviewViewController::textPreview(QWidget& root) const {
  return new TextPreview(PreviewText(item_), dispatch_, &root);
}

QWidget* ClipPreviewViewController::mediaPreview(QWidget& root) {
  mediaImageView_ = new MediaPreview(item_, image_, &root);
  return mediaImageView_;
}

void ClipPreviewViewController::updateImage(SharedBitmap image) {
  image_ = std::move(image);
  if (mediaImageView_) mediaImageView_->setImage(image_);
}

}  // namespace vantorel
