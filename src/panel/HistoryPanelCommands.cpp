// What keys and rows make the panel's controller do.

#include <QGuiApplication>
#include <QInputMethod>
#include <algorithm>

#include "panel/HistoryPanelController.h"
#include "panel/HistoryPanelView.h"

namespace vantorel {

bool HistoryPanelController::handleKey(const KeyEvent& event) {
  const auto decision = decideKey(event, keyState());
  perform(decision);
  return decision.handling == KeyHandling::consumed;
}

PanelKeyState HistoryPanelController::keyState() {
  const auto* item = selectedItem();
  PanelKeyState state;
  state.searchBarShown = view_->searchBar() == ListGeometry::SearchBar::shown;
  state.searchFieldFocused = view_->panel.focusWidget() == &view_->searchField;
  state.searchTextEmpty = view_->searchField.text().isEmpty();
  state.filtered = selectedType_ != ClipTypeFilter::all || selectedSourceId_;
  state.displayedCount = displayedItems_.size();
  if (item != nullptr) state.selection = selectedIndex_;
  state.selectionPinned = item != nullptr && item->pinned();
  state.selectionHasRow = view_->list.row(selectedIndex_) != nullptr;
  return state;
}

void HistoryPanelController::perform(const PanelKeyDecision& decision) {
  switch (decision.action) {
    case PanelAction::none:
      break;
    case PanelAction::showPreview:
      view_->list.showPreview(selectedIndex_);
      break;
    case PanelAction::renameSelected:
      renamePin(Uuid(selectedItem()->id));
      break;
    case PanelAction::moveSelectedPin:
      movePin(Uuid(selectedItem()->id), decision.step);
      break;
    case PanelAction::openSearch:
      openSearch(std::nullopt);
      break;
    case PanelAction::pasteAt:
      selectedIndex_ = decision.index;
      updateSelection();
      pasteSelected(decision.style);
      break;
    case PanelAction::togglePin:
      togglePin(Uuid(selectedItem()->id));
      break;
    case PanelAction::pasteSelected:
      pasteSelected(decision.style);
      break;
    case PanelAction::moveSelection:
      moveSelection(decision.step);
      break;
    case PanelAction::deleteSelected:
      deleteSelected();
      break;
    case PanelAction::clearSearch:
      view_->searchField.clear();
      refresh(Selection::keepEntry);
      break;
    case PanelAction::clearFilters:
      clearFilters();
      refresh(Selection::keepEntry);
      break;
    case PanelAction::hide:
      hide();
      break;
    case PanelAction::typeIntoSearch:
      showSearchBar();
      break;
  }
}

/// What an input method makes of keys in the list opens the search as a letter does.
void HistoryPanelController::typeComposed(const QString& text) {
  if (view_->searchBar() == ListGeometry::SearchBar::shown) return;
  // It cannot go on composing in another place: what has been begun is handed over, and comes here.
  if (text.isEmpty()) QGuiApplication::inputMethod()->commit();
  showSearchBar();
  if (!text.isEmpty()) view_->searchField.insert(text);
}

const ClipItem* HistoryPanelController::selectedItem() const {
  return selectedIndex_ < displayedItems_.size() ? &displayedItems_[selectedIndex_] : nullptr;
}

void HistoryPanelController::updateSelection() {
  view_->list.select(selectedItem() != nullptr ? std::optional(selectedIndex_) : std::nullopt);
}

void HistoryPanelController::moveSelection(int delta) {
  if (displayedItems_.empty()) return;
  const auto last = static_cast<std::ptrdiff_t>(displayedItems_.size()) - 1;
  const auto target = static_cast<std::ptrdiff_t>(selectedIndex_) + delta;
  selectedIndex_ = static_cast<std::size_t>(std::clamp<std::ptrdiff_t>(target, 0, last));
  updateSelection();
  scrollSelectionIntoView();
}

void HistoryPanelController::select(Uuid id) {
  const auto* item = displayed(id);
  if (item == nullptr) return;
  selectedIndex_ = static_cast<std::size_t>(item - displayedItems_.data());
  updateSelection();
  scrollSelectionIntoView();
}

void HistoryPanelController::scrollSelectionIntoView() { view_->revealRow(selectedIndex_); }

void HistoryPanelController::pasteSelected(PasteStyle style) {
  const auto* selected = selectedItem();
  if (selected == nullptr) return;
  const ClipItem item = *selected;
  hide();
  pasteController_.paste(item, style == PasteStyle::plainText);
}

/// The entry of that identity, while it is in the list.
const ClipItem* HistoryPanelController::displayed(Uuid id) const {
  const auto found = std::find_if(displayedItems_.begin(), displayedItems_.end(),
                                  [&](const ClipItem& item) { return item.id == id; });
  return found == displayedItems_.end() ? nullptr : &*found;
}

void HistoryPanelController::pasteFromControl(Uuid id) {
  const auto* item = displayed(id);
  if (item == nullptr) return;
  selectedIndex_ = static_cast<std::size_t>(item - displayedItems_.data());
  pasteSelected(PasteStyle::asCopied);
}

void HistoryPanelController::deleteSelected() {
  const auto* selected = selectedItem();
  if (selected == nullptr) return;
  // The store tells of the removal at once, and that may refresh the list already.
  const auto above = selectedIndex_ > 0 ? selectedIndex_ - 1 : 0;
  store_.remove(Uuid(selected->id));
  selectedIndex_ = above;
  refresh(Selection::keepEntry);
  scrollSelectionIntoView();
}

void HistoryPanelController::deleteItem(Uuid id) {
  store_.remove(id);
  refresh(Selection::keepEntry);
}

void HistoryPanelController::pastePlain(Uuid id) {
  const auto* shown = displayed(id);
  if (shown == nullptr) return;
  const ClipItem item = *shown;
  hide();
  pasteController_.paste(item, true);
}

void HistoryPanelController::togglePin(Uuid id) {
  switch (store_.togglePinned(id)) {
    case PinResult::toggled:
      refresh(Selection::keepEntry);
      select(id);
      break;
    case PinResult::limitReached:
      toast_.show("Up to 5 pins. Unpin an item first.");
      break;
    case PinResult::notFound:
      break;
  }
}

void HistoryPanelController::movePin(Uuid id, int delta) {
  std::vector<Uuid> pins;
  for (const auto& item : store_.items()) {
    if (item.pinned()) pins.push_back(item.id);
  }
  const auto position = std::find(pins.begin(), pins.end(), id);
  if (position == pins.end()) return;
  const auto target = (position - pins.begin()) + delta;
  if (target < 0 || target >= static_cast<std::ptrdiff_t>(pins.size())) return;
  if (!store_.movePinned(id, pins[static_cast<std::size_t>(target)], delta < 0)) return;
  refresh(Selection::keepEntry);
  select(id);
}

/// In a later turn, when the pointer has let go of the row for good.
void HistoryPanelController::dropPin(Uuid dragged, Uuid onto, DropPlace place) {
  services_.dispatch.async([this, alive = std::weak_ptr(alive_), dragged, onto, place] {
    if (alive.expired()) return;
    if (!store_.movePinned(dragged, onto, place == DropPlace::before) || !isVisible()) return;
    refresh(Selection::keepEntry);
    select(dragged);
  });
}

RowCommands HistoryPanelController::rowCommands() {
  RowCommands commands;
  commands.entry = [this](Uuid id) -> std::optional<ClipItem> {
    const auto* item = displayed(id);
    return item != nullptr ? std::optional(*item) : std::nullopt;
  };
  commands.onChoose = [this](Uuid id) { pasteFromControl(id); };
  commands.onPastePlain = [this](Uuid id) { pastePlain(id); };
  commands.onDelete = [this](Uuid id) { deleteItem(id); };
  commands.onTogglePin = [this](Uuid id) { togglePin(id); };
  commands.onRename = [this](Uuid id) { renamePin(id); };
  commands.onMovePin = [this](Uuid id, int step) { movePin(id, step); };
  commands.onDropPin = [this](Uuid dragged, Uuid onto, DropPlace place) {
    dropPin(dragged, onto, place);
  };
  return commands;
}

}  // namespace vantorel
