// SPDX-License-Identifier: MIT
#pragma once

#include <QWidget>
#include <functional>
#include <optional>

#include "chrome/ChromeServices.h"
#include "panel/RowBackground.h"
#include "panel/RowCommands.h"
#include "panel/RowContent.h"
#include "panel/RowPress.h"
#include "panel/RowText.h"
#include "panel/SourceIconView.h"
#include "panel/ThumbnailImageView.h"

namespace vantorel {

class PinButton;

/// One entry in the list. It draws itself, and says what the user does with it; it is given another
/// entry rather than made anew.
class ClipRowView : public QWidget {
  Q_OBJECT

 public:
  ClipRowView(const ChromeServices& services, QWidget* parent);

  /// What the user does. Points are the desktop's.
  std::function<void()> onChoose;
  std::function<void()> onTogglePin;
  std::function<void()> onPress;
  /// A press on the row came to nothing; its looks are to be what they were.
  std::function<void()> onPressCancelled;
  std::function<void(const QPoint& pointer)> onMenu;
  /// Whether the pointer rests and the row comes to it: that only shows, until the pointer moves.
  std::function<bool()> pointerRests;
  /// The pointer has come (true) or gone (false), from the row or from the picture in it.
  std::function<void(bool)> onHoverChanged;
  std::function<void(bool)> onThumbnailHoverChanged;
  enum class DragStep { begin, move, drop, cancel };
  std::function<void(DragStep step, const QPoint& pointer)> onDrag;

  void setContent(const RowContent& content);
  [[nodiscard]] const RowContent& content() const { return content_; }

  /// Null is ignored: what is shown stays.
  void updateThumbnail(SharedBitmap thumbnail);
  [[nodiscard]] const SharedBitmap& thumbnail() const { return imageView_.image(); }
  /// Null: the application has no icon, or is not known any more.
  void setSourceIcon(SharedBitmap icon);
  [[nodiscard]] SourceIconView::State sourceIconState() const { return sourceIcon_.state(); }

  using Change = RowBackground::Change;
  void setSelected(bool selected, Change change = Change::animated);
  /// The line below the row, if it has one, is drawn unless it would touch the selected row.
  void setNextSelected(bool selected);
  [[nodiscard]] bool isSelected() const { return selected_; }
  /// The row that an open menu is about stays marked, wherever the pointer is.
  void setMenuOpen(bool open);
  /// Marks the row as where the keyboard is.
  void setRinged(bool ringed);
  void setDropPlace(std::optional<DropPlace> place);
  [[nodiscard]] std::optional<DropPlace> dropPlace() const { return dropPlace_; }
  /// A row under way is drawn faintly where it was.
  void setDragged(bool dragged);

  /// Gives up a press: it will be neither a click nor a drop.
  void cancelPress() { press_.cancel(); }
  /// A drag has started since the last press.
  [[nodiscard]] bool didDrag() const { return press_.didDrag(); }

 protected:
  void paintEvent(QPaintEvent* event) override;
  void resizeEvent(QResizeEvent* event) override;
  void changeEvent(QEvent* event) override;
  void mousePressEvent(QMouseEvent* event) override;
  void mouseMoveEvent(QMouseEvent* event) override;
  void mouseReleaseEvent(QMouseEvent* event) override;
  void enterEvent(QEnterEvent* event) override;
  void leaveEvent(QEvent* event) override;
  void hideEvent(QHideEvent* event) override;

 private:
  void pointerMoved(const QPointF& pointer);
  void updateBackground(Change change);
  void drawBackground(QPainter& painter) const;
  void drawSelection(QPainter& painter) const;
  void forgetText();

  RowContent content_;
  PinButton* pinButton_;
  ThumbnailImageView imageView_;
  SourceIconView sourceIcon_;
  RowBackground background_;
  RowText text_;
  RowPress press_;
  std::optional<DropPlace> dropPlace_;
  bool selected_ = false;
  bool nextSelected_ = false;
  bool hovering_ = false;
  bool entered_ = false;  // by the pointer's own motion
  bool menuOpen_ = false;
  bool dragged_ = false;
  bool ringed_ = false;
};

}  // namespace vantorel
