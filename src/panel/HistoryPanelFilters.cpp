// What narrows the list besides the search text: a type and a source.

#include <QAction>
#include <QString>
#include <utility>

#include "chrome/VantorelMenu.h"
#include "panel/HistoryPanelController.h"
#include "panel/HistoryPanelView.h"

namespace vantorel {
namespace {

/// A title as a menu shows it: what would mark a letter there is only a character here.
QString escaped(std::string_view title) {
  return QString::fromUtf8(title.data(), static_cast<qsizetype>(title.size()))
      .replace(QLatin1Char('&'), QStringLiteral("&&"));
}

}  // namespace

void HistoryPanelController::clearFilters() {
  selectedType_ = ClipTypeFilter::all;
  selectedSourceId_.reset();
  updateFilterButtons();
}

void HistoryPanelController::updateFilterButtons() {
  view_->typeFilterButton.setState(FilterMenus::typeButton(selectedType_));
  view_->sourceFilterButton.setState(FilterMenus::sourceButton(store_.items(), selectedSourceId_));
}

void HistoryPanelController::selectTypeFilter(ClipTypeFilter type) {
  selectedType_ = type;
  updateFilterButtons();
  refresh(Selection::keepEntry);
}

void HistoryPanelController::selectSourceFilter(std::optional<std::string> key) {
  selectedSourceId_ = std::move(key);
  updateFilterButtons();
  refresh(Selection::keepEntry);
}

void HistoryPanelController::showTypeFilters() {
  auto menu = std::make_unique<VantorelMenu>(services_.accessibility, services_.backdrops,
                                             &view_->typeFilterButton);
  for (const auto& choice : FilterMenus::typeRows(selectedType_)) {
    auto* row = menu->addAction(escaped(choice.title));
    row->setCheckable(true);
    row->setChecked(choice.on);
    QObject::connect(row, &QAction::triggered, menu.get(),
                     [this, type = choice.type] { selectTypeFilter(type); });
  }
  showBelow(view_->typeFilterButton, std::move(menu));
}

void HistoryPanelController::showSourceFilters() {
  auto menu = std::make_unique<VantorelMenu>(services_.accessibility, services_.backdrops,
                                             &view_->sourceFilterButton);
  const auto add = [&](std::string_view title, const std::optional<std::string>& key) {
    auto* row = menu->addAction(escaped(title));
    row->setCheckable(true);
    row->setChecked(selectedSourceId_ == key);
    QObject::connect(row, &QAction::triggered, menu.get(),
                     [this, key] { selectSourceFilter(key); });
  };
  add(FilterMenus::allSources, std::nullopt);
  menu->addSeparator();
  for (const auto& source : FilterMenus::sources(store_.items())) add(source.name, source.key);
  showBelow(view_->sourceFilterButton, std::move(menu));
}

/// The menu stays until the next one is opened or the panel goes: what it reports may come after
/// its end.
void HistoryPanelController::showBelow(const QWidget& button, std::unique_ptr<VantorelMenu> menu) {
  constexpr int gap = 2;
  if (menu_) menu_->close();
  menu_ = std::move(menu);
  menu_->onClosed = [this] { menuClosed(); };
  menuOpened();
  menu_->popup(button.mapToGlobal(QPoint(0, button.height() + gap)));
}

/// A click beside the menu is the menu's alone.
void HistoryPanelController::menuOpened() { outsideClickMonitor_.reset(); }

void HistoryPanelController::menuClosed() {
  if (isVisible()) startOutsideClickMonitor();
}

}  // namespace vantorel
