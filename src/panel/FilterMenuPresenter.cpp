// SPDX-License-Identifier: MIT
#include "panel/FilterMenuPresenter.h"

#include <QAction>
#include <QString>
#include <utility>

#include "chrome/VantorelMenu.h"

namespace vantorel {
namespace {

/// A row that is ticked when it is the one chosen.
QAction& addRow(VantorelMenu& menu, std::string_view title, bool on) {
  auto* row = menu.addAction(VantorelMenu::label(title));
  row->setCheckable(true);
  row->setChecked(on);
  return *row;
}

}  // namespace

FilterMenuPresenter::FilterMenuPresenter(const ClipStore& store, ClipSearchFilter& filter,
                                         Buttons buttons, const ChromeServices& services)
    : store_(store), filter_(filter), buttons_(buttons), services_(services) {
  QObject::connect(&buttons_.type, &QAbstractButton::clicked, &buttons_.type,
                   [this] { showTypes(); });
  QObject::connect(&buttons_.source, &QAbstractButton::clicked, &buttons_.source,
                   [this] { showSources(); });
}

FilterMenuPresenter::~FilterMenuPresenter() = default;

void FilterMenuPresenter::updateButtons() {
  buttons_.type.setState(FilterMenus::typeButton(filter_.type));
  buttons_.source.setState(FilterMenus::sourceButton(store_.items(), filter_.sourceId));
}

void FilterMenuPresenter::showTypes() {
  auto menu = menuOf(buttons_.type);
  for (const auto& choice : FilterMenus::typeRows(filter_.type)) {
    QObject::connect(&addRow(*menu, choice.title, choice.on), &QAction::triggered, menu.get(),
                     [this, type = choice.type] {
                       filter_.type = type;
                       tellChange();
                     });
  }
  showBelow(buttons_.type, std::move(menu));
}

void FilterMenuPresenter::showSources() {
  auto menu = menuOf(buttons_.source);
  const auto add = [&](std::string_view title, const std::optional<std::string>& key) {
    QObject::connect(&addRow(*menu, title, filter_.sourceId == key), &QAction::triggered,
                     menu.get(), [this, key] {
                       filter_.sourceId = key;
                       tellChange();
                     });
  };
  add(FilterMenus::allSources, std::nullopt);
  menu->addSeparator();
  for (const auto& source : FilterMenus::sources(store_.items())) add(source.name, source.key);
  showBelow(buttons_.source, std::move(menu));
}

std::unique_ptr<VantorelMenu> FilterMenuPresenter::menuOf(FilterButton& button) const {
  auto menu = std::make_unique<VantorelMenu>(services_.accessibility, services_.backdrops, &button);
  menu->setWindowTitle(button.accessibleName());
  return menu;
}

/// The menu stays until the next one is opened or this goes: what it reports may come after its
/// end.
void FilterMenuPresenter::showBelow(const FilterButton& button,
                                    std::unique_ptr<VantorelMenu> menu) {
  constexpr int gap = 2;
  closeMenu();
  menu_ = std::move(menu);
  menu_->onClosed = [this] {
    if (onMenuClosed) onMenuClosed();
  };
  if (onMenuOpened) onMenuOpened();
  menu_->popup(button.mapToGlobal(QPoint(0, button.height() + gap)));
}

void FilterMenuPresenter::closeMenu() {
  if (menu_) menu_->close();
}

void FilterMenuPresenter::tellChange() {
  updateButtons();
  if (onChange) onChange();
}

}  // namespace vantorel
