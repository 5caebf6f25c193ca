// SPDX-License-Identifier: MIT
#pragma once

#include <QDBusArgument>
#include <QDBusVariant>
#include <QList>
#include <QMetaType>
#include <QString>
#include <QVariantMap>

namespace vantorel {

// What trays and their menus say to one another over the bus, as it lies on the wire.

/// (iiay): a picture, its pixels 0xAARRGGBB with the most significant byte first, not multiplied.
struct TrayPixmap {
  int width = 0;
  int height = 0;
  QByteArray pixels;
};

/// (sa(iiay)ss)
struct TrayToolTip {
  QString iconName;
  QList<TrayPixmap> pictures;
  QString title;
  QString text;
};

/// (ia{sv}av): a row of a menu with those below it, each a variant of this type.
struct TrayMenuLayout {
  int id = 0;
  QVariantMap properties;
  QList<TrayMenuLayout> children;
};

/// (ia{sv})
struct TrayMenuProperties {
  int id = 0;
  QVariantMap properties;
};

/// (isvu): something that happened to a row.
struct TrayMenuEvent {
  int id = 0;
  QString type;
  QDBusVariant data;
  uint timestamp = 0;
};

QDBusArgument& operator<<(QDBusArgument& argument, const TrayPixmap& pixmap);
const QDBusArgument& operator>>(const QDBusArgument& argument, TrayPixmap& pixmap);
QDBusArgument& operator<<(QDBusArgument& argument, const TrayToolTip& toolTip);
const QDBusArgument& operator>>(const QDBusArgument& argument, TrayToolTip& toolTip);
QDBusArgument& operator<<(QDBusArgument& argument, const TrayMenuLayout& layout);
const QDBusArgument& operator>>(const QDBusArgument& argument, TrayMenuLayout& layout);
QDBusArgument& operator<<(QDBusArgument& argument, const TrayMenuProperties& properties);
const QDBusArgument& operator>>(const QDBusArgument& argument, TrayMenuProperties& properties);
QDBusArgument& operator<<(QDBusArgument& argument, const TrayMenuEvent& event);
const QDBusArgument& operator>>(const QDBusArgument& argument, TrayMenuEvent& event);

/// Makes the bus's library know these types; as often as wanted.
void registerTrayTypes();

}  // namespace vantorel

Q_DECLARE_METATYPE(vantorel::TrayPixmap)
Q_DECLARE_METATYPE(vantorel::TrayToolTip)
Q_DECLARE_METATYPE(vantorel::TrayMenuLayout)
Q_DECLARE_METATYPE(vantorel::TrayMenuProperties)
Q_DECLARE_METATYPE(vantorel::TrayMenuEvent)
