// SPDX-License-Identifier: MIT
#pragma once

#include <QWidget>

namespace vantorel {

/// A word about a control, on a small piece of glass below it that ends where the control ends: so
/// it stays over the control's own window and off what stands beside that. There is one at most; it
/// goes when the pointer leaves that part of the control, and with the next press or key. Main
/// thread.
class ToolTipPanel : public QWidget {
  Q_OBJECT

 public:
  /// Shows the text for `part` of a control, in its coordinates. Without a text nothing is shown,
  /// nor what was before.
  static void show(QWidget& control, const QRect& part, const QString& text);

 protected:
  bool eventFilter(QObject* watched, QEvent* event) override;
  void paintEvent(QPaintEvent* event) override;

 private:
  ToolTipPanel(QWidget& control, const QRect& part, const QString& text);
  void place();

  QWidget& control_;
  QRect part_;
  QString text_;
};

}  // namespace vantorel
