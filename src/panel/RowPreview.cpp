// SPDX-License-Identifier: MIT
#include "panel/RowPreview.h"

#include <utility>

namespace vantorel {
namespace {

constexpr Seconds timeToShow{0.3};
constexpr Seconds timeToClose{0.35};

}  // namespace

PreviewStart previewStart(ClipKind kind) {
  return kind == ClipKind::text ? PreviewStart::row : PreviewStart::thumbnail;
}

RowPreview::RowPreview(Dispatch& dispatch, Stage stage)
    : dispatch_(dispatch), stage_(std::move(stage)) {}

void RowPreview::rowHoverChanged(Uuid id, Hover hover, PreviewStart start) {
  if (hover == Hover::exited) {
    if (hovered_ == id) hovered_.reset();
    scheduleHidePreview(id);
    return;
  }
  hovered_ = id;
  if (shown_ == id) previewCloseWorkItem_.reset();
  if (start == PreviewStart::row) schedulePreview(id);
}

void RowPreview::thumbnailHoverChanged(Uuid id, Hover hover) {
  if (hover == Hover::entered) {
    schedulePreview(id);
  } else {
    scheduleHidePreview(id);
  }
}

void RowPreview::previewHoverChanged(Hover hover) {
  if (!shown_) return;
  hoveringPreview_ = hover == Hover::entered;
  if (hoveringPreview_) {
    previewCloseWorkItem_.reset();
  } else {
    scheduleHidePreview(Uuid(*shown_));
  }
}

void RowPreview::schedulePreview(Uuid id) {
  pending_ = id;
  // The timer goes with this, and so never finds it gone.
  previewWorkItem_ = dispatch_.after(timeToShow, [this] {
    if (pending_) showPreview(Uuid(*pending_));
  });
}

void RowPreview::scheduleHidePreview(Uuid id) {
  if (pending_ == id) {
    pending_.reset();
    previewWorkItem_.reset();
  }
  if (shown_ != id) return;
  previewCloseWorkItem_ = dispatch_.after(timeToClose, [this] { closeIfLeft(); });
}

void RowPreview::showPreview(Uuid id) {
  pending_.reset();
  previewWorkItem_.reset();
  if (shown_ == id || !stage_.show(id)) return;
  shown_ = id;
  hoveringPreview_ = false;
  previewCloseWorkItem_.reset();
}

void RowPreview::hidePreview() {
  pending_.reset();
  previewWorkItem_.reset();
  if (!shown_) return;
  previewClosed();
  stage_.close();
}

void RowPreview::previewClosed() {
  shown_.reset();
  hoveringPreview_ = false;
  previewCloseWorkItem_.reset();
}

void RowPreview::forget(Uuid id) {
  if (hovered_ == id) hovered_.reset();
  if (shown_ == id || pending_ == id) hidePreview();
}

void RowPreview::closeIfLeft() {
  if (hoveringPreview_ || (shown_ && hovered_ == shown_)) return;
  hidePreview();
}

}  // namespace vantorel
