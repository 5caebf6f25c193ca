// SPDX-License-Identifier: MIT
#pragma once

#include <QPointer>
#include <functional>
#include <memory>
#include <optional>

#include "chrome/ChromeServices.h"
#include "platform/Bitmap.h"
#include "store/ClipItem.h"

class QWidget;

namespace vantorel {

class ClipPreviewViewController;
class PopoverWindow;

/// The window of the one preview that is shown. It is made for each showing and keeps nothing of an
/// entry afterwards. Main thread.
class PreviewPresenter {
 public:
  explicit PreviewPresenter(const ChromeServices& services);
  ~PreviewPresenter();
  PreviewPresenter(const PreviewPresenter&) = delete;
  PreviewPresenter& operator=(const PreviewPresenter&) = delete;

  /// The pointer has come to the preview (true) or gone (false).
  std::function<void(bool)> onHoverChanged;
  /// The desktop has taken the window away.
  std::function<void()> onClosed;

  /// Shows the entry beside its row, instead of what is shown. `image` may be null.
  void show(ClipItem item, SharedBitmap image, const QWidget& row);
  void close();
  void updateImage(SharedBitmap image);
  /// Puts the text that is marked on the clipboard, if there is some.
  void copyMarked();

  /// Where the window is on the desktop, while there is one.
  [[nodiscard]] std::optional<Rect> frame() const;

 private:
  ChromeServices services_;
  std::unique_ptr<ClipPreviewViewController> controller_;
  QPointer<PopoverWindow> window_;
};

}  // namespace vantorel
