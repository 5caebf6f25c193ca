// SPDX-License-Identifier: MIT
#pragma once

#include <QPixmap>
#include <QRectF>
#include <functional>
#include <optional>
#include <string_view>

#include "platform/Bitmap.h"
#include "store/ClipItem.h"

class QPainter;
class QPalette;

namespace vantorel {

/// The picture of an entry within something larger that draws it: the thumbnail, or a symbol until
/// there is one. It also knows whether the pointer is over it. What it draws is kept at the size in
/// which it was drawn last.
class ThumbnailImageView {
 public:
  explicit ThumbnailImageView(double cornerRadius) : cornerRadius_(cornerRadius) {}

  /// The pointer has come (true) or gone (false).
  std::function<void(bool)> onHoverChanged;

  /// What stands in for a picture; `symbol` lives as long as the program.
  void setPlaceholder(ClipKind kind, std::string_view symbol);
  /// Null: the placeholder is shown.
  void setImage(SharedBitmap image);
  [[nodiscard]] const SharedBitmap& image() const { return image_; }

  void draw(QPainter& painter, const QRectF& area, const QPalette& palette);

  /// Takes the pointer for gone, and tells nobody: the picture is another's now.
  void forgetPointer() { hovering_ = false; }
  /// Where the pointer is, if anywhere near, and where the picture is.
  void track(const std::optional<QPointF>& pointer, const QRectF& area);

 private:
  struct Prepared {
    QPixmap pixmap;
    bool framed = false;
    double scale = 0;  // of the device it was made for
  };
  void drawImage(QPainter& painter, const QRectF& area, const QPalette& palette);
  void drawPlaceholder(QPainter& painter, const QRectF& area, const QPalette& palette) const;
  [[nodiscard]] Prepared prepared(QSize pixels, double scale) const;

  double cornerRadius_;
  ClipKind kind_ = ClipKind::text;
  std::string_view symbol_;
  SharedBitmap image_;
  Prepared prepared_;
  bool hovering_ = false;
};

}  // namespace vantorel
