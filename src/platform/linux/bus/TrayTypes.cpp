// SPDX-License-Identifier: MIT
#include "platform/linux/bus/TrayTypes.h"

#include <QDBusMetaType>

namespace vantorel {

QDBusArgument& operator<<(QDBusArgument& argument, const TrayPixmap& pixmap) {
  argument.beginStructure();
  argument << pixmap.width << pixmap.height << pixmap.pixels;
  argument.endStructure();
  return argument;
}

const QDBusArgument& operator>>(const QDBusArgument& argument, TrayPixmap& pixmap) {
  argument.beginStructure();
  argument >> pixmap.width >> pixmap.height >> pixmap.pixels;
  argument.endStructure();
  return argument;
}

QDBusArgument& operator<<(QDBusArgument& argument, const TrayToolTip& toolTip) {
  argument.beginStructure();
  argument << toolTip.iconName << toolTip.pictures << toolTip.title << toolTip.text;
  argument.endStructure();
  return argument;
}

const QDBusArgument& operator>>(const QDBusArgument& argument, TrayToolTip& toolTip) {
  argument.beginStructure();
  argument >> toolTip.iconName >> toolTip.pictures >> toolTip.title >> toolTip.text;
  argument.endStructure();
  return argument;
}

QDBusArgument& operator<<(QDBusArgument& argument, const TrayMenuLayout& layout) {
  argument.beginStructure();
  argument << layout.id << layout.properties;
  argument.beginArray(QMetaType::fromType<QDBusVariant>());
  for (const auto& child : layout.children) {
    argument << QDBusVariant(QVariant::fromValue(child));
  }
  argument.endArray();
  argument.endStructure();
  return argument;
}

const QDBusArgument& operator>>(const QDBusArgument& argument, TrayMenuLayout& layout) {
  argument.beginStructure();
  argument >> layout.id >> layout.properties;
  layout.children.clear();
  argument.beginArray();
  while (!argument.atEnd()) {
    QDBusVariant child;
    argument >> child;
    layout.children.push_back(qdbus_cast<TrayMenuLayout>(child.variant()));
  }
  argument.endArray();
  argument.endStructure();
  return argument;
}

QDBusArgument& operator<<(QDBusArgument& argument, const TrayMenuProperties& properties) {
  argument.beginStructure();
  argument << properties.id << properties.properties;
  argument.endStructure();
  return argument;
}

const QDBusArgument& operator>>(const QDBusArgument& argument, TrayMenuProperties& properties) {
  argument.beginStructure();
  argument >> properties.id >> properties.properties;
  argument.endStructure();
  return argument;
}

QDBusArgument& operator<<(QDBusArgument& argument, const TrayMenuEvent& event) {
  argument.beginStructure();
  argument << event.id << event.type << event.data << event.timestamp;
  argument.endStructure();
  return argument;
}

const QDBusArgument& operator>>(const QDBusArgument& argument, TrayMenuEvent& event) {
  argument.beginStructure();
  argument >> event.id >> event.type >> event.data >> event.timestamp;
  argument.endStructure();
  return argument;
}

void registerTrayTypes() {
  qDBusRegisterMetaType<TrayPixmap>();
  qDBusRegisterMetaType<QList<TrayPixmap>>();
  qDBusRegisterMetaType<TrayToolTip>();
  qDBusRegisterMetaType<TrayMenuLayout>();
  qDBusRegisterMetaType<TrayMenuProperties>();
  qDBusRegisterMetaType<QList<TrayMenuProperties>>();
  qDBusRegisterMetaType<TrayMenuEvent>();
  qDBusRegisterMetaType<QList<TrayMenuEvent>>();
  qDBusRegisterMetaType<QList<QStringList>>();
  qDBusRegisterMetaType<QList<int>>();
}

}  // namespace vantorel
