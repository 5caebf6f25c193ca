#pragma once

#include <QWidget>
#include <functional>

#include "panel/RowContent.h"

namespace vantorel {

class PinButton;

/// One entry in the list. It draws itself, and says what the user does with it; it is given another
/// entry rather than made anew.
class ClipRowView : public QWidget {
  Q_OBJECT

 public:
  explicit ClipRowView(QWidget* parent);

  /// The row was clicked.
  std::function<void()> onChoose;
  std::function<void()> onTogglePin;
  /// A press on the row ended elsewhere; its looks are to be what they were.
  std::function<void()> onPressCancelled;

  void setContent(const RowContent& content);
  [[nodiscard]] const RowContent& content() const { return content_; }
  void setSelected(bool selected);
  [[nodiscard]] bool isSelected() const { return selected_; }

 protected:
  void paintEvent(QPaintEvent* event) override;
  void resizeEvent(QResizeEvent* event) override;
  void changeEvent(QEvent* event) override;
  void mousePressEvent(QMouseEvent* event) override;
  void mouseReleaseEvent(QMouseEvent* event) override;
  void enterEvent(QEnterEvent* event) override;
  void leaveEvent(QEvent* event) override;

 private:
  struct Line {
    QString text;  // as long as fits
    double width = -1;
  };
  void drawBackground(QPainter& painter) const;
  void drawPlaceholder(QPainter& painter) const;
  void drawTitle(QPainter& painter);
  void drawMetadata(QPainter& painter);
  void forgetLines();

  RowContent content_;
  PinButton* pinButton_;
  Line title_;
  Line metadata_;
  bool selected_ = false;
  bool hovering_ = false;
  bool pressed_ = false;
};

}  // namespace vantorel
