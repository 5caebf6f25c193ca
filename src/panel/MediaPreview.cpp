// SPDX-License-Identifier: MIT
#include "panel/MediaPreview.h"

#include <QPainter>
#include <QPainterPath>

#include "chrome/Geometry.h"
#include "chrome/TextPresentation.h"
#include "chrome/VantorelTheme.h"
#include "panel/PreviewGeometry.h"
#include "panel/RowContent.h"

namespace vantorel {
namespace {

constexpr double backdropRadius = 12;
constexpr double backdropAlpha = 0.12;
constexpr double imageRadius = 5;
constexpr double captionPoints = 12;
constexpr std::size_t maxCaptionCharacters = 400;

}  // namespace

MediaPreview::MediaPreview(const ClipItem& item, SharedBitmap image, QWidget* parent)
    : QWidget(parent),
      imageView_(imageRadius),
      caption_(QString::fromStdString(
          TextPresentation::singleLine(item.preview, maxCaptionCharacters))) {
  imageView_.setPlaceholder(item.kind, placeholder(item));
  imageView_.setImage(std::move(image));
  setAccessibleName(caption_);
}

void MediaPreview::setImage(SharedBitmap image) {
  imageView_.setImage(std::move(image));
  update();
}

void MediaPreview::paintEvent(QPaintEvent* /*event*/) {
  const Size size{static_cast<double>(width()), static_cast<double>(height())};
  const QRectF area = toQRectF(PreviewGeometry::mediaImage(size));
  QPainter painter(this);
  painter.setRenderHint(QPainter::Antialiasing);
  QPainterPath outline;
  outline.addRoundedRect(area, backdropRadius, backdropRadius);
  painter.fillPath(outline, QColor::fromRgbF(0, 0, 0, static_cast<float>(backdropAlpha)));
  painter.setClipPath(outline);
  imageView_.draw(painter, area, palette());
  painter.setClipping(false);

  const QRectF line = toQRectF(PreviewGeometry::mediaCaption(size));
  painter.setFont(VantorelTheme::systemFont(captionPoints));
  painter.setPen(VantorelTheme::secondaryLabel(palette()));
  painter.drawText(
      line, Qt::AlignCenter | Qt::TextSingleLine,
      painter.fontMetrics().elidedText(caption_, Qt::ElideMiddle, static_cast<int>(line.width())));
}

}  // namespace vantorel
