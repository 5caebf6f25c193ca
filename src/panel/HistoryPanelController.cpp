// SPDX-License-Identifier: MIT
#include "panel/HistoryPanelController.h"

#include <QGuiApplication>
#include <QInputMethod>
#include <utility>

#include "chrome/KeyTranslation.h"
#include "chrome/WorkspaceWindows.h"
#include "panel/ClipRowView.h"
#include "panel/FilterMenuPresenter.h"
#include "panel/HistoryPanelView.h"
#include "panel/ListGeometry.h"
#include "panel/ListPresenter.h"
#include "panel/OutsideClicks.h"
#include "panel/PanelAccessibility.h"
#include "panel/PinNaming.h"

namespace vantorel {

using ListGeometry::SearchBar;

HistoryPanelController::HistoryPanelController(ClipStore& store, PasteController& pasteController,
                                               PanelServices services)
    : store_(store),
      pasteController_(pasteController),
      services_(std::move(services)),
      toast_(services_.chrome()),
      pins_(store, services_.dispatch) {
  installPanelAccessibility();
  const auto chrome = services_.chrome();
  view_ = std::make_unique<HistoryPanelView>(chrome);
  outsideClicks_ = std::make_unique<OutsideClicks>(services_, *view_);
  list_ = std::make_unique<ListPresenter>(store_, services_, clips_, *view_);
  filterMenus_ = std::make_unique<FilterMenuPresenter>(
      store_, clips_.filter,
      FilterMenuPresenter::Buttons{view_->typeFilterButton, view_->sourceFilterButton}, chrome);
  naming_ = std::make_unique<PinNaming>(store_, chrome, view_->panel);
  connectParts();
  services_.dispatch.async(life_.guard([this] { view_->warmUp(); }));
  prepareNextShowing();
}

HistoryPanelController::~HistoryPanelController() = default;

void HistoryPanelController::connectParts() {
  // A click beside a menu is the menu's alone.
  const auto menuOpened = [this] { outsideClicks_->rest(); };
  const auto menuClosed = [this] {
    if (isVisible()) outsideClicks_->watch();
  };
  view_->panel.onCloseRequested = [this] { hide(); };
  view_->panel.onKeyPress = [this](const QKeyEvent& event) {
    return !naming_->isUnderWay() && handleKey(translated(event, services_.keyCodeForScanCode));
  };
  view_->searchField.onEdit = [this] {
    clips_.select(0);
    refreshAndReveal(Selection::keepIndex);
  };
  view_->searchField.onKeyPress = [this](const QKeyEvent& event) {
    return handleKeyOfField(translated(event, services_.keyCodeForScanCode));
  };
  view_->list.commands = rowCommands();
  const auto composed = [this](const QString& text) { typeComposed(text); };
  view_->list.onComposed = composed;
  view_->typeFilterButton.onComposed = composed;
  view_->sourceFilterButton.onComposed = composed;
  view_->list.onMenuOpened = menuOpened;
  view_->list.onMenuClosed = menuClosed;
  filterMenus_->onMenuOpened = menuOpened;
  filterMenus_->onMenuClosed = menuClosed;
  filterMenus_->onChange = [this] { refreshAndReveal(Selection::keepEntry); };
  pins_.onChange = [this](Uuid id) {
    if (isVisible()) refreshAndSelect(id);
  };
  pins_.onLimitReached = [this] { toast_.show(pinLimitText()); };
  naming_->onNamed = [this](Uuid id) { refreshAndSelect(id); };
  outsideClicks_->ignores = [this] { return naming_->isUnderWay(); };
  outsideClicks_->onClick = [this] {
    forgetPredecessor(view_->panel);
    hide();
  };
}

RowCommands HistoryPanelController::rowCommands() {
  RowCommands commands;
  commands.entry = [this](Uuid id) -> std::optional<ClipItem> {
    const auto* item = clips_.find(id);
    return item != nullptr ? std::optional(*item) : std::nullopt;
  };
  commands.onChoose = [this](Uuid id) {
    if (clips_.select(id)) paste(clips_.selected(), PasteStyle::asCopied);
  };
  commands.onPastePlain = [this](Uuid id) { paste(clips_.find(id), PasteStyle::plainText); };
  commands.onDelete = [this](Uuid id) {
    store_.remove(id);
    refreshAndReveal(Selection::keepEntry);
  };
  commands.onTogglePin = [this](Uuid id) { pins_.toggle(id); };
  commands.onRename = [this](Uuid id) { rename(id); };
  commands.onMovePin = [this](Uuid id, int step) { pins_.move(id, step); };
  commands.onDropPin = [this](Uuid dragged, Uuid onto, DropPlace place) {
    pins_.drop(dragged, onto, place);
  };
  return commands;
}

bool HistoryPanelController::isVisible() const { return view_->panel.isVisible(); }

bool HistoryPanelController::isSeen() const {
  return isVisible() && !view_->panel.wasPutOutOfSight();
}

void HistoryPanelController::toggle(const std::optional<RunningApplication>& targetApplication) {
  // A panel that the desktop has put out of sight is brought back, not hidden unseen.
  const bool seen = isSeen();
  if (isVisible()) hide();
  if (seen) return;
  pasteController_.setTargetApplication(targetApplication);
  view_->searchField.forget();
  view_->setSearchBar(SearchBar::hidden);
  clearFilters();
  clips_.select(0);
  list_->lookAfresh();
  refresh(Selection::keepIndex);
  positionOnCurrentScreen();
  view_->list.setFocus();
  showOnAllWorkspaces(view_->panel, services_.spaces);
  view_->panel.makeKeyAndOrderFront();
  outsideClicks_->watch();
  warmSearchIndex(0);
}

void HistoryPanelController::openSearch(
    const std::optional<RunningApplication>& targetApplication) {
  if (!isSeen()) {
    toggle(targetApplication);
  } else {
    // Also while the toolkit takes the panel for active: for 0.4 s it does so wrongly. Whoever has
    // the keyboard now is who will get what is pasted.
    if (targetApplication) pasteController_.setTargetApplication(targetApplication);
    view_->panel.makeKeyAndOrderFront();
    if (services_.spaces) services_.spaces->bringForward(view_->panel.winId());
  }
  showSearchBar();
  view_->searchField.selectAll();
}

void HistoryPanelController::hide() {
  view_->list.hidePreviews();
  naming_->cancel();
  filterMenus_->closeMenu();
  dismiss(view_->panel);
  view_->searchField.forget();
  view_->setSearchBar(SearchBar::hidden);
  outsideClicks_->rest();
  showing_.end();
  // Nothing of the history stays here longer than it is looked at.
  view_->spoken.forget();
  clips_.clear();
  prepareNextShowing();
}

void HistoryPanelController::refreshIfVisible() {
  if (!isVisible()) prepareNextShowing();
  if (!isVisible() || view_->frame().contains(services_.screens.mouseLocation())) return;
  if (isLookedAtClosely()) return;
  filterMenus_->updateButtons();  // the last entry of a source may have gone
  refreshAndReveal(Selection::keepEntry);
}

void HistoryPanelController::refreshSearchIfVisible() {
  if (!isVisible() || view_->searchField.text().isEmpty() || isLookedAtClosely()) return;
  refresh(Selection::keepEntry);
}

/// Something of the list is open beside it: the list must not change under it.
bool HistoryPanelController::isLookedAtClosely() const {
  return naming_->isUnderWay() || view_->list.previewShown();
}

bool HistoryPanelController::handleKey(const KeyEvent& event) {
  const auto decision = decideKey(event, keyState());
  perform(decision);
  return decision.handling == KeyHandling::consumed;
}

/// What the search field has no use for works as in the list, which is what is being searched.
bool HistoryPanelController::handleKeyOfField(const KeyEvent& event) {
  if (!meansNothingInText(event)) return false;
  auto state = keyState();
  state.searchFieldFocused = false;
  const auto decision = decideKey(event, state);
  perform(decision);
  return decision.handling == KeyHandling::consumed;
}

PanelKeyState HistoryPanelController::keyState() const {
  const auto* item = clips_.selected();
  PanelKeyState state;
  state.searchBarShown = view_->searchBar() == SearchBar::shown;
  const auto* focused = view_->panel.focusWidget();
  state.searchFieldFocused = focused == &view_->searchField;
  state.filterButtonFocused =
      focused == &view_->typeFilterButton || focused == &view_->sourceFilterButton;
  state.searchTextEmpty = view_->searchField.text().isEmpty();
  state.filtered = clips_.isFiltered();
  state.displayedCount = clips_.items().size();
  state.selection = clips_.selection();
  state.selectionPinned = item != nullptr && item->pinned();
  state.selectionHasRow = state.selection && view_->list.row(*state.selection) != nullptr;
  state.previewShown = view_->list.previewShown();
  state.selectionPreviewed = state.selection && view_->list.previewShown(*state.selection);
  return state;
}

/// Decisions about the selected entry are made only while there is one.
void HistoryPanelController::perform(const PanelKeyDecision& decision) {
  const auto* item = clips_.selected();
  switch (decision.action) {
    case PanelAction::none:
      return;
    case PanelAction::showPreview:
      list_->scrollToSelection();
      return view_->list.showPreview(clips_.selection().value());
    case PanelAction::closePreview:
      return view_->list.hidePreviews();
    case PanelAction::copyFromPreview:
      return view_->list.copyFromPreview();
    case PanelAction::openMenu:
      return openMenu(clips_.selection().value());
    case PanelAction::renameSelected:
      return rename(item->id);
    case PanelAction::moveSelectedPin:
      return pins_.move(item->id, decision.step);
    case PanelAction::openSearch:
      return openSearch(std::nullopt);
    case PanelAction::pasteAt:
      clips_.select(decision.index);
      list_->markSelection();
      return paste(clips_.selected(), decision.style);
    case PanelAction::togglePin:
      return pins_.toggle(item->id);
    case PanelAction::pasteSelected:
      return paste(item, decision.style);
    case PanelAction::moveSelection:
      return moveSelection(decision.step);
    case PanelAction::deleteSelected:
      return deleteSelected();
    case PanelAction::clearSearch:
      view_->searchField.clear();
      return refreshAndReveal(Selection::keepEntry);
    case PanelAction::clearFilters:
      clearFilters();
      return refreshAndReveal(Selection::keepEntry);
    case PanelAction::hide:
      return hide();
    case PanelAction::typeIntoSearch:
      return showSearchBar();
  }
}

/// A preview that is shown goes along.
void HistoryPanelController::moveSelection(int step) {
  const bool previewed = view_->list.previewShown();
  clips_.moveSelection(step);
  list_->markSelection();
  list_->scrollToSelection();
  list_->tellSelection();
  if (const auto index = clips_.selection(); previewed && index) view_->list.showPreview(*index);
}

void HistoryPanelController::openMenu(std::size_t index) {
  list_->scrollToSelection();
  const auto* row = view_->list.row(index);
  if (row != nullptr) row->onMenu(row->mapToGlobal(row->rect().center()));
}

/// What an input method makes of keys beside the search field opens it as a letter does.
void HistoryPanelController::typeComposed(const QString& text) {
  if (!text.isEmpty() && !isPrinting(text.toStdString())) return;
  // It cannot go on composing in another place: what has been begun is handed over, and comes here.
  if (text.isEmpty()) QGuiApplication::inputMethod()->commit();
  showSearchBar();
  if (!text.isEmpty()) view_->searchField.insert(text);
}

void HistoryPanelController::showSearchBar() {
  view_->list.hidePreviews();
  view_->setSearchBar(SearchBar::shown);
  list_->fitPanel();
  view_->searchField.setFocus();
}

void HistoryPanelController::refresh(Selection selection) {
  clips_.filter.query = view_->searchField.text().toStdString();
  clips_.refresh(store_.items(), selection);
  list_->show();
}

/// What Return would paste is in sight after all that a person does.
void HistoryPanelController::refreshAndReveal(Selection selection) {
  refresh(selection);
  list_->scrollToSelection();
}

void HistoryPanelController::positionOnCurrentScreen() {
  if (const auto screen = screenUnderMouse(services_.screens)) {
    view_->setFrame(ListGeometry::centred(view_->frame(), screen->visibleFrame));
  }
}

void HistoryPanelController::clearFilters() {
  clips_.clearFilters();
  filterMenus_->updateButtons();
}

/// Prepares one entry in each turn of the main queue, so that the first key typed finds the work
/// done and no key waits for it.
void HistoryPanelController::warmSearchIndex(std::size_t nextItem) {
  services_.dispatch.async(showing_.guard([this, nextItem] {
    if (nextItem >= store_.items().size()) return;
    clips_.prepareSearch(store_.items()[nextItem]);
    warmSearchIndex(nextItem + 1);
  }));
}

/// What has just been copied is not kept waiting for it, and a burst of copies begins it once.
void HistoryPanelController::prepareNextShowing() {
  constexpr Seconds rest{0.5};
  if (preparation_) return;
  preparation_ = services_.dispatch.after(rest, [this] {
    const auto done = std::move(preparation_);
    if (!isVisible()) list_->prepare();
  });
}

void HistoryPanelController::refreshAndSelect(Uuid id) {
  refresh(Selection::keepEntry);
  if (!clips_.select(id)) return;
  list_->markSelection();
  list_->scrollToSelection();
}

void HistoryPanelController::paste(const ClipItem* item, PasteStyle style) {
  if (item == nullptr) return;
  const ClipItem pasted = *item;
  hide();
  pasteController_.paste(pasted, style == PasteStyle::plainText);
}

void HistoryPanelController::deleteSelected() {
  const auto* selected = clips_.selected();
  if (selected == nullptr) return;
  const auto index = clips_.selection().value();
  // The store tells of the removal at once, and that may refresh the list already.
  store_.remove(selected->id);
  clips_.select(index > 0 ? index - 1 : 0);
  refreshAndReveal(Selection::keepEntry);
}

void HistoryPanelController::rename(Uuid id) {
  view_->list.hidePreviews();
  naming_->begin(id);
}

}  // namespace vantorel
