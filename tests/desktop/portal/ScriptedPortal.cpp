// SPDX-License-Identifier: MIT
#include "desktop/portal/ScriptedPortal.h"

#include <QDBusArgument>
#include <QDBusMetaType>
#include <QDBusObjectPath>
#include <QDBusVariant>

namespace vantorel {

QDBusArgument& operator<<(QDBusArgument& argument, const PortalShortcut& shortcut) {
  argument.beginStructure();
  argument << shortcut.id << shortcut.facts;
  argument.endStructure();
  return argument;
}

const QDBusArgument& operator>>(const QDBusArgument& argument, PortalShortcut& shortcut) {
  argument.beginStructure();
  argument >> shortcut.id >> shortcut.facts;
  argument.endStructure();
  return argument;
}

namespace {

constexpr auto root = "/org/freedesktop/portal/desktop";
constexpr auto shortcutsInterface = "org.freedesktop.portal.GlobalShortcuts";

}  // namespace

ScriptedPortal::ScriptedPortal(Has has)
    : has_(has),
      bus_(QDBusConnection::connectToBus(
          QString::fromLocal8Bit(qgetenv("DBUS_SESSION_BUS_ADDRESS")), "portal")) {
  qDBusRegisterMetaType<PortalShortcut>();
  qDBusRegisterMetaType<QList<PortalShortcut>>();
  bus_.registerVirtualObject(root, this, QDBusConnection::SubPath);
  bus_.registerService("org.freedesktop.impl.portal.desktop.gnome");
  bus_.registerService("org.freedesktop.portal.Desktop");
}

ScriptedPortal::~ScriptedPortal() { QDBusConnection::disconnectFromBus("portal"); }

QVariantMap ScriptedPortal::added(const QString& keys) {
  const QList<PortalShortcut> shortcuts{{"toggle", {{"trigger_description", keys}}}};
  return {{"shortcuts", QVariant::fromValue(shortcuts)}};
}

bool ScriptedPortal::handleMessage(const QDBusMessage& message, const QDBusConnection& /*bus*/) {
  const auto name = message.member();
  const auto arguments = message.arguments();
  calls.push_back(name.toStdString());
  client_ = message.service();
  if (isSilent) {
    message.setDelayedReply(true);
    return true;
  }
  if (name == "Register" && isOld) {
    return bus_.send(message.createErrorReply(QDBusError::UnknownMethod, "no such method"));
  }
  // Properties are told to everybody.
  const bool isProperty = message.interface() == "org.freedesktop.DBus.Properties";
  if (!isProperty && !isServed_.contains(client_)) isServed_[client_] = mayLook();
  if (!isProperty && !isServed_[client_]) {
    bus_.send(message.createErrorReply(QDBusError::AccessDenied, "cannot look into the process"));
  } else if (name == "Register") {
    application = arguments.value(0).toString();
    bus_.send(message.createReply());
  } else if (name == "Get" && has_ != Has::settingsAlone) {
    bus_.send(message.createReply(QVariant::fromValue(QDBusVariant(1U))));
  } else if (name == "GetAll" && has_ == Has::shortcuts) {
    bus_.send(message.createReply(QVariantMap()));
  } else if (name == "Read" && settings.contains(arguments.value(1).toString())) {
    const QDBusVariant inner(settings.value(arguments.value(1).toString()));
    bus_.send(message.createReply(QVariant::fromValue(QDBusVariant(QVariant::fromValue(inner)))));
  } else if (name == "CreateSession") {
    const auto options = qdbus_cast<QVariantMap>(arguments.value(0));
    session = madeBy(message, "session", options.value("session_handle_token").toString());
    const auto handle = sessionHandle.isValid() ? sessionHandle : QVariant(session);
    request(message, options, {0U, QVariantMap{{"session_handle", handle}}});
  } else if (name == "BindShortcuts") {
    const auto bound = qdbus_cast<QList<PortalShortcut>>(arguments.value(1));
    trigger = bound.value(0).facts.value("preferred_trigger").toString();
    const auto options = qdbus_cast<QVariantMap>(arguments.value(3));
    request(message, options, user ? QVariantList{2U, user()} : QVariantList{});
  } else if (name == "Close") {
    bus_.send(message.createReply());
  } else {
    bus_.send(message.createErrorReply(QDBusError::UnknownMethod, "no such method"));
  }
  return true;
}

QString ScriptedPortal::madeBy(const QDBusMessage& message, const QString& kind,
                               const QString& token) const {
  auto client = message.service().mid(1);
  client.replace('.', '_');
  return QString(root) + "/" + kind + "/" + client + "/" + token;
}

void ScriptedPortal::request(const QDBusMessage& message, const QVariantMap& options,
                             const QVariantList& response) {
  question_ = madeBy(message, "request", options.value("handle_token").toString());
  const auto reply = message.createReply(QVariant::fromValue(QDBusObjectPath(question_)));
  if (order == Order::replyFirst) bus_.send(reply);
  if (!response.isEmpty()) respond(response);
  if (order == Order::responseFirst) bus_.send(reply);
}

void ScriptedPortal::respond(const QVariantList& response) {
  signal(question_, "org.freedesktop.portal.Request", "Response", response);
}

void ScriptedPortal::press(const QString& pressed, const QString& id) {
  signal(root, shortcutsInterface, "Activated",
         {QVariant::fromValue(QDBusObjectPath(pressed)), id, qulonglong{17}, QVariantMap()});
}

void ScriptedPortal::change(const QString& changed, const QList<PortalShortcut>& shortcuts) {
  signal(root, shortcutsInterface, "ShortcutsChanged",
         {QVariant::fromValue(QDBusObjectPath(changed)), QVariant::fromValue(shortcuts)});
}

void ScriptedPortal::close(const QString& closed) {
  signal(closed, "org.freedesktop.portal.Session", "Closed", {QVariantMap()});
}

void ScriptedPortal::changeSetting(const QString& space, const QString& name,
                                   const QVariant& value) {
  auto message =
      QDBusMessage::createSignal(root, "org.freedesktop.portal.Settings", "SettingChanged");
  message << space << name << QVariant::fromValue(QDBusVariant(value));
  bus_.send(message);
}

void ScriptedPortal::signal(const QString& object, const QString& interface, const QString& name,
                            const QVariantList& arguments) {
  auto message = QDBusMessage::createTargetedSignal(client_, object, interface, name);
  message.setArguments(arguments);
  bus_.send(message);
}

}  // namespace vantorel
