// SPDX-License-Identifier: MIT
#include "panel/PreviewPresenter.h"

#include <QWidget>
#include <utility>

#include "chrome/Geometry.h"
#include "chrome/PopoverWindow.h"
#include "chrome/ReadableGlassView.h"
#include "panel/ClipPreviewViewController.h"
#include "panel/PreviewGeometry.h"
#include "panel/TextPreview.h"

namespace vantorel {
PreviewPresenter::PreviewPresenter(const ChromeServices& services) : services_(services) {}

PreviewPresenter::~PreviewPresenter() {
  if (window_) window_->glass().onHoverChanged = nullptr;
  delete window_.data();
}

void PreviewPresenter::show(ClipItem item, SharedBitmap image, const QWidget& row) {
  close();
  const Rect panel = toRect(row.window()->geometry());
  const auto screen = screenNear(services_.screens, {panel.midX(), panel.midY()});
  const auto area = screen ? std::optional(screen->visibleFrame) : std::nullopt;
  controller_ = std::make_unique<ClipPreviewViewController>(
      std::move(item), std::move(image), PreviewGeometry::maximumSize(area), services_.dispatch);
  controller_->onHoverChanged = [this](bool hovering) {
    if (onHoverChanged) onHoverChanged(hovering);
  };
  window_ =
      new PopoverWindow(QStringLiteral("Preview"), toQSize(controller_->preferredContentSize()),
                        PreviewGeometry::cornerRadius, services_);
  window_->setOwner(row.window());
  window_->onClosed = [this, shown = window_.data()] {
    if (window_ != shown) return;
    close();
    if (onClosed) onClosed();
  };
  controller_->loadView(window_->glass());
  const Rect place = toRect(QRect(row.mapToGlobal(QPoint(0, 0)), row.size()));
  window_->show(PreviewGeometry::anchor(place), PreviewGeometry::edge(panel, area.value_or(panel)));
}

/// The window goes in a later turn, since it may be the one that asks.
void PreviewPresenter::close() {
  if (window_) {
    window_->glass().onHoverChanged = nullptr;
    window_->hide();
    window_->deleteLater();
    window_ = nullptr;
  }
  controller_.reset();
}

void PreviewPresenter::updateImage(SharedBitmap image) {
  if (controller_ && image) controller_->updateImage(std::move(image));
}

void PreviewPresenter::copyMarked() {
  auto* text = window_ ? window_->findChild<TextPreview*>() : nullptr;
  if (text != nullptr && text->textCursor().hasSelection()) text->copy();
}

std::optional<Rect> PreviewPresenter::frame() const {
  return window_ ? std::optional(toRect(window_->geometry())) : std::nullopt;
}

}  // namespace vantorel
