// SPDX-License-Identifier: MIT
#pragma once

#include <QWidget>

#include "panel/ThumbnailImageView.h"

namespace vantorel {

/// The picture of an entry with what it is below.
class MediaPreview : public QWidget {
  Q_OBJECT

 public:
  MediaPreview(const ClipItem& item, SharedBitmap image, QWidget* parent);

  void setImage(SharedBitmap image);
  [[nodiscard]] const SharedBitmap& image() const { return imageView_.image(); }

 protected:
  void paintEvent(QPaintEvent* event) override;

 private:
  ThumbnailImageView imageView_;
  QString caption_;
};

}  // namespace vantorel
