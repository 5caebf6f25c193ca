// SPDX-License-Identifier: MIT
#include "panel/SpokenSelection.h"

#include <QAccessible>
#include <utility>

#include "panel/ClipRowView.h"
#include "panel/PinButton.h"

namespace vantorel {

SpokenSelection::SpokenSelection(QWidget& list, Dispatch& dispatch,
                                 std::function<ClipRowView*()> selected)
    : list_(list), dispatch_(dispatch), selected_(std::move(selected)) {}

// Later, since a command may select several times, and the toolkit sends readers to the list itself
// when it gets the keyboard: the last one counts.
void SpokenSelection::tell() {
  if (!QAccessible::isActive() || tells_) return;
  tells_ = true;
  dispatch_.async(life_.guard([this] {
    tells_ = false;
    // While something is typed, the reader belongs in the search field.
    if (list_.isVisible() && list_.hasFocus()) tellNow();
  }));
}

void SpokenSelection::tellNow() {
  auto* row = selected_();
  const Told now = row != nullptr ? Told{row, row->accessibleName(), row->content().pinned}
                                  : Told{nullptr, list_.accessibleDescription(), false};
  const auto before = std::exchange(told_, now);
  const bool goes = !before || before->row != now.row;
  if (goes) {
    QAccessibleEvent focus(row != nullptr ? static_cast<QWidget*>(row) : &list_,
                           QAccessible::Focus);
    QAccessible::updateAccessibility(&focus);
  }
  if (!before || !onSay) return;
  // Rows are used again, and a reader says nothing of a place where it is already.
  if (!goes && before->name != now.name) onSay(now.name);
  // Where it goes it says that a row is pinned, but not that it is no longer.
  const bool unpinned = before->name == now.name && before->pinned && !now.pinned;
  if (unpinned || (!goes && before->pinned != now.pinned)) onSay(pinState(now.pinned));
}

}  // namespace vantorel
