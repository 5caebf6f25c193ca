// SPDX-License-Identifier: MIT
#pragma once

#include <QDBusConnection>
#include <QDBusMessage>
#include <QDBusVirtualObject>
#include <QList>
#include <QMap>
#include <QString>
#include <QVariant>
#include <functional>
#include <map>
#include <string>
#include <vector>

namespace vantorel {

/// A shortcut as portals list it.
struct PortalShortcut {
  QString id;
  QVariantMap facts;
};

/// A desktop's portal that answers as the test wants.
class ScriptedPortal : public QDBusVirtualObject {
 public:
  enum class Has { shortcuts, shortcutsOfOthers, settingsAlone };
  enum class Order { replyFirst, responseFirst };

  explicit ScriptedPortal(Has has = Has::shortcuts);
  ~ScriptedPortal() override;
  ScriptedPortal(const ScriptedPortal&) = delete;
  ScriptedPortal& operator=(const ScriptedPortal&) = delete;

  [[nodiscard]] QString introspect(const QString& /*path*/) const override { return {}; }
  bool handleMessage(const QDBusMessage& message, const QDBusConnection& bus) override;

  /// What its user says to the question: the results of BindShortcuts; absent: nothing yet.
  std::function<QVariantMap()> user = [] { return added(); };
  Order order = Order::replyFirst;
  /// Whether it may look into whoever asks for the first time; others it refuses for good.
  std::function<bool()> mayLook = [] { return true; };
  bool isOld = false;     // it cannot be told who asks
  bool isSilent = false;  // it answers nothing
  /// What it says that it has made; empty: what was asked for.
  QVariant sessionHandle = {};
  /// Answers to Settings.Read, by their names.
  QMap<QString, QVariant> settings = {};

  /// The user added the shortcut, and the desktop calls its keys so.
  [[nodiscard]] static QVariantMap added(const QString& keys = "Press <Shift><Super>v");
  [[nodiscard]] static QVariantMap cancelled() { return {}; }

  /// Answers the open question of BindShortcuts.
  void respond(const QVariantList& response);
  void press(const QString& session, const QString& id = "toggle");
  void change(const QString& session, const QList<PortalShortcut>& shortcuts);
  void close(const QString& session);
  void changeSetting(const QString& space, const QString& name, const QVariant& value);
  void signal(const QString& object, const QString& interface, const QString& name,
              const QVariantList& arguments);

  /// The methods that were called, in their order.
  std::vector<std::string> calls = {};
  [[nodiscard]] bool wasCalledLast(const std::string& name) const {
    return !calls.empty() && calls.back() == name;
  }
  QString application = {};  // who was registered
  QString session = {};      // that was made last
  QString trigger = {};      // of what was bound last

 private:
  [[nodiscard]] QString madeBy(const QDBusMessage& message, const QString& kind,
                               const QString& token) const;
  void request(const QDBusMessage& message, const QVariantMap& options,
               const QVariantList& response);

  Has has_;
  QDBusConnection bus_;
  QString client_;
  std::map<QString, bool> isServed_;  // by the client's name
  QString question_;                  // the object of the last request
};

}  // namespace vantorel
