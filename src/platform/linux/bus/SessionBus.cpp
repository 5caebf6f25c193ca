// SPDX-License-Identifier: MIT
#include "platform/linux/bus/SessionBus.h"

#include <string>
#include <utility>

#include "platform/linux/glib/SessionBusAddress.h"

namespace vantorel {

SessionBus::SessionBus(Dispatch& dispatch, EnvironmentLookup environment)
    : dispatch_(dispatch), environment_(std::move(environment)) {}

SessionBus::~SessionBus() = default;

std::optional<QDBusConnection> SessionBus::connection() {
  if (std::exchange(tried_, true)) return connection_;
  // Asked for without an address, the library would start a bus.
  if (!sessionBusAddress(environment_)) return std::nullopt;
  if (!adopt(QDBusConnection::sessionBus())) return std::nullopt;
  return connection_;
}

bool SessionBus::adopt(const QDBusConnection& connection) {
  if (!connection.isConnected()) return false;
  connection_ = connection;
  // The library says it to itself, as if it had come over the bus.
  connection_->connect(QString(), QStringLiteral("/org/freedesktop/DBus/Local"),
                       QStringLiteral("org.freedesktop.DBus.Local"), QStringLiteral("Disconnected"),
                       this, SLOT(lost()));
  return true;
}

void SessionBus::lost() {
  if (!connection_) return;
  connection_.reset();
  emit left();
  lookForIt();
}

void SessionBus::lookForIt() {
  const auto address = sessionBusAddress(environment_);
  if (!address) return;
  looking_ = std::make_unique<BusReturn>(
      *address,
      [&dispatch = dispatch_, back = life_.guard([this] { rejoin(); })] { dispatch.async(back); });
}

// It has just answered, so that joining it holds nobody up.
void SessionBus::rejoin() {
  looking_.reset();
  const auto address = sessionBusAddress(environment_);
  if (!address) return;
  const auto name = QStringLiteral("vantorel-%1").arg(++joined_);
  if (adopt(QDBusConnection::connectToBus(QString::fromStdString(*address), name))) {
    emit rejoined();
  } else {
    lookForIt();
  }
}

}  // namespace vantorel
