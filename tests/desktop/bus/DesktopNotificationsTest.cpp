// SPDX-License-Identifier: MIT
#include "platform/linux/bus/DesktopNotifications.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <QCoreApplication>
#include <QDBusConnection>
#include <QDBusMessage>
#include <QDBusVirtualObject>
#include <array>
#include <string>
#include <vector>

#include "desktop/session/PrivateSession.h"
#include "fakes/ManualDispatch.h"
#include "platform/linux/bus/SessionBus.h"

namespace vantorel {
namespace {

using ::testing::IsEmpty;

const QString service = QStringLiteral("org.freedesktop.Notifications");
const QString path = QStringLiteral("/org/freedesktop/Notifications");

/// A notification service that answers when the test says so.
class SlowService : public QDBusVirtualObject {
 public:
  SlowService()
      : bus_(QDBusConnection::connectToBus(
            QString::fromLocal8Bit(qgetenv("DBUS_SESSION_BUS_ADDRESS")),
            QStringLiteral("slow service"))) {
    bus_.registerVirtualObject(path, this);
    bus_.registerService(service);
  }
  ~SlowService() override { QDBusConnection::disconnectFromBus(QStringLiteral("slow service")); }
  SlowService(const SlowService&) = delete;
  SlowService& operator=(const SlowService&) = delete;

  [[nodiscard]] QString introspect(const QString& /*path*/) const override { return {}; }
  bool handleMessage(const QDBusMessage& message, const QDBusConnection& /*bus*/) override {
    if (message.member() == QLatin1String("Notify")) posted.push_back(message);
    if (message.member() == QLatin1String("CloseNotification")) closed.push_back(message);
    return true;
  }

  void answer(std::size_t number, unsigned id) const {
    bus_.send(posted.at(number).createReply(id));
  }
  void press(unsigned id) const {
    auto signal = QDBusMessage::createSignal(path, service, QStringLiteral("ActionInvoked"));
    signal << id << QStringLiteral("act");
    bus_.send(signal);
  }

  std::vector<QDBusMessage> posted;
  std::vector<QDBusMessage> closed;

 private:
  QDBusConnection bus_;
};

class DesktopNotificationsTest : public testing::Test {
 protected:
  void post(const std::string& title) {
    notifications_.post({.title = title, .body = "", .action = "Act"}, [this] { ++actions_; });
  }
  static bool await(const std::function<bool()>& condition) {
    return waitFor([&] {
      QCoreApplication::processEvents();
      return condition();
    });
  }

  PrivateSession session_;
  int argumentCount_ = 1;
  std::string name_ = "test";
  std::array<char*, 2> arguments_{name_.data(), nullptr};
  QCoreApplication application_{argumentCount_, arguments_.data()};
  ManualDispatch dispatch_;
  SlowService service_;
  SessionBus bus_{dispatch_, processEnvironment};
  DesktopNotifications notifications_{bus_};
  int actions_ = 0;
};

TEST_F(DesktopNotificationsTest, ALateAnswerDoesNotCloseWhatHasTakenItsPlace) {
  post("A");
  ASSERT_TRUE(await([&] { return service_.posted.size() == 1; }));
  service_.answer(0, 5);
  service_.press(5);
  ASSERT_TRUE(await([&] { return actions_ == 1; })) << "its number is not known";
  post("B");
  post("C");
  ASSERT_TRUE(await([&] { return service_.posted.size() == 3; }));
  EXPECT_EQ(service_.posted[2].arguments().value(1).toUInt(), 5U);
  service_.answer(1, 5);
  service_.answer(2, 5);
  service_.press(5);
  ASSERT_TRUE(await([&] { return actions_ == 2; }));
  post("D");  // behind whatever was to be closed
  ASSERT_TRUE(await([&] { return service_.posted.size() == 4; }));
  EXPECT_THAT(service_.closed, IsEmpty());
}

}  // namespace
}  // namespace vantorel
