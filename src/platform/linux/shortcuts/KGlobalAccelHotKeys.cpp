// SPDX-License-Identifier: MIT
#include "platform/linux/shortcuts/KGlobalAccelHotKeys.h"

#include <QDBusMessage>
#include <QDBusPendingCallWatcher>
#include <QDBusPendingReply>
#include <algorithm>
#include <utility>

#include "platform/ApplicationId.h"
#include "platform/linux/bus/SessionBus.h"
#include "platform/linux/shortcuts/KGlobalAccelKey.h"

namespace vantorel {
namespace {

constexpr auto service = "org.kde.kglobalaccel";
constexpr auto compositor = "org.kde.KWin";
constexpr auto actionName = "toggle";
constexpr auto object = "/kglobalaccel";
constexpr auto interface = "org.kde.KGlobalAccel";
// These keys, unless the service remembers others from earlier.
constexpr unsigned setPresent = 2;
// These keys now.
constexpr unsigned noAutoloading = 4;

/// How the service names an action: the program's and its own name, and both as people read them.
QStringList action() {
  return {QString::fromLatin1(applicationId::name), QString::fromLatin1(actionName),
          QStringLiteral("Vantorel"), QStringLiteral("Open or close the history")};
}

QDBusMessage call(const char* method) {
  return QDBusMessage::createMethodCall(service, object, interface, QString::fromLatin1(method));
}

QDBusMessage hasOwner(const char* name) {
  auto message = QDBusMessage::createMethodCall("org.freedesktop.DBus", "/org/freedesktop/DBus",
                                                "org.freedesktop.DBus", "NameHasOwner");
  message << QString::fromLatin1(name);
  return message;
}

}  // namespace

KGlobalAccelHotKeys::KGlobalAccelHotKeys(Dispatch& dispatch, SessionBus& bus)
    : dispatch_(dispatch), bus_(bus) {
  connect(&bus_, &SessionBus::rejoined, this, [this] {
    if (!registrations_.empty()) ask();
  });
}

KGlobalAccelHotKeys::~KGlobalAccelHotKeys() {
  if (!registrations_.empty()) giveBack();
}

bool KGlobalAccelHotKeys::installHandler(std::function<void(HotKeyId)> handler) {
  handler_ = std::move(handler);
  return true;
}

void KGlobalAccelHotKeys::removeHandler() { handler_ = nullptr; }

std::optional<HotKeyRef> KGlobalAccelHotKeys::registerHotKey(const HotKeyCombination& combination,
                                                             HotKeyId id) {
  const auto keys = kGlobalAccelKeys(combination);
  if (keys.isEmpty()) return std::nullopt;
  // The first is what the program starts with, any other was chosen by the user just now.
  const bool isChosen = !registrations_.empty() || isTakenAway_;
  if (isTakenAway_) registrations_.clear();
  registrations_.push_back(
      {.reference = ++lastReference_, .keys = keys, .id = id, .insists = isChosen});
  ask();
  return lastReference_;
}

void KGlobalAccelHotKeys::unregisterHotKey(HotKeyRef reference) {
  const auto found = std::find_if(registrations_.begin(), registrations_.end(),
                                  [=](const auto& each) { return each.reference == reference; });
  if (found == registrations_.end()) return;
  const bool hadTheKeys = std::next(found) == registrations_.end();
  registrations_.erase(found);
  if (!hadTheKeys) return;
  if (registrations_.empty()) {
    isTakenAway_ = false;
    giveBack();
  } else {
    registrations_.back().insists = true;
    ask();
  }
}

std::optional<HotKeyCombination> KGlobalAccelHotKeys::heldInstead(HotKeyRef reference) const {
  const auto found = std::find_if(registrations_.begin(), registrations_.end(),
                                  [=](const auto& each) { return each.reference == reference; });
  return found == registrations_.end() ? std::nullopt : found->instead;
}

bool KGlobalAccelHotKeys::isAwaited(HotKeyRef reference) const {
  return std::any_of(registrations_.begin(), registrations_.end(), [=](const auto& each) {
    return each.reference == reference && each.isAwaited;
  });
}

void KGlobalAccelHotKeys::setAnswerHandler(
    const std::function<void(HotKeyRef, HotKeyAnswer)>& handler) {
  answerHandler_ = handler;
}

void KGlobalAccelHotKeys::ask() {
  ++questions_;
  if (auto bus = bus_.connection()) return ask(*bus);
  dispatch_.async(life_.guard([this, question = questions_] {
    if (question == questions_) absent();
  }));
}

void KGlobalAccelHotKeys::ask(QDBusConnection& bus) {
  listen(bus);
  await(bus.asyncCall(hasOwner(compositor)), [this](const QDBusPendingCall& reply) {
    if (!QDBusPendingReply<bool>(reply).isError() && QDBusPendingReply<bool>(reply).value()) {
      sendKeys();
    } else {
      absent();
    }
  });
}

void KGlobalAccelHotKeys::sendKeys() {
  const auto bus = bus_.connection();
  if (!bus || registrations_.empty()) return;
  auto introduction = call("doRegister");
  introduction << action();
  bus->asyncCall(introduction);
  auto keys = call("setShortcut");
  const auto& newest = registrations_.back();
  keys << action() << QVariant::fromValue(newest.keys)
       << (newest.insists ? setPresent | noAutoloading : setPresent);
  await(bus->asyncCall(keys), [this](const QDBusPendingCall& reply) { keysAnswered(reply); });
}

void KGlobalAccelHotKeys::tell(const char* method) {
  const auto bus = bus_.connection();
  if (!bus) return;
  auto message = call(method);
  message.setAutoStartService(false);
  message << action();
  bus->send(message);
}

void KGlobalAccelHotKeys::giveBack() {
  ++questions_;
  tell("setInactive");
}

void KGlobalAccelHotKeys::listen(QDBusConnection& bus) {
  if (listeningTo_ == bus.name()) return;
  listeningTo_ = bus.name();
  // From whatever object: the service makes its path of the program's name.
  bus.connect(service, QString(), QStringLiteral("org.kde.kglobalaccel.Component"),
              QStringLiteral("globalShortcutPressed"), this,
              SLOT(pressed(QString, QString, qlonglong)));
  // Newer and older services say so of what their settings change.
  for (const char* signal : {"yourShortcutsChanged", "yourShortcutGotChanged"}) {
    bus.connect(service, object, interface, QString::fromLatin1(signal), this,
                SLOT(keysChanged(QDBusMessage)));
  }
  watcher_ =
      std::make_unique<QDBusServiceWatcher>(service, bus, QDBusServiceWatcher::WatchForOwnerChange);
  connect(watcher_.get(), &QDBusServiceWatcher::serviceOwnerChanged, this,
          [this](const QString&, const QString&, const QString& owner) {
            if (!owner.isEmpty() && !registrations_.empty()) ask();
          });
}

void KGlobalAccelHotKeys::await(const QDBusPendingCall& call,
                                std::function<void(const QDBusPendingCall&)> answered) {
  auto* pending = new QDBusPendingCallWatcher(call, this);
  connect(pending, &QDBusPendingCallWatcher::finished, this,
          [this, pending, answered = std::move(answered), question = questions_] {
            pending->deleteLater();
            if (question == questions_) answered(*pending);
          });
}

void KGlobalAccelHotKeys::keysAnswered(const QDBusPendingCall& call) {
  const QDBusPendingReply<QList<int>> reply = call;
  if (reply.isError()) return absent();
  auto given = reply.value();
  auto& newest = registrations_.back();
  const bool areAll = std::all_of(newest.keys.begin(), newest.keys.end(),
                                  [&](int key) { return given.contains(key); });
  if (areAll) return held();
  if (newest.insists) return taken();
  // What an earlier version asked for may be a part of it.
  if (given.contains(newest.keys.first())) {
    newest.insists = true;
    return sendKeys();
  }
  if (given.isEmpty()) return takenAway();
  given.removeAll(0);  // stands for a key that others have
  if (given.isEmpty()) return taken();
  chosenByUser(given);
}

void KGlobalAccelHotKeys::chosenByUser(const QList<int>& keys) {
  auto& newest = registrations_.back();
  newest.keys = keys;
  newest.instead = combinationOf(keys.first());
  newest.isAwaited = true;  // they are news
  held();
}

void KGlobalAccelHotKeys::held() {
  auto& newest = registrations_.back();
  newest.insists = false;
  isTakenAway_ = false;
  if (std::exchange(newest.isAwaited, false)) answer(newest.reference, HotKeyAnswer::held);
}

/// The service would remember the refusal as the user's wish.
void KGlobalAccelHotKeys::taken() {
  const HotKeyRef refused = registrations_.back().reference;
  registrations_.pop_back();
  tell("unRegister");
  if (!registrations_.empty()) {
    registrations_.back().insists = true;
    ask();
  }
  answer(refused, HotKeyAnswer::taken);
}

/// It is kept and awaited, for the user may give it keys again.
void KGlobalAccelHotKeys::takenAway() {
  auto& newest = registrations_.back();
  newest.isAwaited = true;
  if (!std::exchange(isTakenAway_, true)) answer(newest.reference, HotKeyAnswer::absent);
}

void KGlobalAccelHotKeys::absent() {
  const auto all = std::exchange(registrations_, {});
  for (const auto& each : all) answer(each.reference, HotKeyAnswer::absent);
}

void KGlobalAccelHotKeys::answer(HotKeyRef reference, HotKeyAnswer answer) {
  // The handler may be replaced while it runs.
  if (const auto handler = answerHandler_) handler(reference, answer);
}

void KGlobalAccelHotKeys::keysChanged(const QDBusMessage& message) {
  const auto changed = message.arguments().value(0).toStringList();
  if (registrations_.empty() || changed.mid(0, 2) != action().mid(0, 2)) return;
  ask();
}

void KGlobalAccelHotKeys::pressed(const QString& component, const QString& action,
                                  qlonglong /*time*/) {
  if (component != QLatin1String(applicationId::name) || action != QLatin1String(actionName)) {
    return;
  }
  if (!handler_ || registrations_.empty()) return;
  const auto handler = handler_;
  handler(registrations_.back().id);
}

}  // namespace vantorel
