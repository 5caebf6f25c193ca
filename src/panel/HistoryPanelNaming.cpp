// Naming a pinned entry, on a sheet over the panel.

#include <algorithm>

#include "chrome/SheetWindow.h"
#include "panel/HistoryPanelController.h"
#include "panel/HistoryPanelView.h"
#include "panel/NameField.h"

namespace vantorel {
void HistoryPanelController::renamePin(Uuid id) {
  const auto found = std::find_if(store_.items().begin(), store_.items().end(),
                                  [&](const ClipItem& item) { return item.id == id; });
  if (found == store_.items().end() || !found->pinned() || sheet_) return;
  view_->list.hidePreviews();
  sheet_ = std::make_unique<SheetWindow>(
      SheetWindow::Question{
          QStringLiteral("Name Pinned Clip"), {}, QStringLiteral("Save"), QStringLiteral("Cancel")},
      services_.chrome(), &view_->panel);
  auto* field = new NameField(QString::fromStdString(found->customName.value_or(std::string())));
  sheet_->setAccessory(field);
  sheet_->onFinished = [this, id, field](SheetWindow::Answer answer) {
    const auto name = field->text().toStdString();
    const auto sheet = std::move(sheet_);  // goes when this has been done
    view_->panel.activateWindow();
    if (answer == SheetWindow::Answer::accepted) finishRenaming(id, name);
  };
  sheet_->begin(field);
}

void HistoryPanelController::finishRenaming(Uuid id, const std::string& name) {
  store_.renamePinned(id, name);
  refresh(Selection::keepEntry);
  select(id);
}

}  // namespace vantorel
