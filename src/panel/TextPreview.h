// SPDX-License-Identifier: MIT
#pragma once

#include <QTextEdit>
#include <optional>

#include "base/Lifetime.h"
#include "panel/PreviewText.h"
#include "platform/Dispatch.h"

namespace vantorel {

/// The text of an entry to be read, selected and scrolled. What is seen at first is there at once,
/// the rest follows piece by piece.
class TextPreview : public QTextEdit {
  Q_OBJECT

 public:
  TextPreview(PreviewText text, Dispatch& dispatch, QWidget* parent);

  /// How high the text is at the width that previews have; no more is measured than can matter.
  [[nodiscard]] static double measuredHeight(PreviewText text);

 protected:
  void paintEvent(QPaintEvent* event) override;
  void mousePressEvent(QMouseEvent* event) override;
  [[nodiscard]] QMimeData* createMimeDataFromSelection() const override;
  void changeEvent(QEvent* event) override;

 private:
  void appendInTurns();
  void appendEnd();
  void tint();
  void applyFont();
  void styleEnd();
  [[nodiscard]] std::optional<double> fadeStart() const;

  PreviewText text_;
  Dispatch& dispatch_;
  bool begun_ = false;
  bool ended_ = false;  // the last line says that there is more
  Lifetime life_;
};

}  // namespace vantorel
