// SPDX-License-Identifier: MIT
#include "platform/linux/bus/TrayMenu.h"

#include <QDBusError>

namespace vantorel {
namespace {

/// An underscore before a letter would mark the letter.
QString label(const std::string& title) {
  return QString::fromStdString(shownMenuTitle(title)).replace(u'_', QStringLiteral("__"));
}

QVariantMap allProperties(const NumberedMenu::Entry& entry) {
  const MenuRow& row = entry.row;
  QVariantMap properties;
  if (!entry.children.empty()) properties["children-display"] = "submenu";
  if (row.isSeparator()) return properties;
  properties["label"] = label(row.title);
  properties["enabled"] = row.enabled;
  properties["visible"] = true;
  if (row.state != MenuState::none) {
    properties["toggle-type"] = "checkmark";
    properties["toggle-state"] = row.state == MenuState::on ? 1 : 0;
  }
  if (!row.keyEquivalent.empty()) {
    const QList<QStringList> shortcut = {{"Control", QString::fromStdString(row.keyEquivalent)}};
    properties["shortcut"] = QVariant::fromValue(shortcut);
  }
  return properties;
}

/// Only those that were asked for; all when none was named.
QVariantMap propertiesOf(int id, const NumberedMenu::Entry& entry, const QStringList& names) {
  QVariantMap properties = allProperties(entry);
  if (id != NumberedMenu::root && entry.row.isSeparator()) properties["type"] = "separator";
  if (names.isEmpty()) return properties;
  QVariantMap wanted;
  for (const QString& name : names) {
    if (const auto found = properties.find(name); found != properties.end()) {
      wanted[name] = *found;
    }
  }
  return wanted;
}

}  // namespace

bool TrayMenu::refresh() {
  const bool changed = menu_.setRows(rows ? rows() : std::vector<MenuRow>());
  if (changed) emit LayoutUpdated(menu_.revision(), NumberedMenu::root);
  return changed;
}

uint TrayMenu::GetLayout(int parentId, int recursionDepth, const QStringList& propertyNames,
                         TrayMenuLayout& layout) {
  if (parentId == NumberedMenu::root) refresh();
  if (menu_.entry(parentId) == nullptr) {
    refuse("There is no such row.");
    return 0;
  }
  layout = layoutOf(parentId, recursionDepth, propertyNames);
  return menu_.revision();
}

/// A negative depth is all of it.
TrayMenuLayout TrayMenu::layoutOf(int id, int depth, const QStringList& names) const {
  const NumberedMenu::Entry& entry = *menu_.entry(id);
  TrayMenuLayout layout{id, propertiesOf(id, entry, names), {}};
  if (depth == 0) return layout;
  for (const int child : entry.children) layout.children << layoutOf(child, depth - 1, names);
  return layout;
}

QList<TrayMenuProperties> TrayMenu::GetGroupProperties(const QList<int>& ids,
                                                       const QStringList& propertyNames) {
  QList<TrayMenuProperties> answer;
  for (const int id : ids) {
    if (const auto* entry = menu_.entry(id)) {
      answer << TrayMenuProperties{id, propertiesOf(id, *entry, propertyNames)};
    }
  }
  return answer;
}

QDBusVariant TrayMenu::GetProperty(int id, const QString& name) {
  const auto* entry = menu_.entry(id);
  const QVariantMap found = entry ? propertiesOf(id, *entry, {name}) : QVariantMap();
  if (found.isEmpty()) refuse("There is no such property.");
  return QDBusVariant(found.isEmpty() ? QVariant(0) : found.first());
}

void TrayMenu::Event(int id, const QString& eventId, const QDBusVariant& /*data*/,
                     uint /*timestamp*/) {
  if (!handle(id, eventId)) refuse("There is no such row.");
}

QList<int> TrayMenu::EventGroup(const QList<TrayMenuEvent>& events) {
  QList<int> unknown;
  for (const auto& event : events) {
    if (!handle(event.id, event.type)) unknown << event.id;
  }
  if (!events.isEmpty() && unknown.size() == events.size()) refuse("There are no such rows.");
  return unknown;
}

bool TrayMenu::handle(int id, const QString& eventId) {
  if (id == NumberedMenu::root) return true;  // it was opened or closed
  const auto row = menu_.chosen(id);
  if (row && eventId == "clicked" && row->enabled && onChosen) onChosen(*row);
  return row.has_value();
}

bool TrayMenu::AboutToShow(int id) {
  const bool changed = refresh();
  if (menu_.entry(id) == nullptr) refuse("There is no such row.");
  return changed;
}

QList<int> TrayMenu::AboutToShowGroup(const QList<int>& ids, QList<int>& idErrors) {
  const bool changed = refresh();
  for (const int id : ids) {
    if (menu_.entry(id) == nullptr) idErrors << id;
  }
  return changed ? QList<int>{NumberedMenu::root} : QList<int>();
}

void TrayMenu::refuse(const QString& reason) {
  if (calledFromDBus()) sendErrorReply(QDBusError::InvalidArgs, reason);
}

}  // namespace vantorel
