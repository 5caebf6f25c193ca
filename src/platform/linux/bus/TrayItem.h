// SPDX-License-Identifier: MIT
#pragma once

#include <QDBusObjectPath>
#include <QObject>
#include <functional>

#include "platform/linux/bus/TrayTypes.h"

namespace vantorel {

/// The object behind `org.kde.StatusNotifierItem`: what a bar asks of an item, and tells it.
class TrayItem : public QObject {
  Q_OBJECT
  Q_CLASSINFO("D-Bus Interface", "org.kde.StatusNotifierItem")
  Q_PROPERTY(QString Category READ category)
  Q_PROPERTY(QString Id READ id)
  Q_PROPERTY(QString Title READ title)
  Q_PROPERTY(QString Status READ status)
  Q_PROPERTY(int WindowId READ windowId)
  Q_PROPERTY(QString IconThemePath READ iconThemePath)
  Q_PROPERTY(QString IconName READ iconName)
  Q_PROPERTY(QList<vantorel::TrayPixmap> IconPixmap READ iconPixmap)
  Q_PROPERTY(QString IconAccessibleDesc READ title)
  Q_PROPERTY(QString OverlayIconName READ nothing)
  Q_PROPERTY(QList<vantorel::TrayPixmap> OverlayIconPixmap READ noPictures)
  Q_PROPERTY(QString AttentionIconName READ nothing)
  Q_PROPERTY(QList<vantorel::TrayPixmap> AttentionIconPixmap READ noPictures)
  Q_PROPERTY(QString AttentionMovieName READ nothing)
  Q_PROPERTY(vantorel::TrayToolTip ToolTip READ toolTip)
  Q_PROPERTY(bool ItemIsMenu READ itemIsMenu)
  Q_PROPERTY(QDBusObjectPath Menu READ menu)

 public:
  static constexpr const char* path = "/StatusNotifierItem";
  static constexpr const char* menuPath = "/StatusNotifierItem/Menu";

  std::function<void()> onActivate;
  std::function<void()> onSecondaryActivate;
  std::function<void(int x, int y)> onContextMenu;  // in pixels of the screen

  void setActive(bool active);
  /// `name` is empty where no theme has the picture; it is looked for below `themePath` too.
  void setIcon(const QString& name, const QString& themePath, QList<TrayPixmap> pictures);
  void setToolTip(const QString& text);

  [[nodiscard]] static QString category() { return QStringLiteral("ApplicationStatus"); }
  [[nodiscard]] static QString id() { return QStringLiteral("vantorel"); }
  [[nodiscard]] static QString title() { return QStringLiteral("Vantorel"); }
  [[nodiscard]] static QString nothing() { return {}; }
  [[nodiscard]] static QList<TrayPixmap> noPictures() { return {}; }
  [[nodiscard]] static int windowId() { return 0; }
  [[nodiscard]] static bool itemIsMenu() { return false; }
  [[nodiscard]] static QDBusObjectPath menu() { return QDBusObjectPath(menuPath); }
  [[nodiscard]] QString status() const;
  [[nodiscard]] QString iconThemePath() const { return themePath_; }
  [[nodiscard]] QString iconName() const { return iconName_; }
  [[nodiscard]] QList<TrayPixmap> iconPixmap() const { return pictures_; }
  [[nodiscard]] TrayToolTip toolTip() const;

 public slots:
  void Activate(int x, int y);
  void SecondaryActivate(int x, int y);
  void ContextMenu(int x, int y);
  void Scroll(int delta, const QString& orientation);
  // Windows take the focus under X11 without a token.
  void ProvideXdgActivationToken(const QString& token);

 signals:
  void NewTitle();
  void NewIcon();
  void NewAttentionIcon();
  void NewOverlayIcon();
  void NewToolTip();
  void NewStatus(const QString& status);

 private:
  bool active_ = false;
  QString iconName_;
  QString themePath_;
  QList<TrayPixmap> pictures_;
  QString toolTip_;
};

}  // namespace vantorel
