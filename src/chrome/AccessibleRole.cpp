// SPDX-License-Identifier: MIT
#include "chrome/AccessibleRole.h"

#include <QAccessibleWidget>
#include <QVariant>
#include <QWidget>

namespace vantorel {
namespace {

constexpr auto roleProperty = "vantorelRole";

QAccessibleInterface* accessibleFor(const QString& /*className*/, QObject* object) {
  if (!object->isWidgetType()) return nullptr;
  const auto role = object->property(roleProperty);
  if (!role.isValid()) return nullptr;
  return new QAccessibleWidget(static_cast<QWidget*>(object),
                               static_cast<QAccessible::Role>(role.toInt()));
}

}  // namespace

void setAccessibleRole(QWidget& view, QAccessible::Role role) {
  static const bool installed = [] {
    QAccessible::installFactory(accessibleFor);
    return true;
  }();
  static_cast<void>(installed);
  view.setProperty(roleProperty, static_cast<int>(role));
}

}  // namespace vantorel
