// SPDX-License-Identifier: MIT
#pragma once

#include <QDBusConnection>
#include <QDBusMessage>
#include <QDBusServiceWatcher>
#include <QList>
#include <QObject>
#include <functional>
#include <memory>
#include <vector>

#include "base/Lifetime.h"
#include "platform/Dispatch.h"
#include "platform/HotKeys.h"

class QDBusPendingCall;

namespace vantorel {

class SessionBus;

/// Shortcuts by KDE's service for them, which in a Wayland session is the compositor itself; where
/// that compositor is not on the bus, nobody would send the presses, and the answer is "absent".
/// The service knows one action of this program, whose keys are those of the newest registration:
/// when they are refused, those of the one before are asked for again. It remembers the action, and
/// the user may have given it other keys in the desktop's settings: those hold, unless newer ones
/// were chosen here; where the user took them all away, the answer is "absent", and "held" once
/// there are some again. Told anew to a service that comes back. Main thread; needs the application
/// object.
class KGlobalAccelHotKeys : public QObject, public HotKeys {
  Q_OBJECT

 public:
  /// Both outlive this.
  KGlobalAccelHotKeys(Dispatch& dispatch, SessionBus& bus);
  /// Gives the keys back.
  ~KGlobalAccelHotKeys() override;
  KGlobalAccelHotKeys(const KGlobalAccelHotKeys&) = delete;
  KGlobalAccelHotKeys& operator=(const KGlobalAccelHotKeys&) = delete;

  [[nodiscard]] bool installHandler(std::function<void(HotKeyId)> handler) override;
  void removeHandler() override;
  [[nodiscard]] std::optional<HotKeyRef> registerHotKey(const HotKeyCombination& combination,
                                                        HotKeyId id) override;
  void unregisterHotKey(HotKeyRef reference) override;
  [[nodiscard]] std::optional<HotKeyCombination> heldInstead(HotKeyRef reference) const override;
  [[nodiscard]] bool isAwaited(HotKeyRef reference) const override;
  void setAnswerHandler(const std::function<void(HotKeyRef, HotKeyAnswer)>& handler) override;

 private slots:
  void pressed(const QString& component, const QString& action, qlonglong time);
  void keysChanged(const QDBusMessage& message);

 private:
  struct Registration {
    HotKeyRef reference = 0;
    QList<int> keys;  // of which each is to be held
    HotKeyId id;
    bool insists = false;  // whatever the service remembers
    bool isAwaited = true;
    std::optional<HotKeyCombination> instead = {};
  };

  void ask();
  void ask(QDBusConnection& bus);
  void sendKeys();
  /// Without waiting for the reply; starts no service.
  void tell(const char* method);
  void giveBack();
  void listen(QDBusConnection& bus);
  /// Calls `answered` with the reply to what was asked last; never with one to an older question.
  void await(const QDBusPendingCall& call, std::function<void(const QDBusPendingCall&)> answered);
  void keysAnswered(const QDBusPendingCall& call);
  void chosenByUser(const QList<int>& keys);
  void held();
  void taken();
  void takenAway();
  void absent();
  void answer(HotKeyRef reference, HotKeyAnswer answer);

  Dispatch& dispatch_;
  SessionBus& bus_;
  QString listeningTo_;  // the name of the connection
  std::unique_ptr<QDBusServiceWatcher> watcher_;
  std::function<void(HotKeyId)> handler_;
  std::function<void(HotKeyRef, HotKeyAnswer)> answerHandler_;
  std::vector<Registration> registrations_;  // the newest last
  HotKeyRef lastReference_ = 0;
  int questions_ = 0;
  bool isTakenAway_ = false;  // the user wants no keys for the action
  Lifetime life_;
};

}  // namespace vantorel
