// SPDX-License-Identifier: MIT
#include "platform/linux/bus/ApplicationService.h"

#include <QDBusConnection>
#include <QDBusMessage>
#include <QDBusPendingCall>
#include <chrono>
#include <utility>

#include "platform/ApplicationId.h"
#include "platform/linux/bus/ApplicationInterface.h"
#include "platform/linux/bus/SessionBus.h"

namespace vantorel {
namespace {

// The bus's own numbers.
constexpr uint doNotQueue = 4;
constexpr uint queue = 0;
constexpr uint primaryOwner = 1;
constexpr uint alreadyOwner = 4;

QDBusMessage nameRequest(uint manner) {
  auto request = QDBusMessage::createMethodCall("org.freedesktop.DBus", "/org/freedesktop/DBus",
                                                "org.freedesktop.DBus", "RequestName");
  request << QString(applicationId::name) << manner;
  return request;
}

}  // namespace

ApplicationService::ApplicationService(Dispatch& dispatch, SessionBus& bus,
                                       std::vector<OfferedAction> actions)
    : bus_(bus), interface_(std::make_unique<ApplicationInterface>(dispatch, std::move(actions))) {
  QObject::connect(&bus_, &SessionBus::rejoined, interface_.get(), [this] { claimAgain(); });
}

ApplicationService::~ApplicationService() {
  if (!exported_) return;
  if (auto bus = bus_.connection()) bus->unregisterObject(applicationId::objectPath);
}

NameClaim ApplicationService::claim() {
  auto bus = bus_.connection();
  if (!bus) return NameClaim::noBus;
  // The object is there before the name is: nobody who sees the name finds nothing behind it.
  if (!exported_) {
    exported_ = bus->registerObject(applicationId::objectPath, interface_.get(),
                                    QDBusConnection::ExportAllSlots);
  }
  const auto limit = std::chrono::milliseconds(forwardTimeLimit);
  const QDBusMessage reply =
      bus->call(nameRequest(doNotQueue), QDBus::Block, static_cast<int>(limit.count()));
  if (reply.type() != QDBusMessage::ReplyMessage) return NameClaim::noBus;
  const uint answer = reply.arguments().value(0).toUInt();
  owner_ = answer == primaryOwner || answer == alreadyOwner;
  return owner_ ? NameClaim::owned : NameClaim::taken;
}

// Nobody waits for the answer. A start that came in between leaves the name soon, for the history
// is ours; the bus hands it over then.
void ApplicationService::claimAgain() {
  auto bus = bus_.connection();
  if (!owner_ || !bus) return;
  exported_ = bus->registerObject(applicationId::objectPath, interface_.get(),
                                  QDBusConnection::ExportAllSlots);
  bus->asyncCall(nameRequest(queue));
}

void ApplicationService::onRequest(
    std::function<void(const ActionRequest&, const ActionAnswer&)> handler) {
  interface_->onRequest = std::move(handler);
}

}  // namespace vantorel
