// SPDX-License-Identifier: MIT
#include "platform/linux/bus/ScreenSavers.h"

#include <QDBusPendingCallWatcher>
#include <QDBusPendingReply>
#include <algorithm>
#include <utility>

#include "platform/linux/bus/SessionBus.h"

namespace vantorel {
namespace {

QDBusMessage ownerOf(const QString& name) {
  auto message = QDBusMessage::createMethodCall("org.freedesktop.DBus", "/org/freedesktop/DBus",
                                                "org.freedesktop.DBus", "GetNameOwner");
  message << name;
  return message;
}

/// `answered` gets the value of a reply that is no error.
template <class Value>
void ask(const QDBusConnection& bus, const QDBusMessage& question, QObject* asker,
         std::function<void(Value)> answered) {
  auto* pending = new QDBusPendingCallWatcher(bus.asyncCall(question), asker);
  QObject::connect(pending, &QDBusPendingCallWatcher::finished, asker,
                   [pending, answered = std::move(answered)] {
                     pending->deleteLater();
                     const QDBusPendingReply<Value> reply = *pending;
                     if (!reply.isError()) answered(reply.value());
                   });
}

}  // namespace

QString ScreenSavers::pathOf(const QString& name) {
  return u'/' + QString(name).replace(u'.', u'/');
}

ScreenSavers::ScreenSavers(SessionBus& bus, std::function<void()> changed)
    : bus_(bus), changed_(std::move(changed)) {
  connect(&bus_, &SessionBus::rejoined, this, [this] { join(); });
  connect(&bus_, &SessionBus::left, this, [this] { leave(); });
  join();
}

void ScreenSavers::join() {
  auto bus = bus_.connection();
  if (!bus) return;
  watcher_ = std::make_unique<QDBusServiceWatcher>();
  watcher_->setConnection(*bus);
  connect(watcher_.get(), &QDBusServiceWatcher::serviceOwnerChanged, this,
          [this](const QString& name, const QString&, const QString& owner) {
            ownerKnown(name, owner);
          });
  for (const char* each : names) {
    const auto name = QString::fromLatin1(each);
    watcher_->addWatchedService(name);
    // From anybody: to ask who has the name would be waited for. The sender is looked at later.
    bus->connect(QString(), pathOf(name), name, QStringLiteral("ActiveChanged"), this,
                 SLOT(activeChanged(bool, QDBusMessage)));
    ask<QString>(*bus, ownerOf(name), this,
                 [this, name](const QString& owner) { ownerKnown(name, owner); });
  }
}

void ScreenSavers::leave() {
  watcher_.reset();
  savers_.clear();
  know();
}

void ScreenSavers::ownerKnown(const QString& name, const QString& owner) {
  const auto bus = bus_.connection();
  if (owner.isEmpty() || !bus) {
    savers_.erase(name);
    return know();
  }
  if (savers_[name].owner == owner) return;
  savers_[name] = {.owner = owner};
  know();
  const auto question =
      QDBusMessage::createMethodCall(owner, pathOf(name), name, QStringLiteral("GetActive"));
  ask<bool>(*bus, question, this, [this, name, owner](bool isActive) {
    const auto saver = savers_.find(name);
    if (saver == savers_.end() || saver->second.owner != owner || saver->second.hasTold) return;
    saver->second.isActive = isActive;
    know();
  });
}

void ScreenSavers::activeChanged(bool isActive, const QDBusMessage& message) {
  const auto saver = savers_.find(message.interface());
  if (saver == savers_.end() || saver->second.owner != message.service()) return;
  saver->second.isActive = isActive;
  saver->second.hasTold = true;
  know();
}

void ScreenSavers::know() {
  const bool isActive = std::any_of(savers_.begin(), savers_.end(),
                                    [](const auto& each) { return each.second.isActive; });
  if (std::exchange(isActive_, isActive) != isActive && changed_) changed_();
}

}  // namespace vantorel
