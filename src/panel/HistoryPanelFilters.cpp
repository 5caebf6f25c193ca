// What narrows the list besides the search text: a type and a source.

#include "panel/HistoryPanelController.h"
#include "panel/HistoryPanelView.h"

namespace vantorel {

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

}  // namespace vantorel
