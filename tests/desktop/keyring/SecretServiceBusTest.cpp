// SPDX-License-Identifier: MIT
#include "platform/linux/keyring/SecretServiceBus.h"

#include <gtest/gtest.h>

#include <future>

#include "desktop/keyring/PrivateKeyring.h"
#include "platform/linux/glib/GlibThread.h"

namespace vantorel {
namespace {

const KeychainQuery query{.service = "a.service", .account = "an-account"};

/// Runs each step on the keyring's thread and waits for it.
class SecretServiceBusTest : public testing::Test {
 protected:
  SecretServiceBusTest()
      : thread_("keyring test", [this] { bus_.reset(); }),
        keyring_(PrivateKeyring::State::unlocked) {}

  template <class Step>
  auto onThread(Step step) {
    std::promise<decltype(step(*bus_))> promise;
    auto answer = promise.get_future();
    thread_.post([&] {
      if (!bus_) bus_ = std::make_unique<SecretServiceBus>(thread_, [](KeyringNews /*news*/) {});
      promise.set_value(step(*bus_));
    });
    return answer.get();
  }

  static Deadline in(std::chrono::milliseconds time) {
    return std::chrono::steady_clock::now() + time;
  }

  static SecretBytes secret(std::string_view text) { return SecretBytes(bytesOf(text)); }

  PrivateSession session_;
  std::unique_ptr<SecretServiceBus> bus_;
  GlibThread thread_;
  PrivateKeyring keyring_;
};

TEST_F(SecretServiceBusTest, AReplacementThatIsTakenBackNeverShows) {
  PrivateKeyring::store(query.service, query.account, "old");
  const ObjectPath item = onThread([](SecretServiceBus& bus) {
    bus.begin(in(std::chrono::seconds(30)));
    const auto collection = bus.collectionNamed("default");
    const ObjectPath found = bus.search(*collection, query)->front();
    EXPECT_TRUE(bus.secret(found));  // the session is open from here on
    return found;
  });
  keyring_.suspend();
  const bool replaced = onThread([&](SecretServiceBus& bus) {
    bus.setDeadline(in(std::chrono::milliseconds(300)));
    const auto answer = bus.replaceSecret(item, secret("new"));
    bus.sendSecret(item, secret("old"));
    return static_cast<bool>(answer);
  });
  EXPECT_FALSE(replaced);
  keyring_.resume();
  EXPECT_EQ(PrivateKeyring::lookUp(query.service, query.account), "old");
}

TEST_F(SecretServiceBusTest, ASecretIsSentOnceThereIsASession) {
  PrivateKeyring::store(query.service, query.account, "old");
  onThread([](SecretServiceBus& bus) {
    bus.begin(in(std::chrono::seconds(30)));
    const auto collection = bus.collectionNamed("default");
    const ObjectPath found = bus.search(*collection, query)->front();
    bus.sendSecret(found, secret("unsent"));  // no session yet: nothing to take back
    EXPECT_TRUE(bus.secret(found));
    bus.sendSecret(found, secret("new"));
    return true;
  });
  EXPECT_TRUE(
      waitFor([] { return PrivateKeyring::lookUp(query.service, query.account) == "new"; }));
}

TEST_F(SecretServiceBusTest, ListsTheOldestItemFirst) {
  const auto items = onThread([](SecretServiceBus& bus) {
    bus.begin(in(std::chrono::seconds(30)));
    const auto collection = bus.collectionNamed("default");
    std::vector<ObjectPath> made;
    for (const char* text : {"first", "second", "third"}) {
      made.push_back(*bus.create(*collection, query, "label", secret(text)));
    }
    const auto found = bus.search(*collection, query);
    EXPECT_EQ(*found, made);
    EXPECT_TRUE(bus.remove(made[0]));
    return *bus.search(*collection, query);
  });
  EXPECT_EQ(items.size(), 2U);
}

TEST_F(SecretServiceBusTest, AnAliasThatNamesNothingIsEmpty) {
  EXPECT_EQ(onThread([](SecretServiceBus& bus) {
              bus.begin(in(std::chrono::seconds(30)));
              return *bus.collectionNamed("no such alias");
            }),
            "");
}

}  // namespace
}  // namespace vantorel
