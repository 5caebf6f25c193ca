// SPDX-License-Identifier: MIT
#include "platform/linux/shortcuts/KGlobalAccelHotKeys.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <QCoreApplication>
#include <QDBusArgument>
#include <QDBusConnection>
#include <QDBusMessage>
#include <QDBusVirtualObject>
#include <array>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "desktop/session/PrivateSession.h"
#include "fakes/ManualDispatch.h"
#include "platform/linux/bus/SessionBus.h"
#include "platform/linux/shortcuts/KGlobalAccelKey.h"

namespace vantorel {
namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;
using ::testing::Pair;

const HotKeyCombination superShiftV{9, hotkeys::command | hotkeys::shift, "V"};
const HotKeyCombination superAltSpace{49, hotkeys::command | hotkeys::option, "Space"};
constexpr int metaShiftV = 0x12000056;
constexpr int metaAltSpace = 0x18000020;
constexpr int metaShift2 = 0x12000032;
constexpr int metaAt = 0x10000040;
constexpr HotKeyId ours{0x11223344, 1};

QDBusConnection anotherConnection(const QString& name) {
  return QDBusConnection::connectToBus(QString::fromLocal8Bit(qgetenv("DBUS_SESSION_BUS_ADDRESS")),
                                       name);
}

/// The compositor, and the service for shortcuts in it. Keys of others are refused.
class Service : public QDBusVirtualObject {
 public:
  explicit Service(bool isSilent = false)
      : isSilent_(isSilent), bus_(anotherConnection(QStringLiteral("service"))) {
    bus_.registerVirtualObject(QStringLiteral("/kglobalaccel"), this);
    bus_.registerService(QStringLiteral("org.kde.KWin"));
    bus_.registerService(QStringLiteral("org.kde.kglobalaccel"));
  }
  ~Service() override { QDBusConnection::disconnectFromBus(QStringLiteral("service")); }
  Service(const Service&) = delete;
  Service& operator=(const Service&) = delete;

  [[nodiscard]] QString introspect(const QString& /*path*/) const override { return {}; }
  bool handleMessage(const QDBusMessage& message, const QDBusConnection& /*bus*/) override {
    calls.push_back(message.member().toStdString());
    if (message.member() == QLatin1String("setShortcut")) {
      questions.push_back(message);
      if (!isSilent_) answer(questions.size() - 1);
    } else {
      if (message.member() == QLatin1String("unRegister")) remembered.reset();
      bus_.send(message.createReply());
    }
    return true;
  }

  void answer(std::size_t number) {
    const auto& question = questions.at(number);
    action = question.arguments().at(0).toStringList();
    const auto asked = qdbus_cast<QList<int>>(question.arguments().at(1));
    flags = question.arguments().at(2).toUInt();
    const bool autoloads = (flags & 4U) == 0;
    keys = autoloads && remembered ? *remembered : asked;
    for (int& key : keys) key = key == ofOthers ? 0 : key;
    remembered = keys;
    bus_.send(question.createReply(QVariant::fromValue(keys)));
  }
  void press(const QString& program = QStringLiteral("com.vantorel.Vantorel"),
             const QString& name = QStringLiteral("toggle")) {
    auto signal = QDBusMessage::createSignal(QStringLiteral("/component/com_vantorel_Vantorel"),
                                             QStringLiteral("org.kde.kglobalaccel.Component"),
                                             QStringLiteral("globalShortcutPressed"));
    signal << program << name << qlonglong{17};
    bus_.send(signal);
  }

  /// The user gives that action these keys in the settings.
  void choose(const QList<int>& chosen, const char* signalName = "yourShortcutsChanged",
              const QString& name = QStringLiteral("toggle")) {
    remembered = chosen;
    auto signal = QDBusMessage::createSignal(QStringLiteral("/kglobalaccel"),
                                             QStringLiteral("org.kde.KGlobalAccel"),
                                             QString::fromLatin1(signalName));
    signal << QStringList{QStringLiteral("com.vantorel.Vantorel"), name}
           << QVariant::fromValue(chosen);
    bus_.send(signal);
  }

  int ofOthers = 0;
  std::optional<QList<int>> remembered;
  std::vector<std::string> calls;
  std::vector<QDBusMessage> questions;
  QStringList action;
  QList<int> keys;
  unsigned flags = 0;

 private:
  bool isSilent_;
  QDBusConnection bus_;
};

class KGlobalAccelHotKeysTest : public testing::Test {
 protected:
  KGlobalAccelHotKeysTest() {
    EXPECT_TRUE(hotKeys_.installHandler([this](HotKeyId id) { presses_.push_back(id); }));
    hotKeys_.setAnswerHandler([this](HotKeyRef reference, HotKeyAnswer answer) {
      answers_.emplace_back(reference, answer);
    });
  }
  [[nodiscard]] bool await(const std::function<bool()>& condition) {
    return waitFor([&] {
      QCoreApplication::processEvents();
      dispatch_.runQueued();
      return condition();
    });
  }
  [[nodiscard]] bool awaitAnswers(std::size_t count) {
    return await([&] { return answers_.size() >= count; });
  }
  HotKeyRef ask(const HotKeyCombination& keys) {
    return hotKeys_.registerHotKey(keys, ours).value();
  }

  PrivateSession session_;
  int argumentCount_ = 1;
  std::string name_ = "test";
  std::array<char*, 2> arguments_{name_.data(), nullptr};
  QCoreApplication application_{argumentCount_, arguments_.data()};
  ManualDispatch dispatch_;
  SessionBus bus_{dispatch_, processEnvironment};
  KGlobalAccelHotKeys hotKeys_{dispatch_, bus_};
  std::vector<HotKeyId> presses_;
  std::vector<std::pair<HotKeyRef, HotKeyAnswer>> answers_;
};

TEST_F(KGlobalAccelHotKeysTest, TheKeysThatAreGivenBackAreHeldAndPressed) {
  Service service;
  const auto reference = ask(superShiftV);
  EXPECT_TRUE(hotKeys_.isAwaited(reference));
  EXPECT_THAT(answers_, IsEmpty()) << "in a later turn";
  ASSERT_TRUE(awaitAnswers(1));
  EXPECT_THAT(answers_, ElementsAre(Pair(reference, HotKeyAnswer::held)));
  EXPECT_FALSE(hotKeys_.isAwaited(reference));
  EXPECT_THAT(service.calls, ElementsAre("doRegister", "setShortcut"));
  EXPECT_EQ(service.action.value(0), "com.vantorel.Vantorel");
  EXPECT_EQ(service.action.value(1), "toggle");
  EXPECT_THAT(service.keys, ElementsAre(metaShiftV));
  EXPECT_EQ(service.flags, 2U) << "what it remembers would hold";
  service.press();
  ASSERT_TRUE(await([&] { return !presses_.empty(); }));
  EXPECT_THAT(presses_, ElementsAre(ours));
}

TEST_F(KGlobalAccelHotKeysTest, KeysThatTheUserChoseInTheSettingsHold) {
  Service service;
  service.remembered = {metaAltSpace};
  const auto reference = ask(superShiftV);
  ASSERT_TRUE(awaitAnswers(1));
  EXPECT_THAT(answers_, ElementsAre(Pair(reference, HotKeyAnswer::held)));
  EXPECT_EQ(hotKeys_.heldInstead(reference),
            (HotKeyCombination{0, hotkeys::command | hotkeys::option, "Space"}));
  EXPECT_EQ(service.remembered, QList<int>{metaAltSpace});
  service.press();
  ASSERT_TRUE(await([&] { return !presses_.empty(); }));
}

TEST_F(KGlobalAccelHotKeysTest, KeysThatAreChosenThereMeanwhileAreTold) {
  Service service;
  const auto reference = ask(superShiftV);
  ASSERT_TRUE(awaitAnswers(1));
  EXPECT_EQ(hotKeys_.heldInstead(reference), std::nullopt);
  service.choose({metaAltSpace}, "yourShortcutsChanged", QStringLiteral("other"));
  service.choose({metaAltSpace});
  ASSERT_TRUE(awaitAnswers(2));
  EXPECT_EQ(answers_[1], std::pair(reference, HotKeyAnswer::held));
  EXPECT_EQ(hotKeys_.heldInstead(reference)->label, "Space");
  service.choose({0x01000033 | 0x10000000}, "yourShortcutGotChanged");
  ASSERT_TRUE(awaitAnswers(3));
  EXPECT_EQ(hotKeys_.heldInstead(reference), (HotKeyCombination{0, hotkeys::command, "F4"}));
}

TEST_F(KGlobalAccelHotKeysTest, KeysThatAreChosenHereReplaceThose) {
  Service service;
  service.remembered = {metaAltSpace};
  const auto old = ask(superAltSpace);
  ASSERT_TRUE(awaitAnswers(1));
  const auto newer = ask(superShiftV);
  ASSERT_TRUE(awaitAnswers(2));
  EXPECT_EQ(answers_[1], std::pair(newer, HotKeyAnswer::held));
  EXPECT_EQ(service.flags, 6U);
  EXPECT_EQ(hotKeys_.heldInstead(newer), std::nullopt);
  hotKeys_.unregisterHotKey(newer);
  ASSERT_TRUE(await([&] { return service.keys == QList<int>{metaAltSpace}; })) << old;
}

TEST_F(KGlobalAccelHotKeysTest, KeysThatWereTakenAwayThereStayAway) {
  Service service;
  service.remembered = QList<int>{};
  const auto reference = ask(superShiftV);
  ASSERT_TRUE(awaitAnswers(1));
  EXPECT_THAT(answers_, ElementsAre(Pair(reference, HotKeyAnswer::absent)));
  EXPECT_EQ(service.remembered, QList<int>());
  const auto chosen = ask(superAltSpace);  // in the recorder
  ASSERT_TRUE(awaitAnswers(2));
  EXPECT_EQ(answers_[1], std::pair(chosen, HotKeyAnswer::held));
  EXPECT_THAT(service.keys, ElementsAre(metaAltSpace));
}

TEST_F(KGlobalAccelHotKeysTest, KeysThatAreTakenAwayThereMeanwhileMayComeAgain) {
  Service service;
  const auto reference = ask(superShiftV);
  ASSERT_TRUE(awaitAnswers(1));
  service.choose({});
  ASSERT_TRUE(awaitAnswers(2));
  EXPECT_EQ(answers_[1], std::pair(reference, HotKeyAnswer::absent));
  EXPECT_TRUE(hotKeys_.isAwaited(reference));
  service.choose({metaAltSpace});
  ASSERT_TRUE(awaitAnswers(3));
  EXPECT_EQ(answers_[2], std::pair(reference, HotKeyAnswer::held));
  EXPECT_EQ(hotKeys_.heldInstead(reference)->label, "Space");
  service.press();
  ASSERT_TRUE(await([&] { return !presses_.empty(); }));
  EXPECT_THAT(presses_, ElementsAre(ours));
  service.choose({});
  ASSERT_TRUE(awaitAnswers(4));
  service.choose({metaAltSpace});  // those of before
  ASSERT_TRUE(awaitAnswers(5));
  EXPECT_EQ(answers_[4], std::pair(reference, HotKeyAnswer::held));
}

TEST_F(KGlobalAccelHotKeysTest, KeysThatAreChosenHereReplaceThoseThatWereTakenAway) {
  Service service;
  ask(superShiftV);
  ASSERT_TRUE(awaitAnswers(1));
  service.choose({});
  ASSERT_TRUE(awaitAnswers(2));
  const auto chosen = ask(superAltSpace);
  ASSERT_TRUE(awaitAnswers(3));
  EXPECT_EQ(answers_[2], std::pair(chosen, HotKeyAnswer::held));
  const auto asked = service.questions.size();
  hotKeys_.unregisterHotKey(chosen);
  ASSERT_TRUE(await([&] { return service.calls.back() == "setInactive"; }));
  EXPECT_EQ(service.questions.size(), asked) << "nobody has the old ones any more";
}

TEST_F(KGlobalAccelHotKeysTest, ARefusalIsNotRememberedAsTheUsersWish) {
  Service service;
  service.ofOthers = metaShiftV;
  ask(superShiftV);
  ASSERT_TRUE(awaitAnswers(1));
  ASSERT_TRUE(await([&] { return service.calls.back() == "unRegister"; }));
  service.ofOthers = 0;
  const auto again = ask(superShiftV);
  ASSERT_TRUE(awaitAnswers(2));
  EXPECT_EQ(answers_[1], std::pair(again, HotKeyAnswer::held));
}

TEST_F(KGlobalAccelHotKeysTest, ADigitWithShiftIsAskedForByItsSignToo) {
  Service service;
  service.remembered = {metaShift2};  // as an earlier version asked
  const auto reference = ask({19, hotkeys::command | hotkeys::shift, "2"});
  ASSERT_TRUE(awaitAnswers(1));
  EXPECT_THAT(answers_, ElementsAre(Pair(reference, HotKeyAnswer::held)));
  EXPECT_THAT(service.keys, ElementsAre(metaShift2, metaAt));
  service.ofOthers = metaAt;
  const auto refused = ask({20, hotkeys::command | hotkeys::shift, "2"});
  ASSERT_TRUE(awaitAnswers(2));
  EXPECT_EQ(answers_[1], std::pair(refused, HotKeyAnswer::taken)) << "it would not be heard";
}

TEST_F(KGlobalAccelHotKeysTest, PressesOfOtherActionsAreNotOurs) {
  Service service;
  ask(superShiftV);
  ASSERT_TRUE(awaitAnswers(1));
  service.press(QStringLiteral("org.acme.Notes"));
  service.press(QStringLiteral("com.vantorel.Vantorel"), QStringLiteral("other"));
  service.press();  // behind those
  ASSERT_TRUE(await([&] { return !presses_.empty(); }));
  EXPECT_EQ(presses_.size(), 1U);
}

TEST_F(KGlobalAccelHotKeysTest, KeysThatAreNotGivenBackAreTaken) {
  Service service;
  service.ofOthers = metaShiftV;
  const auto reference = ask(superShiftV);
  ASSERT_TRUE(awaitAnswers(1));
  EXPECT_THAT(answers_, ElementsAre(Pair(reference, HotKeyAnswer::taken)));
  EXPECT_FALSE(hotKeys_.isAwaited(reference));
}

TEST_F(KGlobalAccelHotKeysTest, WhenNewKeysAreRefusedTheOldOnesAreAskedForAgain) {
  Service service;
  service.ofOthers = metaAltSpace;
  ask(superShiftV);
  ASSERT_TRUE(awaitAnswers(1));
  const auto refused = ask(superAltSpace);
  ASSERT_TRUE(awaitAnswers(2));
  EXPECT_EQ(answers_[1], std::pair(refused, HotKeyAnswer::taken));
  ASSERT_TRUE(await([&] { return service.questions.size() == 3; }));
  EXPECT_THAT(service.keys, ElementsAre(metaShiftV));
}

TEST_F(KGlobalAccelHotKeysTest, NewKeysReplaceTheOldOnesAndAreGivenBackAtTheEnd) {
  Service service;
  const auto old = ask(superShiftV);
  ASSERT_TRUE(awaitAnswers(1));
  const auto newer = ask(superAltSpace);
  ASSERT_TRUE(awaitAnswers(2));
  hotKeys_.unregisterHotKey(old);
  EXPECT_THAT(service.keys, ElementsAre(metaAltSpace));
  hotKeys_.unregisterHotKey(newer);
  ASSERT_TRUE(await([&] { return service.calls.back() == "setInactive"; }));
  EXPECT_EQ(service.questions.size(), 2U);
}

TEST_F(KGlobalAccelHotKeysTest, AnAnswerToAnOlderQuestionIsNone) {
  Service service(true);
  const auto old = ask(superShiftV);
  ASSERT_TRUE(await([&] { return service.questions.size() == 1; }));
  hotKeys_.unregisterHotKey(old);
  const auto newer = ask(superAltSpace);
  ASSERT_TRUE(await([&] { return service.questions.size() == 2; }));
  service.answer(0);
  service.answer(1);
  ASSERT_TRUE(awaitAnswers(1));
  EXPECT_THAT(answers_, ElementsAre(Pair(newer, HotKeyAnswer::held)));
}

TEST_F(KGlobalAccelHotKeysTest, AServiceThatComesBackIsToldAgain) {
  auto service = std::make_unique<Service>();
  ask(superShiftV);
  ASSERT_TRUE(awaitAnswers(1));
  service.reset();
  service = std::make_unique<Service>();
  ASSERT_TRUE(await([&] { return !service->keys.isEmpty(); }));
  EXPECT_THAT(service->keys, ElementsAre(metaShiftV));
  service->press();
  ASSERT_TRUE(await([&] { return !presses_.empty(); }));
}

TEST_F(KGlobalAccelHotKeysTest, WithoutThatCompositorThereAreNoShortcuts) {
  auto others = anotherConnection(QStringLiteral("others"));
  others.registerService(QStringLiteral("org.kde.kglobalaccel"));
  const auto reference = ask(superShiftV);
  ASSERT_TRUE(awaitAnswers(1));
  EXPECT_THAT(answers_, ElementsAre(Pair(reference, HotKeyAnswer::absent)));
  EXPECT_FALSE(hotKeys_.isAwaited(reference));
  QDBusConnection::disconnectFromBus(QStringLiteral("others"));
}

TEST_F(KGlobalAccelHotKeysTest, WithoutABusThereAreNone) {
  SessionBus none(dispatch_, [](const char* /*name*/) { return std::nullopt; });
  KGlobalAccelHotKeys alone(dispatch_, none);
  alone.setAnswerHandler([this](HotKeyRef reference, HotKeyAnswer answer) {
    answers_.emplace_back(reference, answer);
  });
  EXPECT_TRUE(alone.registerHotKey(superShiftV, ours));
  EXPECT_THAT(answers_, IsEmpty());
  dispatch_.runQueued();
  EXPECT_THAT(answers_, ElementsAre(Pair(1U, HotKeyAnswer::absent)));
}

TEST(KGlobalAccelKeys, AreThePrintedKeyWithItsModifiers) {
  EXPECT_THAT(kGlobalAccelKeys(superShiftV), ElementsAre(metaShiftV));
  EXPECT_THAT(kGlobalAccelKeys(superAltSpace), ElementsAre(metaAltSpace));
  EXPECT_THAT(kGlobalAccelKeys({12, hotkeys::option | hotkeys::control, "A"}),
              ElementsAre(0x0c000041));
  EXPECT_THAT(kGlobalAccelKeys({19, hotkeys::control | hotkeys::option, "2"}),
              ElementsAre(0x0c000032));
  EXPECT_THAT(kGlobalAccelKeys({19, hotkeys::control | hotkeys::shift, "2"}),
              ElementsAre(0x06000032, 0x04000040));
  EXPECT_THAT(kGlobalAccelKeys({29, hotkeys::command | hotkeys::shift, "0"}),
              ElementsAre(0x12000030, 0x10000029));
  EXPECT_THAT(kGlobalAccelKeys({41, hotkeys::command | hotkeys::shift, "É"}),
              ElementsAre(0x120000c9));
  EXPECT_THAT(kGlobalAccelKeys({9, hotkeys::command}), IsEmpty());
}

TEST(KGlobalAccelKeys, AreNamedWhateverTheyAre) {
  EXPECT_EQ(combinationOf(metaShiftV),
            (HotKeyCombination{0, hotkeys::command | hotkeys::shift, "V"}));
  EXPECT_EQ(combinationOf(metaAt), (HotKeyCombination{0, hotkeys::command, "@"}));
  EXPECT_EQ(combinationOf(0x0100003b), (HotKeyCombination{0, 0, "F12"}));
}

}  // namespace
}  // namespace vantorel
