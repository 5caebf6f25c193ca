// SPDX-License-Identifier: MIT
#pragma once

#include <QWidget>

#include "chrome/ChromeServices.h"

class QLabel;

namespace vantorel {

/// The window of one toast: a line or two on rounded glass, above everything, which neither takes
/// the focus nor stands in the pointer's way.
class ToastPanel : public QWidget {
  Q_OBJECT

 public:
  static constexpr int width = 300;
  static constexpr int height = 48;

  ToastPanel(const QString& message, const ChromeServices& services);

  /// Shows it and lets screen readers say it.
  void orderFrontRegardless();

 protected:
  void changeEvent(QEvent* event) override;

 private:
  void tintLabel();

  QLabel* label_;
};

}  // namespace vantorel
