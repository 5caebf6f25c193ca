// SPDX-License-Identifier: MIT
#include "platform/linux/keyring/SecretServiceKeychain.h"

#include <gtest/gtest.h>

#include <atomic>
#include <cstdlib>
#include <memory>
#include <thread>

#include "desktop/keyring/PrivateKeyring.h"
#include "desktop/keyring/StutteringKeyring.h"
#include "desktop/session/PrivateSession.h"
#include "fakes/ManualDispatch.h"
#include "security/HistoryKeychain.h"
#include "security/SecureStorage.h"
#include "security/SecureStorageError.h"

namespace vantorel {
namespace {

using Clock = std::chrono::steady_clock;
using State = PrivateKeyring::State;
using std::chrono::milliseconds;
using std::chrono::seconds;

const std::string service(HistoryKeychain::service);
const std::string account(HistoryKeychain::account);
const KeychainQuery query = HistoryKeychain::baseQuery(HistoryKeychain::Backend::loginKeychain);
const KeychainAttributes attributes{.label = std::string(HistoryKeychain::label)};

/// What a user would still call "at once", on a busy machine and under sanitizers.
constexpr milliseconds atOnce(2500);
/// The limit of each call, and room for the machine to be busy.
constexpr milliseconds limitAndSlack(8000);

SecretBytes someKey(char first = 'k') {
  std::string bytes(32, '\0');
  for (int i = 0; i < 32; i += 3) bytes[i] = static_cast<char>(first + i);
  bytes[31] = '\xff';
  return SecretBytes(bytesOf(bytes));
}

std::string text(const std::optional<SecretBytes>& data) {
  return data ? std::string(textOf(data->view())) : "(none)";
}

std::string text(const SecretBytes& data) { return std::string(textOf(data.view())); }

template <class Operation>
milliseconds timed(const Operation& operation) {
  const auto begin = Clock::now();
  operation();
  return std::chrono::duration_cast<milliseconds>(Clock::now() - begin);
}

class SecretServiceKeychainTest : public testing::Test {
 protected:
  void startKeyring(State state) { keyring_ = std::make_unique<PrivateKeyring>(state); }

  /// A keyring as a user's next session finds it: with one item, and locked.
  void startLockedWithKey() {
    startKeyring(State::unlocked);
    PrivateKeyring::store(service, account, "stored secret");
    keyring_->lock();
  }

  SecretServiceKeychain& keychain() {
    if (!keychain_) {
      keychain_ = std::make_unique<SecretServiceKeychain>(dispatch_);
      keychain_->onAvailable([this] { ++availableCalls_; });
    }
    return *keychain_;
  }

  bool waitUntilAvailable() {
    return waitFor([&] {
      dispatch_.runQueued();
      return availableCalls_ > 0;
    });
  }

  OSStatus find() { return keychain().copyMatching(query).status; }
  OSStatus add() { return keychain().add(query, attributes, someKey()); }
  /// The answer of an update that is waited for.
  OSStatus update() {
    bool ended = false;
    const auto update = keychain().beginUpdate(query, someKey('u'), [&ended] { ended = true; });
    EXPECT_TRUE(waitFor([&] {
      dispatch_.runQueued();
      return ended;
    }));
    return update->settle();
  }
  static int itemCount() { return PrivateKeyring::itemCount(service, account); }

  /// The status with which the history's key could not be had; success when it could.
  OSStatus productionStatus() {
    try {
      return SecureStorage::production(keychain()) ? keychainStatus::success : -1;
    } catch (const SecureStorageError& error) {
      return error.status();
    }
  }

  bool prepareAndWait() {
    bool ready = false;
    keychain().prepare({query}, [&ready] { ready = true; });
    return waitFor([&] {
      dispatch_.runQueued();
      return ready;
    });
  }

  PrivateSession session_;
  std::unique_ptr<PrivateKeyring> keyring_;
  ManualDispatch dispatch_;
  int availableCalls_ = 0;
  std::unique_ptr<SecretServiceKeychain> keychain_;
};

TEST_F(SecretServiceKeychainTest, AMissingItemOfAnUnlockedKeyringIsNotFound) {
  startKeyring(State::unlocked);
  EXPECT_EQ(find(), keychainStatus::itemNotFound);
  EXPECT_EQ(update(), keychainStatus::itemNotFound);
  EXPECT_EQ(itemCount(), 0);
}

TEST_F(SecretServiceKeychainTest, TheDataProtectionKeychainIsNotHere) {
  KeychainQuery other = query;
  other.useDataProtectionKeychain = true;
  EXPECT_LT(timed([&] {
              EXPECT_EQ(keychain().copyMatching(other).status, keychainStatus::missingEntitlement);
              EXPECT_EQ(keychain().add(other, attributes, someKey()),
                        keychainStatus::missingEntitlement);
              const auto update = keychain().beginUpdate(other, someKey(), {});
              EXPECT_TRUE(update->hasEnded());
              EXPECT_EQ(update->settle(), keychainStatus::missingEntitlement);
            }),
            atOnce);
}

TEST_F(SecretServiceKeychainTest, ThirtyTwoBytesSurviveWithTheirZeros) {
  startKeyring(State::unlocked);
  EXPECT_EQ(add(), keychainStatus::success);
  const auto found = keychain().copyMatching(query);
  EXPECT_EQ(found.status, keychainStatus::success);
  EXPECT_EQ(text(found.data), text(someKey()));
  EXPECT_EQ(PrivateKeyring::lookUp(service, account), text(someKey()));
}

TEST_F(SecretServiceKeychainTest, AnItemCarriesItsLabelAndAttributes) {
  startKeyring(State::unlocked);
  ASSERT_EQ(add(), keychainStatus::success);
  const std::string shown = runProgram(
      {"sh", "-c", "exec secret-tool search service \"$0\" account \"$1\" 2>&1", service, account});
  EXPECT_NE(shown.find("label = Vantorel local history encryption\n"), std::string::npos) << shown;
  EXPECT_NE(shown.find("attribute.service = " + service + "\n"), std::string::npos) << shown;
  EXPECT_NE(shown.find("attribute.account = " + account + "\n"), std::string::npos) << shown;
}

TEST_F(SecretServiceKeychainTest, AnItemSurvivesARestartOfTheDaemon) {
  startKeyring(State::unlocked);
  ASSERT_EQ(add(), keychainStatus::success);
  keyring_->end();
  startKeyring(State::unlocked);
  const auto found = keychain().copyMatching(query);
  EXPECT_EQ(found.status, keychainStatus::success);
  EXPECT_EQ(text(found.data), text(someKey()));
}

TEST_F(SecretServiceKeychainTest, AnItemThatAnotherProgramStoredIsFound) {
  startKeyring(State::unlocked);
  PrivateKeyring::store(service, account, "of any length");
  EXPECT_EQ(text(keychain().copyMatching(query).data), "of any length");
  EXPECT_EQ(add(), keychainStatus::duplicateItem);
  EXPECT_EQ(itemCount(), 1);
}

TEST_F(SecretServiceKeychainTest, ADuplicateIsRefusedAndLeftAsItIs) {
  startKeyring(State::unlocked);
  ASSERT_EQ(add(), keychainStatus::success);
  EXPECT_EQ(keychain().add(query, attributes, someKey('z')), keychainStatus::duplicateItem);
  EXPECT_EQ(itemCount(), 1);
  EXPECT_EQ(PrivateKeyring::lookUp(service, account), text(someKey()));
}

TEST_F(SecretServiceKeychainTest, AnUpdateReplacesTheSecretAlone) {
  startKeyring(State::unlocked);
  ASSERT_EQ(add(), keychainStatus::success);
  EXPECT_EQ(update(), keychainStatus::success);
  EXPECT_EQ(itemCount(), 1);
  EXPECT_EQ(PrivateKeyring::lookUp(service, account), text(someKey('u')));
  const std::string shown =
      runProgram({"sh", "-c", "exec secret-tool search service \"$0\" 2>&1", service});
  EXPECT_NE(shown.find("label = Vantorel local history encryption\n"), std::string::npos) << shown;
}

TEST_F(SecretServiceKeychainTest, TwoProgramsThatAddAtOnceLeaveOneItem) {
  startKeyring(State::unlocked);
  SecretServiceKeychain other(dispatch_);
  OSStatus theirs = 0;
  std::thread second([&] { theirs = other.add(query, attributes, someKey('b')); });
  const OSStatus ours = add();
  second.join();
  for (const OSStatus status : {ours, theirs}) {
    EXPECT_TRUE(status == keychainStatus::success || status == keychainStatus::duplicateItem);
  }
  EXPECT_FALSE(ours == keychainStatus::success && theirs == keychainStatus::success);
  EXPECT_LE(itemCount(), 1);
  if (ours == keychainStatus::success) {
    EXPECT_EQ(PrivateKeyring::lookUp(service, account), text(someKey()));
  }
}

TEST_F(SecretServiceKeychainTest, ALockedKeyringWithNobodyToAskIsCancelledAtOnce) {
  startLockedWithKey();
  EXPECT_LT(timed([&] { EXPECT_EQ(find(), keychainStatus::userCanceled); }), atOnce);
  EXPECT_LT(timed([&] { EXPECT_EQ(find(), keychainStatus::userCanceled); }), atOnce);
  EXPECT_EQ(add(), keychainStatus::userCanceled);
  EXPECT_EQ(update(), keychainStatus::userCanceled);
  EXPECT_EQ(productionStatus(), keychainStatus::userCanceled);
  EXPECT_EQ(itemCount(), 1);
}

TEST_F(SecretServiceKeychainTest, ALockedEmptyKeyringGetsNoNewKey) {
  startKeyring(State::unlocked);
  keyring_->lock();
  EXPECT_EQ(productionStatus(), keychainStatus::userCanceled);
  EXPECT_EQ(itemCount(), 0);
}

TEST_F(SecretServiceKeychainTest, AKeyringThatTheNextSessionDoesNotUnlockGetsNoNewKey) {
  startKeyring(State::unlocked);
  ASSERT_EQ(productionStatus(), keychainStatus::success);
  const std::string key = PrivateKeyring::lookUp(service, account);
  ASSERT_EQ(key.size(), 32U);
  keyring_->end();
  startKeyring(State::locked);
  EXPECT_EQ(productionStatus(), keychainStatus::userCanceled);
  EXPECT_EQ(itemCount(), 1);
  keyring_->end();
  startKeyring(State::unlocked);
  EXPECT_EQ(productionStatus(), keychainStatus::success);
  EXPECT_EQ(PrivateKeyring::lookUp(service, account), key);
}

TEST_F(SecretServiceKeychainTest, WithoutADefaultCollectionThereIsNoKeychain) {
  startKeyring(State::empty);
  EXPECT_EQ(find(), keychainStatus::notAvailable);
  EXPECT_EQ(add(), keychainStatus::notAvailable);
  EXPECT_EQ(update(), keychainStatus::notAvailable);
  EXPECT_EQ(productionStatus(), keychainStatus::notAvailable);
  EXPECT_EQ(itemCount(), 0);
}

TEST_F(SecretServiceKeychainTest, WithoutAServiceThereIsNoKeychain) {
  EXPECT_LT(timed([&] { EXPECT_EQ(find(), keychainStatus::notAvailable); }), atOnce);
  EXPECT_EQ(add(), keychainStatus::notAvailable);
  EXPECT_EQ(update(), keychainStatus::notAvailable);
  EXPECT_EQ(productionStatus(), keychainStatus::notAvailable);
}

TEST_F(SecretServiceKeychainTest, AServiceThatComesLaterIsFound) {
  EXPECT_EQ(find(), keychainStatus::notAvailable);
  startKeyring(State::unlocked);
  EXPECT_EQ(find(), keychainStatus::itemNotFound);
}

TEST_F(SecretServiceKeychainTest, AServiceThatComesLaterIsAnnouncedOnce) {
  EXPECT_EQ(find(), keychainStatus::notAvailable);
  dispatch_.runQueued();
  EXPECT_EQ(availableCalls_, 0);
  startKeyring(State::unlocked);
  ASSERT_TRUE(waitUntilAvailable());
  EXPECT_EQ(productionStatus(), keychainStatus::success);
  dispatch_.runQueued();
  EXPECT_EQ(availableCalls_, 1);
}

TEST_F(SecretServiceKeychainTest, AnAnnouncementIsMadeForEachTimeThatThereWasNone) {
  for (int times = 1; times <= 2; ++times) {
    EXPECT_EQ(find(), keychainStatus::notAvailable);
    startKeyring(State::unlocked);
    ASSERT_TRUE(waitFor([&] {
      dispatch_.runQueued();
      return availableCalls_ == times;
    }));
    EXPECT_EQ(find(), keychainStatus::itemNotFound);
    keyring_->end();
  }
}

TEST_F(SecretServiceKeychainTest, AServiceThatAnswersAgainIsAnnounced) {
  startKeyring(State::unlocked);
  ASSERT_EQ(add(), keychainStatus::success);
  keyring_->suspend();
  EXPECT_EQ(find(), keychainStatus::notAvailable);
  dispatch_.runQueued();
  EXPECT_EQ(availableCalls_, 0);
  keyring_->resume();
  ASSERT_TRUE(waitUntilAvailable());
  EXPECT_EQ(text(keychain().copyMatching(query).data), text(someKey()));
}

TEST_F(SecretServiceKeychainTest, AnItemThatWasMissingIsAnnouncedWhenItIsThere) {
  startKeyring(State::unlocked);
  EXPECT_EQ(find(), keychainStatus::itemNotFound);
  PrivateKeyring::store("another service", account, "something else");
  EXPECT_EQ(find(), keychainStatus::itemNotFound);
  dispatch_.runQueued();
  EXPECT_EQ(availableCalls_, 0);
  PrivateKeyring::store(service, account, "stored secret");
  ASSERT_TRUE(waitUntilAvailable());
  EXPECT_EQ(text(keychain().copyMatching(query).data), "stored secret");
}

TEST_F(SecretServiceKeychainTest, AServiceThatComesAndFailsAtFirstIsAskedAgain) {
  EXPECT_EQ(find(), keychainStatus::notAvailable);
  StutteringKeyring other;
  const auto nextTry = [&] {
    return waitFor([&] {
      dispatch_.runQueued();
      return dispatch_.timerCount() == 1;
    });
  };
  ASSERT_TRUE(nextTry());
  dispatch_.advance(Seconds(1));
  ASSERT_TRUE(nextTry());
  EXPECT_EQ(availableCalls_, 0);
  other.settle();
  dispatch_.advance(Seconds(1));
  dispatch_.runQueued();
  EXPECT_EQ(availableCalls_, 0) << "each pause is twice the one before";
  dispatch_.advance(Seconds(1));
  ASSERT_TRUE(waitUntilAvailable());
  EXPECT_EQ(dispatch_.timerCount(), 0U);
}

TEST_F(SecretServiceKeychainTest, AServiceThatGoesOnFailingIsLeftAlone) {
  EXPECT_EQ(find(), keychainStatus::notAvailable);
  const StutteringKeyring other;
  for (const int pause : {1, 2, 4, 8, 16}) {
    ASSERT_TRUE(waitFor([&] {
      dispatch_.runQueued();
      return dispatch_.timerCount() == 1;
    })) << pause;
    dispatch_.advance(Seconds(pause));
  }
  EXPECT_EQ(find(), keychainStatus::notAvailable);  // behind the last try
  dispatch_.runQueued();
  EXPECT_EQ(dispatch_.timerCount(), 0U);
  EXPECT_EQ(availableCalls_, 0);
}

TEST_F(SecretServiceKeychainTest, AServiceWithoutADefaultCollectionIsNotAnnounced) {
  EXPECT_EQ(find(), keychainStatus::notAvailable);
  startKeyring(State::empty);
  // What comes after it in the line shows that it was looked at.
  EXPECT_EQ(find(), keychainStatus::notAvailable);
  EXPECT_EQ(find(), keychainStatus::notAvailable);
  dispatch_.runQueued();
  EXPECT_EQ(availableCalls_, 0);
}

TEST_F(SecretServiceKeychainTest, EndsAtOnceWhileItWaitsForAService) {
  startKeyring(State::unlocked);
  keyring_->suspend();
  EXPECT_EQ(find(), keychainStatus::notAvailable);
  EXPECT_LT(timed([&] { keychain_.reset(); }), atOnce);
}

TEST_F(SecretServiceKeychainTest, IsAskedBeforeASecretIsReadOrMade) {
  std::atomic<int> calls = 0;
  keychain().onSecretAhead([&calls] { ++calls; });
  EXPECT_EQ(find(), keychainStatus::notAvailable);
  EXPECT_EQ(calls, 0);
  startKeyring(State::unlocked);
  EXPECT_EQ(find(), keychainStatus::itemNotFound);
  const int beforeOneIsMade = calls;
  EXPECT_GT(beforeOneIsMade, 0);
  PrivateKeyring::store(service, account, "stored secret");
  EXPECT_EQ(find(), keychainStatus::success);
  EXPECT_GT(calls, beforeOneIsMade);
  keychain_.reset();  // before what it calls goes
}

TEST_F(SecretServiceKeychainTest, ADeadBusIsNoKeychain) {
  startKeyring(State::unlocked);
  ASSERT_EQ(add(), keychainStatus::success);
  session_.bus().kill();
  EXPECT_LT(timed([&] { EXPECT_EQ(find(), keychainStatus::notAvailable); }), atOnce);
  EXPECT_EQ(add(), keychainStatus::notAvailable);
  EXPECT_EQ(productionStatus(), keychainStatus::notAvailable);
}

TEST_F(SecretServiceKeychainTest, NoBusAtAllIsNoKeychain) {
  unsetenv("DBUS_SESSION_BUS_ADDRESS");
  EXPECT_LT(timed([&] { EXPECT_EQ(find(), keychainStatus::notAvailable); }), atOnce);
  setenv("DBUS_SESSION_BUS_ADDRESS", "no address at all", 1);
  EXPECT_LT(timed([&] { EXPECT_EQ(find(), keychainStatus::notAvailable); }), atOnce);
  EXPECT_EQ(productionStatus(), keychainStatus::notAvailable);
}

TEST_F(SecretServiceKeychainTest, ASilentBusIsNoKeychainAfterTheLimit) {
  session_.bus().signal(SIGSTOP);
  EXPECT_LT(timed([&] { EXPECT_EQ(find(), keychainStatus::notAvailable); }), limitAndSlack);
}

TEST_F(SecretServiceKeychainTest, AStoppedDaemonGetsNoNewKey) {
  startKeyring(State::unlocked);
  ASSERT_EQ(productionStatus(), keychainStatus::success);
  const std::string key = PrivateKeyring::lookUp(service, account);
  keyring_->suspend();
  const auto duration = timed([&] { EXPECT_EQ(productionStatus(), keychainStatus::notAvailable); });
  EXPECT_GT(duration, seconds(4));
  EXPECT_LT(duration, limitAndSlack);
  keyring_->resume();
  EXPECT_EQ(productionStatus(), keychainStatus::success);
  EXPECT_EQ(itemCount(), 1);
  EXPECT_EQ(PrivateKeyring::lookUp(service, account), key);
}

TEST_F(SecretServiceKeychainTest, AnAddThatWasGivenUpIsNotMadeUpForLater) {
  startKeyring(State::unlocked);
  ASSERT_EQ(find(), keychainStatus::itemNotFound);
  keyring_->suspend();
  EXPECT_LT(timed([&] { EXPECT_EQ(add(), keychainStatus::notAvailable); }), limitAndSlack);
  keyring_->resume();
  EXPECT_EQ(find(), keychainStatus::itemNotFound);
  EXPECT_EQ(itemCount(), 0);
}

TEST_F(SecretServiceKeychainTest, AnUpdateThatWasGivenUpIsNotMadeUpForLater) {
  startKeyring(State::unlocked);
  ASSERT_EQ(add(), keychainStatus::success);
  keyring_->suspend();
  EXPECT_LT(timed([&] { EXPECT_EQ(update(), keychainStatus::notAvailable); }), limitAndSlack);
  keyring_->resume();
  EXPECT_EQ(text(keychain().copyMatching(query).data), text(someKey()));
  EXPECT_EQ(update(), keychainStatus::success);
  EXPECT_EQ(text(keychain().copyMatching(query).data), text(someKey('u')));
}

TEST_F(SecretServiceKeychainTest, AnUpdateMakesNobodyWaitAndMayBeGivenUp) {
  startKeyring(State::unlocked);
  ASSERT_EQ(add(), keychainStatus::success);
  keyring_->suspend();
  EXPECT_LT(timed([&] {
              const auto update = keychain().beginUpdate(query, someKey('u'), [] {});
              EXPECT_FALSE(update->hasEnded());
              EXPECT_EQ(update->settle(), keychainStatus::notAvailable);
            }),
            atOnce);
  keyring_->resume();
  EXPECT_EQ(text(keychain().copyMatching(query).data), text(someKey()));
  EXPECT_EQ(PrivateKeyring::lookUp(service, account), text(someKey()));
}

TEST_F(SecretServiceKeychainTest, EndingDuringAnUpdateLeavesTheOldKey) {
  startKeyring(State::unlocked);
  ASSERT_EQ(add(), keychainStatus::success);
  auto update = keychain().beginUpdate(query, someKey('u'), [] {});
  const OSStatus status = update->settle();
  EXPECT_LT(timed([&] { keychain_.reset(); }), atOnce);
  EXPECT_EQ(PrivateKeyring::lookUp(service, account),
            text(someKey(status == keychainStatus::success ? 'u' : 'k')));
}

TEST_F(SecretServiceKeychainTest, AnAnswerThatNobodyHasHeardOfYetCounts) {
  startKeyring(State::unlocked);
  ASSERT_EQ(add(), keychainStatus::success);
  const auto update = keychain().beginUpdate(query, someKey('u'), [] {});
  ASSERT_TRUE(waitFor([&] { return update->hasEnded(); }));
  EXPECT_EQ(update->settle(), keychainStatus::success);
  EXPECT_EQ(PrivateKeyring::lookUp(service, account), text(someKey('u')));
}

TEST_F(SecretServiceKeychainTest, EndsAtOnceWhileTheServiceIsSilent) {
  startKeyring(State::unlocked);
  ASSERT_EQ(find(), keychainStatus::itemNotFound);
  keyring_->suspend();
  bool called = false;
  keychain().prepare({query}, [&] { called = true; });
  EXPECT_LT(timed([&] { keychain_.reset(); }), atOnce);
  dispatch_.runQueued();
  EXPECT_FALSE(called);
}

TEST_F(SecretServiceKeychainTest, APreparedAnswerIsGivenOnceAndAtOnce) {
  startKeyring(State::unlocked);
  ASSERT_EQ(add(), keychainStatus::success);
  ASSERT_TRUE(prepareAndWait());
  keyring_->suspend();
  KeychainResult found;
  EXPECT_LT(timed([&] { found = keychain().copyMatching(query); }), atOnce);
  EXPECT_EQ(found.status, keychainStatus::success);
  EXPECT_EQ(text(found.data), text(someKey()));
  keyring_->resume();
  EXPECT_EQ(update(), keychainStatus::success);
  EXPECT_EQ(text(keychain().copyMatching(query).data), text(someKey('u')));
}

TEST_F(SecretServiceKeychainTest, AskingBeforeThePreparedAnswerIsKnownWaitsForIt) {
  startKeyring(State::unlocked);
  ASSERT_EQ(add(), keychainStatus::success);
  SecretServiceKeychain fresh(dispatch_);
  fresh.prepare({query}, {});
  EXPECT_EQ(text(fresh.copyMatching(query).data), text(someKey()));
}

TEST_F(SecretServiceKeychainTest, AnotherQueryThanThePreparedOneIsAskedFor) {
  startKeyring(State::unlocked);
  ASSERT_EQ(add(), keychainStatus::success);
  ASSERT_TRUE(prepareAndWait());
  KeychainQuery other = query;
  other.account = "another";
  EXPECT_EQ(keychain().copyMatching(other).status, keychainStatus::itemNotFound);
  EXPECT_EQ(find(), keychainStatus::success);
}

TEST_F(SecretServiceKeychainTest, PreparingNeverMakesTheMainThreadWait) {
  startKeyring(State::unlocked);
  ASSERT_EQ(find(), keychainStatus::itemNotFound);
  keyring_->suspend();
  bool ready = false;
  EXPECT_LT(timed([&] { keychain().prepare({query}, [&] { ready = true; }); }), atOnce);
  const auto duration = timed([&] {
    EXPECT_TRUE(waitFor([&] {
      dispatch_.runQueued();
      return ready;
    }));
  });
  EXPECT_GT(duration, seconds(4));
  EXPECT_LT(duration, limitAndSlack);
  EXPECT_LT(timed([&] { EXPECT_EQ(find(), keychainStatus::notAvailable); }), atOnce);
}

TEST_F(SecretServiceKeychainTest, PreparingAgainDoesNotWaitForTheFirstTime) {
  startKeyring(State::unlocked);
  ASSERT_EQ(add(), keychainStatus::success);
  keyring_->suspend();
  int ready = 0;
  EXPECT_LT(timed([&] {
              for (int i = 0; i < 2; ++i) keychain().prepare({query}, [&] { ++ready; });
            }),
            atOnce);
  keyring_->resume();
  ASSERT_TRUE(waitFor([&] {
    dispatch_.runQueued();
    return ready == 2;
  }));
  EXPECT_EQ(text(keychain().copyMatching(query).data), text(someKey()));
}

TEST_F(SecretServiceKeychainTest, NothingToPrepareIsReadyToo) {
  bool ready = false;
  keychain().prepare({}, [&] { ready = true; });
  EXPECT_FALSE(ready);
  EXPECT_TRUE(waitFor([&] {
    dispatch_.runQueued();
    return ready;
  }));
}

TEST_F(SecretServiceKeychainTest, AWarmLookupFitsIntoTheStart) {
  startKeyring(State::unlocked);
  ASSERT_EQ(add(), keychainStatus::success);
  std::vector<milliseconds> times;
  for (int i = 0; i < 5; ++i) {
    const auto duration = timed([&] {
      SecretServiceKeychain fresh(dispatch_);
      EXPECT_EQ(fresh.copyMatching(query).status, keychainStatus::success);
    });
    times.push_back(duration);
  }
  std::sort(times.begin(), times.end());
  RecordProperty("medianMilliseconds", static_cast<int>(times[2].count()));
  EXPECT_LT(times[2], atOnce);
}

}  // namespace
}  // namespace vantorel
