// SPDX-License-Identifier: MIT
#include "panel/RowMenuPresenter.h"

#include <QAction>

#include "chrome/KeySymbols.h"
#include "chrome/VantorelMenu.h"
#include "panel/ClipRowView.h"

namespace vantorel {

RowMenuPresenter::RowMenuPresenter(const ChromeServices& services, QWidget& list)
    : services_(services), list_(list) {}

RowMenuPresenter::~RowMenuPresenter() = default;

void RowMenuPresenter::show(ClipRowView& row, const QPoint& place) {
  close();
  const Uuid id = row.content().id;
  menu_ = std::make_unique<VantorelMenu>(services_.accessibility, services_.backdrops, &list_);
  for (const auto& line : rowMenu(row.content())) {
    if (!line.action) {
      menu_->addSeparator();
      continue;
    }
    auto* action = menu_->addAction(QString::fromStdString(line.title));
    action->setEnabled(line.enabled);
    action->setToolTip(QString::fromStdString(spelledKeys(line.toolTip)));
    QObject::connect(action, &QAction::triggered, &list_, [this, id, chosen = *line.action] {
      if (onChosen) onChosen(chosen, id);
    });
  }
  menu_->onClosed = [this, &row] {
    row.setMenuOpen(false);
    if (onClosed) onClosed();
  };
  row.setMenuOpen(true);
  if (onOpened) onOpened();
  menu_->popup(place);
}

void RowMenuPresenter::close() {
  if (menu_) menu_->close();
}

}  // namespace vantorel
