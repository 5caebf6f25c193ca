// SPDX-License-Identifier: MIT
#pragma once

#include <QLabel>

namespace vantorel {

/// Words that a computer is to read, as they are, on a ground of their own; a long line goes on in
/// the next one.
class CodeBlock : public QLabel {
  Q_OBJECT

 public:
  CodeBlock(const QString& code, int width, QWidget* parent);

  void setCode(const QString& code);

  [[nodiscard]] QSize sizeHint() const override;
  [[nodiscard]] QSize minimumSizeHint() const override { return sizeHint(); }

 protected:
  void paintEvent(QPaintEvent* event) override;

 private:
  int lines(QPainter* painter) const;

  int width_;
};

}  // namespace vantorel
