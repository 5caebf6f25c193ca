// SPDX-License-Identifier: MIT
#include "platform/linux/bus/BusSessionLock.h"

#include <gtest/gtest.h>

#include <QCoreApplication>
#include <QDBusConnection>
#include <QDBusMessage>
#include <QDBusVariant>
#include <QDBusVirtualObject>
#include <array>
#include <cstdlib>
#include <memory>
#include <string>

#include "desktop/session/PrivateSession.h"
#include "fakes/ManualDispatch.h"
#include "platform/linux/bus/SessionBus.h"

namespace vantorel {
namespace {

/// A service on a connection of its own that answers one question about one fact.
class Service : public QDBusVirtualObject {
 public:
  Service(const QString& name, const QString& path)
      : bus_(QDBusConnection::connectToBus(
            QString::fromLocal8Bit(qgetenv("DBUS_SESSION_BUS_ADDRESS")), connectionName())) {
    bus_.registerVirtualObject(path, this);
    bus_.registerService(name);
  }
  ~Service() override { QDBusConnection::disconnectFromBus(connectionName()); }
  Service(const Service&) = delete;
  Service& operator=(const Service&) = delete;

  [[nodiscard]] QString introspect(const QString& /*path*/) const override { return {}; }
  bool handleMessage(const QDBusMessage& message, const QDBusConnection& /*bus*/) override {
    ++questions;
    if (!isSilent) bus_.send(message.createReply(answer(message)));
    return true;
  }

  int questions = 0;
  bool isSilent = false;

 protected:
  [[nodiscard]] virtual QVariant answer(const QDBusMessage& question) const = 0;
  void send(const QDBusMessage& message) { bus_.send(message); }

 private:
  [[nodiscard]] QString connectionName() const {
    return QStringLiteral("service %1").arg(reinterpret_cast<quintptr>(this));
  }

  QDBusConnection bus_;
};

class Saver : public Service {
 public:
  explicit Saver(const char* name, bool isActive = false)
      : Service(name, ScreenSavers::pathOf(name)), name_(name), isActive_(isActive) {}

  void setActive(bool isActive) {
    isActive_ = isActive;
    tell(name_, isActive);
  }
  /// Says so of itself under the name of another.
  void tell(const QString& name, bool isActive) {
    auto signal = QDBusMessage::createSignal(ScreenSavers::pathOf(name), name,
                                             QStringLiteral("ActiveChanged"));
    signal << isActive;
    send(signal);
  }

 protected:
  [[nodiscard]] QVariant answer(const QDBusMessage& question) const override {
    return question.member() == QLatin1String("GetActive") ? QVariant(isActive_) : QVariant();
  }

 private:
  const QString name_;
  bool isActive_;
};

class LogInManager : public Service {
 public:
  explicit LogInManager(bool isLocked = false, const char* path = ownSession)
      : Service(QStringLiteral("org.freedesktop.login1"), QString::fromLatin1(path)),
        isLocked_(isLocked) {}

  static constexpr auto ownSession = "/org/freedesktop/login1/session/auto";

  void setLocked(bool isLocked) {
    isLocked_ = isLocked;
    tell();
  }
  /// Something of a session is another than before.
  void tell() {
    auto signal = QDBusMessage::createSignal(QStringLiteral("/org/freedesktop/login1/session/_32"),
                                             QStringLiteral("org.freedesktop.DBus.Properties"),
                                             QStringLiteral("PropertiesChanged"));
    signal << QStringLiteral("org.freedesktop.login1.Session") << QVariantMap() << QStringList();
    send(signal);
  }

 protected:
  [[nodiscard]] QVariant answer(const QDBusMessage& question) const override {
    const bool isUnderstood = question.arguments().value(1) == QStringLiteral("LockedHint");
    return isUnderstood ? QVariant::fromValue(QDBusVariant(isLocked_)) : QVariant();
  }

 private:
  bool isLocked_;
};

class BusSessionLockTest : public testing::Test {
 protected:
  BusSessionLockTest() {
    setenv("DBUS_SYSTEM_BUS_ADDRESS", std::getenv("DBUS_SESSION_BUS_ADDRESS"), 1);
  }
  void open() {
    lock_ = std::make_unique<BusSessionLock>(dispatch_, bus_);
    observation_ = lock_->observe([this] { ++changes_; });
  }
  [[nodiscard]] bool await(const std::function<bool()>& condition) {
    return waitFor([&] {
      QCoreApplication::processEvents();
      dispatch_.runQueued();
      return condition();
    });
  }
  [[nodiscard]] bool awaitLocked(bool isLocked) {
    return await([=, this] { return lock_->isLocked() == isLocked; });
  }

  PrivateSession session_;
  int argumentCount_ = 1;
  std::string name_ = "test";
  std::array<char*, 2> arguments_{name_.data(), nullptr};
  QCoreApplication application_{argumentCount_, arguments_.data()};
  ManualDispatch dispatch_;
  SessionBus bus_{dispatch_, processEnvironment};
  std::unique_ptr<BusSessionLock> lock_;
  std::unique_ptr<Observation> observation_;
  int changes_ = 0;
};

TEST_F(BusSessionLockTest, EachScreenSaverIsListenedTo) {
  open();
  for (const char* name : ScreenSavers::names) {
    Saver saver(name);
    ASSERT_TRUE(await([&] { return saver.questions == 1; })) << name;
    saver.setActive(true);
    ASSERT_TRUE(awaitLocked(true)) << name;
    saver.setActive(false);
    ASSERT_TRUE(awaitLocked(false)) << name;
  }
  EXPECT_EQ(changes_, 10);
}

TEST_F(BusSessionLockTest, OneThatIsActiveAlreadyIsAsked) {
  Saver saver("org.gnome.ScreenSaver", true);
  open();
  EXPECT_FALSE(lock_->isLocked()) << "nobody waits for the answer";
  EXPECT_TRUE(awaitLocked(true));
}

TEST_F(BusSessionLockTest, OneThatEndsLocksNothingAnyMore) {
  auto saver = std::make_unique<Saver>("org.mate.ScreenSaver", true);
  open();
  ASSERT_TRUE(awaitLocked(true));
  saver.reset();
  EXPECT_TRUE(awaitLocked(false));
  saver = std::make_unique<Saver>("org.mate.ScreenSaver", true);
  EXPECT_TRUE(awaitLocked(true));
}

TEST_F(BusSessionLockTest, AsLongAsAnyoneSaysSoItIsLocked) {
  Saver one("org.freedesktop.ScreenSaver", true);
  Saver other("org.gnome.ScreenSaver", true);
  open();
  ASSERT_TRUE(await([&] { return one.questions == 1 && other.questions == 1; }));
  ASSERT_TRUE(awaitLocked(true));
  other.setActive(false);
  one.setActive(false);
  ASSERT_TRUE(awaitLocked(false));
  EXPECT_EQ(changes_, 2);
}

TEST_F(BusSessionLockTest, OnlyWhoHasTheNameIsBelieved) {
  Saver saver("org.gnome.ScreenSaver");
  Saver stranger("org.acme.ScreenSaver");
  open();
  ASSERT_TRUE(await([&] { return saver.questions == 1; }));
  stranger.tell(QStringLiteral("org.gnome.ScreenSaver"), true);
  saver.setActive(false);
  saver.setActive(true);
  ASSERT_TRUE(awaitLocked(true));
  stranger.tell(QStringLiteral("org.gnome.ScreenSaver"), false);
  Saver last("org.xfce.ScreenSaver");  // asked behind all that
  ASSERT_TRUE(await([&] { return last.questions == 1; }));
  EXPECT_TRUE(lock_->isLocked());
  EXPECT_EQ(changes_, 1);
}

TEST_F(BusSessionLockTest, TheLogInManagersHintIsFollowed) {
  auto manager = std::make_unique<LogInManager>();
  open();
  ASSERT_TRUE(await([&] { return manager->questions > 0; }));
  manager->setLocked(true);
  ASSERT_TRUE(awaitLocked(true));
  manager->setLocked(false);
  ASSERT_TRUE(awaitLocked(false));
  manager->setLocked(true);
  ASSERT_TRUE(awaitLocked(true));
  manager.reset();
  EXPECT_TRUE(awaitLocked(false)) << "nobody comes and says so any more";
}

TEST_F(BusSessionLockTest, AManagerThatStartsAnewUnlocksNothing) {
  auto manager = std::make_unique<LogInManager>(true);
  open();
  ASSERT_TRUE(awaitLocked(true));
  manager->isSilent = true;
  const int before = manager->questions;
  manager->tell();
  ASSERT_TRUE(await([&] { return manager->questions > before; }));
  manager.reset();  // a question unanswered
  manager = std::make_unique<LogInManager>(true);
  ASSERT_TRUE(await([&] { return manager->questions > 0; }));
  EXPECT_EQ(changes_, 1);
  manager->setLocked(false);
  ASSERT_TRUE(awaitLocked(false));
  EXPECT_EQ(changes_, 2) << "once locked, once unlocked";
}

TEST_F(BusSessionLockTest, AManagerThatIsSilentUnlocksNothingAndIsAskedAgain) {
  LogInManager manager(true);
  open();
  ASSERT_TRUE(awaitLocked(true));
  manager.isSilent = true;
  const int before = manager.questions;
  manager.tell();
  ASSERT_TRUE(await([&] { return manager.questions == before + 2; }));
  EXPECT_TRUE(lock_->isLocked());
  EXPECT_EQ(changes_, 1);
}

TEST_F(BusSessionLockTest, AManagerThatKnowsNoSuchSessionLocksNothing) {
  auto manager = std::make_unique<LogInManager>(true);
  open();
  ASSERT_TRUE(awaitLocked(true));
  manager.reset();
  manager = std::make_unique<LogInManager>(true, "/org/freedesktop/login1/session/_35");
  EXPECT_TRUE(awaitLocked(false));
}

TEST_F(BusSessionLockTest, WhenTheBusesGoNothingIsLocked) {
  Saver saver("org.gnome.ScreenSaver", true);
  LogInManager manager;
  manager.setLocked(true);
  open();
  ASSERT_TRUE(awaitLocked(true));
  ASSERT_TRUE(await([&] { return manager.questions > 0 && saver.questions > 0; }));
  session_.bus().kill();
  EXPECT_TRUE(awaitLocked(false));
}

TEST_F(BusSessionLockTest, WithoutABusNothingIsEverLocked) {
  setenv("DBUS_SYSTEM_BUS_ADDRESS", "unix:path=/nonexistent/bus", 1);
  SessionBus none(dispatch_, [](const char* /*name*/) { return std::nullopt; });
  const BusSessionLock lock(dispatch_, none);
  EXPECT_FALSE(lock.isLocked());
}

}  // namespace
}  // namespace vantorel
