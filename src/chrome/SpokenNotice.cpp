// SPDX-License-Identifier: MIT
#include "chrome/SpokenNotice.h"

#include "chrome/AccessibleRole.h"

namespace vantorel {

SpokenNotice::SpokenNotice(QWidget* window) : QWidget(window) {
  setAccessibleRole(*this, QAccessible::Notification);
  hide();  // or it would be said again whenever the window is shown
}

// The toolkit has no event for it yet, and readers say a notification when it is shown.
void SpokenNotice::say(const QString& sentence) {
  if (!QAccessible::isActive()) return;
  setAccessibleName(sentence);
  QAccessibleEvent shown(this, QAccessible::ObjectShow);
  QAccessible::updateAccessibility(&shown);
}

}  // namespace vantorel
