#include "platform/linux/dbus/ApplicationService.h"

#include <QDBusConnection>
#include <QDBusMessage>
#include <chrono>
#include <utility>

#include "platform/linux/ApplicationId.h"
#include "platform/linux/SessionBusAddress.h"
#include "platform/linux/dbus/ApplicationInterface.h"

namespace vantorel {
namespace {

// The bus's own numbers.
constexpr uint doNotQueue = 4;
constexpr uint primaryOwner = 1;
constexpr uint alreadyOwner = 4;

QDBusMessage nameRequest() {
  auto request = QDBusMessage::createMethodCall("org.freedesktop.DBus", "/org/freedesktop/DBus",
                                                "org.freedesktop.DBus", "RequestName");
  request << QString(applicationId::name) << doNotQueue;
  return request;
}

}  // namespace

ApplicationService::ApplicationService(Dispatch& dispatch)
    : interface_(std::make_unique<ApplicationInterface>(dispatch)) {}

ApplicationService::~ApplicationService() {
  if (exported_) QDBusConnection::sessionBus().unregisterObject(applicationId::objectPath);
}

NameClaim ApplicationService::claim(const EnvironmentLookup& lookup) {
  // Asked for without an address, the library would start a bus.
  if (!sessionBusAddress(lookup)) return NameClaim::noBus;
  auto bus = QDBusConnection::sessionBus();
  if (!bus.isConnected()) return NameClaim::noBus;
  // The object is there before the name is: nobody who sees the name finds nothing behind it.
  if (!exported_) {
    exported_ = bus.registerObject(applicationId::objectPath, interface_.get(),
                                   QDBusConnection::ExportAllSlots);
  }
  const auto limit = std::chrono::milliseconds(forwardTimeLimit);
  const QDBusMessage reply = bus.call(nameRequest(), QDBus::Block, static_cast<int>(limit.count()));
  if (reply.type() != QDBusMessage::ReplyMessage) return NameClaim::noBus;
  const uint answer = reply.arguments().value(0).toUInt();
  return answer == primaryOwner || answer == alreadyOwner ? NameClaim::owned : NameClaim::taken;
}

void ApplicationService::onActivate(std::function<void()> handler) {
  interface_->handlers().activate = std::move(handler);
}

void ApplicationService::onAction(std::function<void(Command, const std::string&)> handler) {
  interface_->handlers().action = std::move(handler);
}

}  // namespace vantorel
