// SPDX-License-Identifier: MIT
#pragma once

#include <QTextEdit>

namespace vantorel {

/// A long text to read, on whatever is behind it. It can be selected, copied and scrolled with the
/// keyboard.
///
/// Paragraphs are parted by empty lines. The first line of a paragraph is its heading when it is
/// not the only one; lines that begin with "•" are items of a list.
class PolicyTextView : public QTextEdit {
  Q_OBJECT

 public:
  /// The text itself.
  static constexpr int textWidth = 444;

  PolicyTextView(const QString& text, Qt::LayoutDirection direction, QWidget* parent);

 protected:
  void keyPressEvent(QKeyEvent* event) override;
  void changeEvent(QEvent* event) override;
  void paintEvent(QPaintEvent* event) override;
  void scrollContentsBy(int dx, int dy) override;

 private:
  void setUp();
  void showText(const QString& text, Qt::LayoutDirection direction);
  void styleScrollBar();
};

}  // namespace vantorel
