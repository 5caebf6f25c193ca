// SPDX-License-Identifier: MIT
#pragma once

#include <QWidget>
#include <functional>

#include "chrome/ReadableGlassView.h"
#include "platform/AccessibilityPreferences.h"
#include "platform/WindowBackdrops.h"

class QKeyEvent;

namespace vantorel {

/// A borderless window on rounded glass that floats above others, takes the keyboard and is moved
/// by its background. Its native window exists from the first size on, so that showing is quick.
class VantorelPanel : public QWidget {
  Q_OBJECT

 public:
  /// What assistive programs know it as. A dialog is read out when it opens.
  enum class Kind { window, dialog };

  VantorelPanel(const QString& title, QSize size, double cornerRadius,
                const AccessibilityPreferences& accessibility, const WindowBackdrops* backdrops,
                Kind kind = Kind::dialog);

  /// Sees every key pressed in the panel before anything else does; true swallows it.
  std::function<bool(const QKeyEvent&)> onKeyPress;
  /// The window manager asked the panel to go. Nothing happens by itself.
  std::function<void()> onCloseRequested;
  /// The panel stands elsewhere or has another size, by whomever.
  std::function<void()> onFrameChange;

  /// What to put content on; always as large as the panel.
  [[nodiscard]] ReadableGlassView& glass() { return *glass_; }

  /// Shows the panel in front and asks for the keyboard. Whether it is given shows later.
  void makeKeyAndOrderFront();

  /// Whether the desktop took the panel off the screen without being asked to, as one does that
  /// shows its background only. The panel counts as visible all the while.
  [[nodiscard]] bool wasPutOutOfSight() const;

 protected:
  bool eventFilter(QObject* watched, QEvent* event) override;
  void moveEvent(QMoveEvent* event) override;
  void resizeEvent(QResizeEvent* event) override;
  void mousePressEvent(QMouseEvent* event) override;
  void closeEvent(QCloseEvent* event) override;
  void hideEvent(QHideEvent* event) override;

 private:
  void tellFrame();

  ReadableGlassView* glass_;
  QRect toldFrame_;
  bool wasSeen_ = false;  // since it was shown last
};

}  // namespace vantorel
