// SPDX-License-Identifier: MIT
#pragma once

#include <QLineEdit>

namespace vantorel {

/// A line to type in, drawn for glass.
class GlassField : public QLineEdit {
  Q_OBJECT

 public:
  struct Look {
    double fontPoints = 13;
    QFont::Weight weight = QFont::Normal;
    double cornerRadius = 6;
    double rimAlpha = 0.16;
    enum class Focus { unmarked, gold } focus = Focus::unmarked;
  };

  GlassField(const Look& look, QWidget* parent);

 protected:
  void paintEvent(QPaintEvent* event) override;
  void changeEvent(QEvent* event) override;
  /// What is drawn between the background and the text.
  virtual void drawOnBackground(QPainter& /*painter*/) const {}

 private:
  void applyColors();

  Look look_;
};

}  // namespace vantorel
