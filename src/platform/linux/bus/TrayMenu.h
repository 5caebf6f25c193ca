// SPDX-License-Identifier: MIT
#pragma once

#include <QDBusContext>
#include <QObject>
#include <QStringList>
#include <functional>
#include <vector>

#include "platform/linux/bus/NumberedMenu.h"
#include "platform/linux/bus/TrayTypes.h"

namespace vantorel {

/// The object behind `com.canonical.dbusmenu`: a menu that the desktop's bar draws by itself. What
/// others send is checked here.
class TrayMenu : public QObject, protected QDBusContext {
  Q_OBJECT
  Q_CLASSINFO("D-Bus Interface", "com.canonical.dbusmenu")
  Q_PROPERTY(uint Version READ version)
  Q_PROPERTY(QString TextDirection READ textDirection)
  Q_PROPERTY(QString Status READ status)
  Q_PROPERTY(QStringList IconThemePath READ iconThemePath)

 public:
  /// Answers the rows as they are now.
  std::function<std::vector<MenuRow>()> rows;
  std::function<void(const MenuRow&)> onChosen;

  /// Asks for the rows, and tells the bar when they have changed; so does the answer.
  bool refresh();

  [[nodiscard]] static uint version() { return 3; }
  [[nodiscard]] static QString textDirection() { return QStringLiteral("ltr"); }
  [[nodiscard]] static QString status() { return QStringLiteral("normal"); }
  [[nodiscard]] static QStringList iconThemePath() { return {}; }

 public slots:
  uint GetLayout(int parentId, int recursionDepth, const QStringList& propertyNames,
                 vantorel::TrayMenuLayout& layout);
  QList<vantorel::TrayMenuProperties> GetGroupProperties(const QList<int>& ids,
                                                         const QStringList& propertyNames);
  QDBusVariant GetProperty(int id, const QString& name);
  void Event(int id, const QString& eventId, const QDBusVariant& data, uint timestamp);
  /// Answers the unknown numbers.
  QList<int> EventGroup(const QList<vantorel::TrayMenuEvent>& events);
  bool AboutToShow(int id);
  QList<int> AboutToShowGroup(const QList<int>& ids, QList<int>& idErrors);

 signals:
  void LayoutUpdated(uint revision, int parent);
  // A bar that listens to these finds them promised; this menu always changes as a whole.
  void ItemsPropertiesUpdated(const QList<vantorel::TrayMenuProperties>& updated,
                              const QList<vantorel::TrayMenuProperties>& removed);
  void ItemActivationRequested(int id, uint timestamp);

 private:
  [[nodiscard]] TrayMenuLayout layoutOf(int id, int depth, const QStringList& names) const;
  [[nodiscard]] bool handle(int id, const QString& eventId);
  void refuse(const QString& reason);

  NumberedMenu menu_;
};

}  // namespace vantorel
