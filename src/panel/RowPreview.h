// SPDX-License-Identifier: MIT
#pragma once

#include <functional>
#include <memory>
#include <optional>

#include "platform/Dispatch.h"
#include "store/ClipItem.h"

namespace vantorel {

/// Where the pointer has to rest for the preview of an entry.
enum class PreviewStart { row, thumbnail };
[[nodiscard]] PreviewStart previewStart(ClipKind kind);

enum class Hover { entered, exited };

/// When the preview of a row comes and goes. At most one is shown in a list: the next one takes its
/// place. Rows are named by their entries. Main thread.
class RowPreview {
 public:
  struct Stage {
    /// Shows the preview instead of the one shown; false when this entry has none now.
    std::function<bool(Uuid id)> show;
    std::function<void()> close;
  };

  RowPreview(Dispatch& dispatch, Stage stage);

  void rowHoverChanged(Uuid id, Hover hover, PreviewStart start);
  /// Of the picture within a row that starts its preview there.
  void thumbnailHoverChanged(Uuid id, Hover hover);
  /// Of the preview that is shown.
  void previewHoverChanged(Hover hover);

  void schedulePreview(Uuid id);
  void scheduleHidePreview(Uuid id);
  /// At once.
  void showPreview(Uuid id);
  /// Ends the preview that is shown, and the one that was to come.
  void hidePreview();
  /// The preview has gone by itself.
  void previewClosed();
  /// The entry has left its row.
  void forget(Uuid id);

  [[nodiscard]] const std::optional<Uuid>& shown() const { return shown_; }
  /// The entry whose preview is to come.
  [[nodiscard]] const std::optional<Uuid>& pending() const { return pending_; }

 private:
  void closeIfLeft();

  Dispatch& dispatch_;
  Stage stage_;
  std::optional<Uuid> hovered_;  // the row under the pointer
  std::optional<Uuid> pending_;
  std::optional<Uuid> shown_;
  bool hoveringPreview_ = false;
  std::unique_ptr<Timer> previewWorkItem_;       // shows `pending_`
  std::unique_ptr<Timer> previewCloseWorkItem_;  // closes `shown_`
};

}  // namespace vantorel
