// SPDX-License-Identifier: MIT
#pragma once

#include <QWidget>
#include <functional>
#include <memory>
#include <optional>
#include <vector>

#include "chrome/ChromeServices.h"
#include "panel/PreviewPresenter.h"
#include "panel/RowCommands.h"
#include "panel/RowContent.h"
#include "panel/RowMenuPresenter.h"
#include "panel/RowPreview.h"
#include "panel/SpokenSelection.h"

class QLabel;

namespace vantorel {

class ClipRowView;
class PinDrag;
class RestingPointer;

/// The document of the list: the rows, the line below the pins, or one sentence when there is
/// nothing to show. It has the keyboard while nothing is typed, with its dead keys. Rows are
/// reused; hidden by the program, they keep nothing of their entries.
class ClipListView : public QWidget {
  Q_OBJECT

 public:
  ClipListView(const ChromeServices& services, QWidget* parent);
  ~ClipListView() override;

  RowCommands commands;
  /// A row's menu has come, or gone again, before what was chosen in it is done.
  std::function<void()> onMenuOpened;
  std::function<void()> onMenuClosed;
  /// An input method has composed this, or has begun to compose something: then it is empty.
  std::function<void(const QString& text)> onComposed;
  /// A screen reader should say this: it is where it was, but something else is there.
  std::function<void(const QString&)> onSay;
  /// A drag wants to see more of the list: so many points further down, up if negative.
  std::function<void(double)> onScroll;

  /// Shows these rows from the top, with the line above the row `boundary`.
  void setRows(const std::vector<RowContent>& rows, std::optional<std::size_t> boundary);
  void setEmpty(const QString& sentence);
  /// Marks one row, or none.
  void select(std::optional<std::size_t> index);

  /// Gives the row of that entry its picture; nothing when no row shows it, or when it is null.
  void setThumbnail(Uuid id, SharedBitmap thumbnail);
  /// Gives the rows of that application its icon; null: it has none.
  void setSourceIcon(const std::string& bundleIdentifier, const SharedBitmap& icon);

  /// Puts what is marked in the preview on the clipboard.
  void copyFromPreview() { presenter_.copyMarked(); }
  /// Shows the preview of that row at once.
  void showPreview(std::size_t index);
  /// Ends the preview that is shown, and the one that was to come; so do other rows, and scrolling.
  void hidePreviews();
  /// The rows stand elsewhere on the desktop.
  void rowsMoved();
  [[nodiscard]] bool previewShown() const { return previews_.shown().has_value(); }
  [[nodiscard]] bool previewShown(std::size_t index) const;
  /// Where the preview is on the desktop, while one is shown.
  [[nodiscard]] std::optional<Rect> previewFrame() const { return presenter_.frame(); }

  [[nodiscard]] std::size_t rowCount() const { return rowCount_; }
  [[nodiscard]] ClipRowView* row(std::size_t index) const;
  [[nodiscard]] std::optional<std::size_t> selection() const { return selection_; }

 protected:
  void paintEvent(QPaintEvent* event) override;
  void changeEvent(QEvent* event) override;
  void focusInEvent(QFocusEvent* event) override;
  void focusOutEvent(QFocusEvent* event) override;
  void inputMethodEvent(QInputMethodEvent* event) override;
  void wheelEvent(QWheelEvent* event) override;
  void moveEvent(QMoveEvent* event) override;
  void showEvent(QShowEvent* event) override;
  void hideEvent(QHideEvent* event) override;

 private:
  ClipRowView* rowToReuse(std::size_t index);
  void wire(ClipRowView& row);
  void retireRows(std::size_t first);
  void markSelection();
  void setRinged(bool ringed);
  void tintEmptyLabel();

  [[nodiscard]] ClipRowView* rowOf(Uuid id) const;
  bool openPreview(Uuid id);
  void beginDrag(ClipRowView& row, const QPoint& pointer);
  void dropDragged(const QPoint& pointer);
  void endDrag();

  ChromeServices services_;
  std::vector<ClipRowView*> rows_;  // children of this; those from `rowCount_` on are hidden
  std::size_t rowCount_ = 0;
  std::optional<std::size_t> boundary_;
  std::optional<std::size_t> selection_;
  bool ringed_ = false;  // the keyboard came by Tab, and where it is shows
  QLabel* emptyLabel_;
  PreviewPresenter presenter_;
  RowPreview previews_;
  RowMenuPresenter menu_;
  std::unique_ptr<PinDrag> drag_;
  SpokenSelection reader_;
  std::unique_ptr<RestingPointer> pointer_;  // since the first showing
};

}  // namespace vantorel
