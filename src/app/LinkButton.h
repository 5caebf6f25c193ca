// SPDX-License-Identifier: MIT
#pragma once

#include <QAbstractButton>

namespace vantorel {

/// Underlined words that lead somewhere. It is reached with Tab.
class LinkButton : public QAbstractButton {
  Q_OBJECT

 public:
  LinkButton(const QString& words, const QFont& font, QWidget* parent);

  [[nodiscard]] QSize sizeHint() const override;
  [[nodiscard]] QSize minimumSizeHint() const override { return sizeHint(); }

 protected:
  void paintEvent(QPaintEvent* event) override;
};

}  // namespace vantorel
