// SPDX-License-Identifier: MIT
#pragma once

#include <QCheckBox>

namespace vantorel {

/// A box to tick, with its title where reading goes on; drawn for glass.
class CheckBox : public QCheckBox {
  Q_OBJECT

 public:
  CheckBox(const QString& title, QWidget* parent);

  [[nodiscard]] QSize sizeHint() const override;
  [[nodiscard]] QSize minimumSizeHint() const override { return sizeHint(); }

 protected:
  void paintEvent(QPaintEvent* event) override;
  bool hitButton(const QPoint& position) const override;
};

}  // namespace vantorel
