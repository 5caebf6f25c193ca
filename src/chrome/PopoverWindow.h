// SPDX-License-Identifier: MIT
#pragma once

#include <QWidget>
#include <functional>

#include "chrome/ChromeServices.h"
#include "chrome/PopoverPlacement.h"

class QVariantAnimation;

namespace vantorel {

class ReadableGlassView;

/// A rounded glass window beside something, for the pointer alone: it never takes the keyboard and
/// no window manager manages it. Main thread.
class PopoverWindow : public QWidget {
  Q_OBJECT

 public:
  PopoverWindow(const QString& title, QSize size, double cornerRadius,
                const ChromeServices& services);

  /// The window that this one belongs to, which outlives its showings; null: none. It stands over
  /// that one's shadow.
  void setOwner(QWidget* owner) { owner_ = owner; }

  /// The desktop has taken the window away. Not called for `hide`.
  std::function<void()> onClosed;

  /// What to put content on; as large as the window.
  [[nodiscard]] ReadableGlassView& glass() { return *glass_; }

  /// Shows the window beside `anchor` (on the desktop, in points), whole on the screen that the
  /// anchor is on; it fades in unless the user asked for less motion.
  void show(const Rect& anchor, PopoverEdge edge);

 protected:
  void closeEvent(QCloseEvent* event) override;

 private:
  void fadeIn();

  ChromeServices services_;
  QWidget* owner_ = nullptr;
  ReadableGlassView* glass_;
  QVariantAnimation* fade_;
};

}  // namespace vantorel
