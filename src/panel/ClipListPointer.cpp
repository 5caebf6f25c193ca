// What the pointer does to the rows of the list: previews, menus and the drag of pins.

#include <QAction>

#include "chrome/KeySymbols.h"
#include "chrome/VantorelMenu.h"
#include "panel/ClipListView.h"
#include "panel/ClipRowView.h"
#include "panel/PinDrag.h"

namespace vantorel {
namespace {

Hover toHover(bool hovering) { return hovering ? Hover::entered : Hover::exited; }

}  // namespace

void ClipListView::wire(ClipRowView& row) {
  row.onChoose = [this, &row] {
    if (commands.onChoose) commands.onChoose(Uuid(row.content().id));
  };
  row.onTogglePin = [this, &row] { perform(RowAction::togglePin, Uuid(row.content().id)); };
  row.onPress = [this] { hidePreviews(); };
  row.onPressCancelled = [this] { markSelection(); };
  row.onMenu = [this, &row](const QPoint& pointer) { showMenu(row, pointer); };
  row.onHoverChanged = [this, &row](bool hovering) {
    previews_.rowHoverChanged(row.content().id, toHover(hovering),
                              previewStart(row.content().kind));
  };
  row.onThumbnailHoverChanged = [this, &row](bool hovering) {
    previews_.thumbnailHoverChanged(row.content().id, toHover(hovering));
  };
  row.onDrag = [this, &row](ClipRowView::DragStep step, const QPoint& pointer) {
    switch (step) {
      case ClipRowView::DragStep::begin:
        beginDrag(row, pointer);
        break;
      case ClipRowView::DragStep::move:
        if (drag_) drag_->moveTo(pointer);
        break;
      case ClipRowView::DragStep::drop:
        dropDragged(pointer);
        break;
      case ClipRowView::DragStep::cancel:
        endDrag();
        break;
    }
  };
}

void ClipListView::showPreview(std::size_t index) {
  if (const auto* shown = row(index)) previews_.showPreview(Uuid(shown->content().id));
}

void ClipListView::hidePreviews() { previews_.hidePreview(); }

bool ClipListView::openPreview(Uuid id) {
  const auto* row = rowOf(id);
  if (row == nullptr || !row->isVisible() || row->didDrag() || !commands.entry) return false;
  auto item = commands.entry(id);
  if (!item) return false;
  presenter_.show(std::move(*item), row->thumbnail(), *row);
  return true;
}

void ClipListView::showMenu(ClipRowView& row, const QPoint& pointer) {
  hidePreviews();
  if (menu_) menu_->close();
  const Uuid id = row.content().id;
  menu_ = std::make_unique<VantorelMenu>(services_.accessibility, services_.backdrops, this);
  for (const auto& line : rowMenu(row.content())) {
    if (!line.action) {
      menu_->addSeparator();
      continue;
    }
    auto* action = menu_->addAction(QString::fromStdString(line.title));
    action->setEnabled(line.enabled);
    action->setToolTip(QString::fromStdString(spelledKeys(line.toolTip)));
    connect(action, &QAction::triggered, this,
            [this, id, chosen = *line.action] { perform(chosen, id); });
  }
  menu_->onClosed = [this, &row] {
    row.setMenuOpen(false);
    if (onMenuClosed) onMenuClosed();
  };
  row.setMenuOpen(true);
  if (onMenuOpened) onMenuOpened();
  menu_->popup(pointer);
}

void ClipListView::perform(RowAction action, Uuid id) {
  const auto call = [&id](const std::function<void(Uuid)>& command) {
    if (command) command(id);
  };
  switch (action) {
    case RowAction::pastePlain:
      return call(commands.onPastePlain);
    case RowAction::togglePin:
      return call(commands.onTogglePin);
    case RowAction::rename:
      hidePreviews();
      return call(commands.onRename);
    case RowAction::moveUp:
      if (commands.onMovePin) commands.onMovePin(id, -1);
      return;
    case RowAction::moveDown:
      if (commands.onMovePin) commands.onMovePin(id, 1);
      return;
    case RowAction::remove:
      return call(commands.onDelete);
  }
}

void ClipListView::beginDrag(ClipRowView& row, const QPoint& pointer) {
  hidePreviews();
  drag_ = std::make_unique<PinDrag>(
      *this, std::vector(rows_.begin(), rows_.begin() + static_cast<std::ptrdiff_t>(rowCount_)),
      row, services_.dispatch);
  drag_->onEscape = [this] { endDrag(); };
  drag_->onScroll = [this](double distance) {
    if (onScroll) onScroll(distance);
  };
  drag_->moveTo(pointer);
}

void ClipListView::dropDragged(const QPoint& pointer) {
  if (!drag_) return;
  const auto drop = drag_->drop(pointer);
  endDrag();
  if (drop && commands.onDropPin) commands.onDropPin(drop->dragged, drop->onto, drop->place);
}

/// Ends a drag without a drop.
void ClipListView::endDrag() {
  if (!drag_) return;
  drag_->dragged().cancelPress();
  drag_.reset();
  markSelection();
}

}  // namespace vantorel
