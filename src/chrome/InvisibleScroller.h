// SPDX-License-Identifier: MIT
#pragma once

#include <QScrollBar>

namespace vantorel {

/// A scroller that scrolls but takes no room and draws nothing.
class InvisibleScroller : public QScrollBar {
  Q_OBJECT

 public:
  explicit InvisibleScroller(QWidget* parent) : QScrollBar(Qt::Vertical, parent) {}

  [[nodiscard]] QSize sizeHint() const override { return {0, 0}; }
  [[nodiscard]] QSize minimumSizeHint() const override { return {0, 0}; }

 protected:
  void paintEvent(QPaintEvent* /*event*/) override {}
};

}  // namespace vantorel
