// SPDX-License-Identifier: MIT
#pragma once

#include <QImage>
#include <QWidget>

namespace vantorel {

class ClipRowView;

/// The picture of a row under way: a card that has been lifted off the list, with a shadow. It is
/// part of the list's window, and stays whole within it.
class PinDragGhost : public QWidget {
  Q_OBJECT

 public:
  /// Shows the row as it looks now.
  explicit PinDragGhost(ClipRowView& row);

  /// Puts the row's top left corner there on the desktop, or as near as the window allows.
  void moveRow(const QPoint& corner);

 protected:
  void paintEvent(QPaintEvent* event) override;

 private:
  [[nodiscard]] QRect card() const;

  QImage picture_;
  QImage shadow_;
};

}  // namespace vantorel
