// SPDX-License-Identifier: MIT
#pragma once

#include <QWidget>
#include <functional>

#include "chrome/GlassFinish.h"

namespace vantorel {

/// A rounded background of the window's colour that keeps text legible over whatever is behind it.
class ReadableGlassView : public QWidget {
  Q_OBJECT

 public:
  ReadableGlassView(double cornerRadius, QWidget* parent);

  /// The pointer has come (true) or gone (false).
  std::function<void(bool)> onHoverChanged;

  [[nodiscard]] double cornerRadius() const { return cornerRadius_; }
  [[nodiscard]] const GlassFinish& finish() const { return finish_; }
  void setFinish(const GlassFinish& finish);

 protected:
  void paintEvent(QPaintEvent* event) override;
  void enterEvent(QEnterEvent* event) override;
  void leaveEvent(QEvent* event) override;

 private:
  double cornerRadius_;
  GlassFinish finish_;
};

}  // namespace vantorel
