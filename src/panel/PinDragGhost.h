#pragma once

#include <QPixmap>
#include <QWidget>

namespace vantorel {

/// The picture of a row under way, above the list that it belongs to and cut off at its edges.
class PinDragGhost : public QWidget {
  Q_OBJECT

 public:
  /// Shows the row as it looks now, where it is.
  PinDragGhost(QWidget& row, QWidget* list);

  /// Lets this part of the list be seen through the picture; nothing if it is empty.
  void leaveOpen(const QRect& part);

 protected:
  void paintEvent(QPaintEvent* event) override;

 private:
  QPixmap picture_;
};

}  // namespace vantorel
