#include "panel/HistoryPanelController.h"

#include <QApplication>
#include <algorithm>
#include <cmath>

#include "chrome/AccompanyingWindow.h"
#include "chrome/KeyTranslation.h"
#include "chrome/SheetWindow.h"
#include "chrome/VantorelMenu.h"
#include "panel/ClipRowView.h"
#include "panel/HistoryPanelView.h"
#include "panel/ListGeometry.h"
#include "panel/PanelAccessibility.h"

namespace vantorel {

using ListGeometry::SearchBar;

namespace {

/// Whether the pointer is over any window of this program that it can press something in, such as
/// a preview.
bool isOnOwnWindow(Point point) {
  const QPoint place(static_cast<int>(std::floor(point.x)), static_cast<int>(std::floor(point.y)));
  // Asks the window system, which knows what lies on top.
  const auto* window = QApplication::topLevelAt(place);
  return window != nullptr && !window->windowFlags().testFlag(Qt::WindowTransparentForInput);
}

}  // namespace

HistoryPanelController::HistoryPanelController(ClipStore& store, PasteController& pasteController,
                                               PanelServices services)
    : store_(store),
      pasteController_(pasteController),
      services_(std::move(services)),
      toast_(services_.chrome()),
      dateText_(DateText::forUser()),
      availability_(services_.dispatch),
      thumbnails_(store, ThumbnailServices{services_.dispatch, services_.files, services_.images,
                                           services_.fileThumbnails, services_.icons,
                                           services_.screens, [this](const ClipItem& item) {
                                             return availability_.of(item) ==
                                                    Availability::unavailable;
                                           }}) {
  installPanelAccessibility();
  view_ = std::make_unique<HistoryPanelView>(services_.chrome());
  view_->panel.onCloseRequested = [this] { hide(); };
  view_->panel.onKeyPress = [this](const QKeyEvent& event) {
    return !sheet_ && handleKey(translated(event, services_.keyCodeForScanCode));
  };
  view_->searchField.onEdit = [this] {
    selectedIndex_ = 0;
    refresh(Selection::keepIndex);
  };
  view_->list.commands = rowCommands();
  view_->list.onComposed = [this](const QString& text) { typeComposed(text); };
  view_->list.onMenuOpened = [this] { menuOpened(); };
  view_->list.onMenuClosed = [this] { menuClosed(); };
  QObject::connect(&view_->typeFilterButton, &QAbstractButton::clicked, &view_->panel,
                   [this] { showTypeFilters(); });
  QObject::connect(&view_->sourceFilterButton, &QAbstractButton::clicked, &view_->panel,
                   [this] { showSourceFilters(); });
  availability_.onAnswer = [this](Uuid id, Availability) { updateRow(id); };
  services_.dispatch.async([this, alive = std::weak_ptr(alive_)] {
    if (!alive.expired()) view_->warmUp();
  });
}

HistoryPanelController::~HistoryPanelController() = default;

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
  selectedIndex_ = 0;
  availability_.lookAfresh(store_.items());
  requestedImages_.clear();
  refresh(Selection::keepIndex);
  positionOnCurrentScreen();
  view_->list.setFocus();
  accompanyUser(view_->panel, services_.spaces);
  view_->panel.makeKeyAndOrderFront();
  startOutsideClickMonitor();
  showing_ = std::make_shared<const bool>(true);
  warmSearchIndex(0);
}

void HistoryPanelController::openSearch(
    const std::optional<RunningApplication>& targetApplication) {
  if (!isSeen()) toggle(targetApplication);
  showSearchBar();
  view_->searchField.selectAll();
}

void HistoryPanelController::hide() {
  view_->list.hidePreviews();
  if (sheet_) sheet_->end(SheetWindow::Answer::cancelled);
  if (menu_) menu_->close();
  takeLeave(view_->panel);
  view_->searchField.forget();
  view_->setSearchBar(SearchBar::hidden);
  outsideClickMonitor_.reset();
  showing_.reset();
  // Nothing of the history stays here longer than it is looked at.
  displayedItems_.clear();
  searchIndex_.clear();
}

void HistoryPanelController::refreshIfVisible() {
  if (!isVisible() || view_->frame().contains(services_.screens.mouseLocation())) return;
  if (isLookedAtClosely()) return;
  updateFilterButtons();  // the last entry of a source may have gone
  refresh(Selection::keepEntry);
  scrollSelectionIntoView();
}

void HistoryPanelController::refreshSearchIfVisible() {
  if (!isVisible() || view_->searchField.text().isEmpty() || isLookedAtClosely()) return;
  refresh(Selection::keepEntry);
}

/// Something of the list is open beside it: the list must not change under it.
bool HistoryPanelController::isLookedAtClosely() const {
  return sheet_ != nullptr || view_->list.previewShown();
}

void HistoryPanelController::refresh(Selection selection) {
  std::optional<Uuid> selectedId;
  if (const auto* item = selectedItem(); item != nullptr && selection == Selection::keepEntry) {
    selectedId = item->id;
  }
  const ClipSearchFilter filter{view_->searchField.text().toStdString(), selectedType_,
                                selectedSourceId_};
  displayedItems_ = searchIndex_.matching(store_.items(), filter);
  const auto selected =
      std::find_if(displayedItems_.begin(), displayedItems_.end(),
                   [&](const ClipItem& item) { return selectedId && item.id == *selectedId; });
  if (selected != displayedItems_.end()) {
    selectedIndex_ = static_cast<std::size_t>(selected - displayedItems_.begin());
  } else if (selectedIndex_ >= displayedItems_.size()) {
    selectedIndex_ = displayedItems_.empty() ? 0 : displayedItems_.size() - 1;
  }
  rebuildDocument();
  resizeForCurrentContent();
}

void HistoryPanelController::rebuildDocument() {
  if (displayedItems_.empty()) {
    const bool everything = view_->searchField.text().isEmpty() &&
                            selectedType_ == ClipTypeFilter::all && !selectedSourceId_;
    view_->list.setEmpty(everything ? QStringLiteral("No clips yet")
                                    : QStringLiteral("No matching clips"));
    return;
  }
  std::vector<RowContent> rows;
  rows.reserve(displayedItems_.size());
  for (std::size_t index = 0; index < displayedItems_.size(); ++index) {
    rows.push_back(contentAt(index));
  }
  view_->list.setRows(rows, ListGeometry::pinBoundary(displayedItems_));
  requestPictures();
  updateSelection();
  view_->listScrollView.scrollTo(0);
}

RowContent HistoryPanelController::contentAt(std::size_t index) {
  const ClipItem& item = displayedItems_[index];
  const auto date = dateText_.text(item.recency(), services_.dispatch.now());
  auto content = rowContent(item, availability_.of(item), date, store_.canPinMore());
  // The line below the pins parts them from the rest, and nothing follows the last row.
  content.divided =
      index + 1 < displayedItems_.size() && item.pinned() == displayedItems_[index + 1].pinned();
  return content;
}

/// What is known of an entry's files has changed.
void HistoryPanelController::updateRow(Uuid id) {
  const auto* shown = displayed(id);
  if (shown == nullptr) return;
  const auto index = static_cast<std::size_t>(shown - displayedItems_.data());
  if (auto* row = view_->list.row(index)) row->setContent(contentAt(index));
  requestThumbnail(*shown);
}

void HistoryPanelController::resizeForCurrentContent() {
  const auto searchBar = view_->searchBar();
  const double height = ListGeometry::listHeight(
      displayedItems_.size(), ListGeometry::pinBoundary(displayedItems_), searchBar);
  view_->setListHeight(height);
  view_->setFrame(
      ListGeometry::resized(view_->frame(), ListGeometry::panelHeight(height, searchBar)));
}

void HistoryPanelController::positionOnCurrentScreen() {
  if (const auto screen = screenUnderMouse(services_.screens)) {
    view_->setFrame(ListGeometry::centred(view_->frame(), screen->visibleFrame));
  }
}

void HistoryPanelController::showSearchBar() {
  view_->setSearchBar(SearchBar::shown);
  resizeForCurrentContent();
  view_->searchField.setFocus();
}

void HistoryPanelController::startOutsideClickMonitor() {
  outsideClickMonitor_ =
      services_.eventMonitors.addGlobalMouseDownMonitor([this, alive = std::weak_ptr(alive_)] {
        if (alive.expired() || !isVisible() || sheet_) return;
        const Point mouse = services_.screens.mouseLocation();
        if (view_->frame().contains(mouse) || isOnOwnWindow(mouse)) return;
        services_.dispatch.async([this, alive] {
          if (alive.expired()) return;
          forgetPredecessor(view_->panel);
          hide();
        });
      });
}

/// Prepares one entry in each turn of the main queue, so that the first key typed finds the work
/// done and no key waits for it.
void HistoryPanelController::warmSearchIndex(std::size_t nextItem) {
  services_.dispatch.async([this, nextItem, showing = std::weak_ptr(showing_)] {
    if (showing.expired() || nextItem >= store_.items().size()) return;
    searchIndex_.prepare(store_.items()[nextItem]);
    warmSearchIndex(nextItem + 1);
  });
}

}  // namespace vantorel
