// SPDX-License-Identifier: MIT
#include "panel/ListPresenter.h"

#include <vector>

#include "panel/ClipRowView.h"
#include "panel/HistoryPanelView.h"
#include "panel/ListGeometry.h"

namespace vantorel {
namespace {

/// What a reader says of the search; the list shows it to the eye.
QString foundText(std::size_t count) {
  if (count == 0) return QStringLiteral("No matching clips");
  if (count == 1) return QStringLiteral("1 clip found");
  return QStringLiteral("%1 clips found").arg(count);
}

}  // namespace

ListPresenter::ListPresenter(const ClipStore& store, const PanelServices& services,
                             const DisplayedClips& clips, HistoryPanelView& view)
    : store_(store),
      dispatch_(services.dispatch),
      clips_(clips),
      view_(view),
      dateText_(DateText::forUser()),
      pictures_(store, services, clips, view.list) {
  pictures_.onAvailability = [this](Uuid id) { updateRow(id); };
}

void ListPresenter::show() {
  const auto& items = clips_.items();
  if (items.empty()) {
    view_.list.setEmpty(clips_.isNarrowed() ? foundText(0) : QStringLiteral("No clips yet"));
  } else {
    std::vector<RowContent> rows;
    rows.reserve(items.size());
    for (std::size_t index = 0; index < items.size(); ++index) rows.push_back(contentAt(index));
    view_.list.setRows(rows, ListGeometry::pinBoundary(items));
    pictures_.requestAll();
    markSelection();
    view_.listScrollView.scrollTo(0);
  }
  tellFound();
  fitPanel();
}

void ListPresenter::fitPanel() {
  const auto& items = clips_.items();
  const auto searchBar = view_.searchBar();
  const double height =
      ListGeometry::listHeight(items.size(), ListGeometry::pinBoundary(items), searchBar);
  view_.setListHeight(height);
  view_.setFrame(
      ListGeometry::resized(view_.frame(), ListGeometry::panelHeight(height, searchBar)));
}

/// Whoever types hears how much is left. The field describes it too, or it would be described by
/// its own placeholder.
void ListPresenter::tellFound() {
  const bool narrowed = clips_.isNarrowed();
  const auto text = narrowed ? foundText(clips_.items().size()) : QStringLiteral("All clips");
  if (text == view_.searchField.accessibleDescription()) return;
  view_.searchField.setAccessibleDescription(text);
  if (narrowed) view_.spoken.say(text);
}

void ListPresenter::markSelection() { view_.list.select(clips_.selection()); }

void ListPresenter::tellSelection() {
  if (view_.panel.focusWidget() == &view_.list) return;
  const auto index = clips_.selection();
  const auto* row = index ? view_.list.row(*index) : nullptr;
  if (row == nullptr) return;
  const auto pin = row->accessibleDescription();
  const auto name = row->accessibleName();
  view_.spoken.say(pin.isEmpty() ? name : name + QStringLiteral(", ") + pin);
}

void ListPresenter::scrollToSelection() {
  if (const auto index = clips_.selection()) view_.revealRow(*index);
}

RowContent ListPresenter::contentAt(std::size_t index) {
  const auto& items = clips_.items();
  const ClipItem& item = items[index];
  const auto date = dateText_.text(item.recency(), dispatch_.now());
  auto content = rowContent(item, pictures_.availability(item), date, store_.canPinMore());
  // The line below the pins parts them from the rest, and nothing follows the last row.
  content.divided = index + 1 < items.size() && item.pinned() == items[index + 1].pinned();
  return content;
}

/// What is known of an entry's files has changed.
void ListPresenter::updateRow(Uuid id) {
  const auto index = clips_.indexOf(id);
  if (!index) return;
  if (auto* row = view_.list.row(*index)) row->setContent(contentAt(*index));
  pictures_.requestThumbnail(clips_.items()[*index]);
}

}  // namespace vantorel
