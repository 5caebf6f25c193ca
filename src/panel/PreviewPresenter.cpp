#include "panel/PreviewPresenter.h"

#include <QWidget>
#include <algorithm>
#include <cmath>
#include <utility>

#include "chrome/PopoverWindow.h"
#include "chrome/ReadableGlassView.h"
#include "panel/ClipPreviewViewController.h"
#include "panel/PreviewGeometry.h"

namespace vantorel {
namespace {

Rect toRect(const QRect& rect) {
  return {static_cast<double>(rect.x()), static_cast<double>(rect.y()),
          static_cast<double>(rect.width()), static_cast<double>(rect.height())};
}

QSize toSize(Size size) {
  return {static_cast<int>(std::lround(size.width)), static_cast<int>(std::lround(size.height))};
}

/// What may be used of the screen that the window is on.
std::optional<Rect> visibleFrameAround(const Screens& screens, const Rect& window) {
  const Point middle{window.midX(), window.midY()};
  const auto all = screens.screens();
  const auto found = std::find_if(
      all.begin(), all.end(), [&](const Screen& screen) { return screen.frame.contains(middle); });
  if (found != all.end()) return found->visibleFrame;
  const auto main = screens.mainScreen();
  return main ? std::optional(main->visibleFrame) : std::nullopt;
}

}  // namespace

PreviewPresenter::PreviewPresenter(const ChromeServices& services) : services_(services) {}

PreviewPresenter::~PreviewPresenter() {
  if (window_) window_->glass().onHoverChanged = nullptr;
  delete window_.data();
}

void PreviewPresenter::show(ClipItem item, SharedBitmap image, const QWidget& row) {
  close();
  const Rect panel = toRect(row.window()->geometry());
  const auto area = visibleFrameAround(services_.screens, panel);
  controller_ = std::make_unique<ClipPreviewViewController>(
      std::move(item), std::move(image), PreviewGeometry::maximumSize(area), services_.dispatch);
  controller_->onHoverChanged = [this](bool hovering) {
    if (onHoverChanged) onHoverChanged(hovering);
  };
  window_ =
      new PopoverWindow(QStringLiteral("Preview"), toSize(controller_->preferredContentSize()),
                        PreviewGeometry::cornerRadius, services_);
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

std::optional<Rect> PreviewPresenter::frame() const {
  return window_ ? std::optional(toRect(window_->geometry())) : std::nullopt;
}

}  // namespace vantorel
