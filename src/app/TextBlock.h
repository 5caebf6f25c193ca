// SPDX-License-Identifier: MIT
#pragma once

#include <QLabel>
#include <vector>

namespace vantorel {

/// Lines of text whose base direction is given, whatever their first letter is: "Option + Enter"
/// at the start of a Hebrew line stands at its right.
class TextBlock : public QLabel {
  Q_OBJECT

 public:
  enum class Importance { primary, secondary };

  struct Style {
    double points = 13;
    QFont::Weight weight = QFont::Normal;
    Importance importance = Importance::primary;
    Qt::LayoutDirection direction = Qt::RightToLeft;
    Qt::AlignmentFlag alignment = Qt::AlignHCenter;
    int lines = 1;  // what does not fit ends with an ellipsis
    int width = 0;  // 0: as wide as its text
  };

  TextBlock(const QString& text, const Style& style, QWidget* parent);

  [[nodiscard]] const Style& style() const { return style_; }
  [[nodiscard]] QSize sizeHint() const override;
  [[nodiscard]] QSize minimumSizeHint() const override { return sizeHint(); }
  /// The text as it is broken into lines.
  [[nodiscard]] std::vector<QString> brokenLines() const;

 protected:
  void paintEvent(QPaintEvent* event) override;

 private:
  [[nodiscard]] int linePitch() const;
  [[nodiscard]] std::vector<QString> wrapped(const QString& paragraph) const;

  Style style_;
};

/// The desktop's font, and where it lacks Hebrew letters one that has good ones.
[[nodiscard]] QFont documentFont(double points, QFont::Weight weight = QFont::Normal);

}  // namespace vantorel
