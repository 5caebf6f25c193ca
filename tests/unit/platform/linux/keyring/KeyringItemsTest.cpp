// SPDX-License-Identifier: MIT
#include "platform/linux/keyring/KeyringItems.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>

#include "unit/platform/linux/keyring/ScriptedKeyring.h"

namespace vantorel {
namespace {

using Step = ScriptedKeyring::Step;

const KeychainQuery query{.service = "the.service", .account = "the-account"};
const ObjectPath itemPath = "/login/1";

class KeyringItemsTest : public testing::Test {
 protected:
  void store(const std::string& secret) {
    keyring.items[itemPath] = {query.service, query.account, "label", secret};
  }
  OSStatus find() { return findKeyringItem(keyring, query).status; }
  std::string findText() {
    const auto result = findKeyringItem(keyring, query);
    return result.data ? std::string(textOf(result.data->view())) : "(none)";
  }
  OSStatus add(const std::string& secret = "new") {
    return addKeyringItem(keyring, query, "the label", SecretBytes(bytesOf(secret)));
  }
  OSStatus update(const std::string& secret = "new", bool accepted = true) {
    return updateKeyringItem(keyring, query, SecretBytes(bytesOf(secret)),
                             [&] { return accepted; });
  }
  std::string storedText() { return keyring.items[itemPath].secret; }

  ScriptedKeyring keyring;
};

TEST_F(KeyringItemsTest, FindsTheItemByteForByte) {
  const std::string secret("\0\xff\0abc", 6);
  store(secret);
  EXPECT_EQ(find(), keychainStatus::success);
  EXPECT_EQ(findText(), secret);
}

TEST_F(KeyringItemsTest, HandsUpSecretsOfAnyLength) {
  for (const std::size_t length : {0, 1, 31, 33, 5000}) {
    store(std::string(length, 'x'));
    EXPECT_EQ(findText().size(), length);
  }
}

TEST_F(KeyringItemsTest, OtherServicesAndAccountsAreNotTheItem) {
  keyring.items["/login/2"] = {query.service, "another", "label", "no"};
  keyring.items["/login/3"] = {"another", query.account, "label", "no"};
  EXPECT_EQ(find(), keychainStatus::itemNotFound);
}

TEST_F(KeyringItemsTest, NothingInAnUnlockedCollectionIsNotFound) {
  EXPECT_EQ(find(), keychainStatus::itemNotFound);
}

TEST_F(KeyringItemsTest, ANewDefaultCollectionIsAskedForWhereThereIsNone) {
  keyring.aliases.erase("default");
  EXPECT_EQ(find(), keychainStatus::notAvailable);
  keyring.making = UnlockOutcome::asking;
  EXPECT_EQ(find(), keychainStatus::userCanceled) << "the user has not answered yet";
  keyring.making = UnlockOutcome::unlocked;
  EXPECT_EQ(find(), keychainStatus::itemNotFound);
  EXPECT_EQ(add(), keychainStatus::success);
}

TEST_F(KeyringItemsTest, ANewDefaultCollectionThatIsNotThereAfterAllIsNone) {
  keyring.aliases.erase("default");
  keyring.making = UnlockOutcome::unlocked;
  keyring.before = [&](Step step, int times) {
    if (step == Step::collection && times == 2) keyring.aliases.erase("default");
  };
  EXPECT_EQ(find(), keychainStatus::notAvailable);
}

TEST_F(KeyringItemsTest, ALockedCollectionIsNeverNotFound) {
  keyring.locked.insert("/login");
  for (const UnlockOutcome outcome : {UnlockOutcome::refused, UnlockOutcome::asking}) {
    keyring.outcome = outcome;
    EXPECT_EQ(find(), keychainStatus::userCanceled);
    EXPECT_EQ(add(), keychainStatus::userCanceled);
    EXPECT_EQ(update(), keychainStatus::userCanceled);
  }
  EXPECT_TRUE(keyring.items.empty());
}

TEST_F(KeyringItemsTest, AnUnlockedCollectionIsSearched) {
  store("secret");
  keyring.locked.insert("/login");
  keyring.outcome = UnlockOutcome::unlocked;
  EXPECT_EQ(findText(), "secret");
}

TEST_F(KeyringItemsTest, UnlockingThatOnlyClaimsToHaveWorkedIsNotBelieved) {
  keyring.locked.insert("/login");
  keyring.outcome = UnlockOutcome::unlocked;
  keyring.before = [&](Step step, int /*times*/) {
    if (step == Step::isLocked) keyring.locked.insert("/login");
  };
  EXPECT_EQ(find(), keychainStatus::userCanceled);
  EXPECT_THAT(keyring.steps, testing::Not(testing::Contains(Step::search)));
}

TEST_F(KeyringItemsTest, ACollectionThatLocksBeforeTheSearchIsNotEmpty) {
  store("secret");
  keyring.before = [&](Step step, int /*times*/) {
    if (step == Step::search) keyring.locked.insert("/login");
  };
  EXPECT_EQ(find(), keychainStatus::userCanceled);
  keyring.locked.clear();
  EXPECT_EQ(add(), keychainStatus::userCanceled);
  EXPECT_EQ(keyring.items.size(), 1U);
}

TEST_F(KeyringItemsTest, ACollectionThatLocksBetweenSearchAndReadingIsLocked) {
  store("secret");
  keyring.before = [&](Step step, int /*times*/) {
    if (step == Step::secret) keyring.locked.insert("/login");
  };
  EXPECT_EQ(find(), keychainStatus::userCanceled);
}

TEST_F(KeyringItemsTest, AnotherDefaultCollectionAfterAnEmptySearchIsNoAnswer) {
  keyring.before = [&](Step step, int /*times*/) {
    if (step == Step::search) keyring.aliases["default"] = "/other";
  };
  EXPECT_EQ(find(), keychainStatus::notAvailable);
}

TEST_F(KeyringItemsTest, WithoutADefaultCollectionThereIsNoKeychain) {
  keyring.aliases.clear();
  EXPECT_EQ(find(), keychainStatus::notAvailable);
  EXPECT_EQ(add(), keychainStatus::notAvailable);
  EXPECT_EQ(update(), keychainStatus::notAvailable);
}

TEST_F(KeyringItemsTest, NothingIsAddedToACollectionThatDiesWithTheSession) {
  keyring.aliases["session"] = "/login";
  EXPECT_EQ(add(), keychainStatus::notAvailable);
  EXPECT_TRUE(keyring.items.empty());
}

TEST_F(KeyringItemsTest, SilenceAtAnyStepOfAFindIsNeverNotFound) {
  for (const Step step : {Step::collection, Step::isLocked, Step::search}) {
    for (const int time : {1, 2}) {
      keyring.silentAt = {{step, time}};
      keyring.steps.clear();
      const OSStatus status = find();
      const bool asked = std::count(keyring.steps.begin(), keyring.steps.end(), step) >= time;
      EXPECT_EQ(status, asked ? keychainStatus::notAvailable : keychainStatus::itemNotFound);
    }
  }
  store("secret");
  keyring.steps.clear();
  keyring.silentAt = {{Step::secret, 1}};
  EXPECT_EQ(find(), keychainStatus::notAvailable);
  keyring.locked.insert("/login");
  keyring.steps.clear();
  keyring.silentAt = {{Step::unlock, 1}};
  EXPECT_EQ(find(), keychainStatus::notAvailable);
}

TEST_F(KeyringItemsTest, AnItemLockedByItselfIsUnlocked) {
  store("secret");
  keyring.locked.insert(itemPath);
  EXPECT_EQ(find(), keychainStatus::userCanceled);
  keyring.outcome = UnlockOutcome::unlocked;
  EXPECT_EQ(findText(), "secret");
}

TEST_F(KeyringItemsTest, AddsOneItemWithItsAttributes) {
  const std::string secret(32, '\0');
  EXPECT_EQ(add(secret), keychainStatus::success);
  ASSERT_EQ(keyring.items.size(), 1U);
  const auto& item = keyring.items.begin()->second;
  EXPECT_EQ(item.service, query.service);
  EXPECT_EQ(item.account, query.account);
  EXPECT_EQ(item.label, "the label");
  EXPECT_EQ(item.secret, secret);
}

TEST_F(KeyringItemsTest, ADuplicateIsLeftAsItIs) {
  store("old");
  EXPECT_EQ(add("new"), keychainStatus::duplicateItem);
  EXPECT_EQ(keyring.items.size(), 1U);
  EXPECT_EQ(findText(), "old");
}

TEST_F(KeyringItemsTest, OfTwoThatAddAtOnceTheOneWhoSeesTheOtherWithdraws) {
  keyring.before = [&](Step step, int /*times*/) {
    if (step == Step::create) store("of the other program");
  };
  EXPECT_EQ(add("mine"), keychainStatus::duplicateItem);
  EXPECT_EQ(keyring.items.size(), 1U);
  EXPECT_EQ(findText(), "of the other program");
}

TEST_F(KeyringItemsTest, AnItemThatCannotBeFoundAfterAddingWasNotAdded) {
  keyring.before = [&](Step step, int times) {
    if (step == Step::search && times == 2) keyring.items.clear();
  };
  EXPECT_EQ(add(), keychainStatus::notAvailable);
}

TEST_F(KeyringItemsTest, SilenceAtAnyStepOfAnAddIsNoSuccess) {
  for (const Step step : {Step::collection, Step::isLocked, Step::search, Step::create}) {
    for (const int time : {1, 2, 3}) {
      keyring = {};
      keyring.silentAt = {{step, time}};
      const OSStatus status = add();
      const bool asked = std::count(keyring.steps.begin(), keyring.steps.end(), step) >= time;
      EXPECT_EQ(status, asked ? keychainStatus::notAvailable : keychainStatus::success);
    }
  }
}

TEST_F(KeyringItemsTest, UpdatesTheSecretAloneAndAddsNothing) {
  store("old");
  EXPECT_EQ(update("new"), keychainStatus::success);
  EXPECT_EQ(storedText(), "new");
  EXPECT_EQ(keyring.items.size(), 1U);
  EXPECT_EQ(keyring.items[itemPath].label, "label");
}

TEST_F(KeyringItemsTest, NothingToUpdateIsNotFoundAndStaysSo) {
  EXPECT_EQ(update(), keychainStatus::itemNotFound);
  EXPECT_TRUE(keyring.items.empty());
}

TEST_F(KeyringItemsTest, AnUpdateWithoutAnswerIsTakenBack) {
  store("old");
  keyring.silentAt = {{Step::replace, 1}};
  EXPECT_EQ(update("new"), keychainStatus::notAvailable);
  EXPECT_EQ(storedText(), "old");
}

TEST_F(KeyringItemsTest, AnUpdateThatNobodyWaitsForAnyMoreIsTakenBack) {
  store("old");
  EXPECT_EQ(update("new", false), keychainStatus::notAvailable);
  EXPECT_EQ(storedText(), "old");
}

TEST_F(KeyringItemsTest, AnUpdateOfAnItemThatCannotBeReadIsNotTried) {
  store("old");
  keyring.silentAt = {{Step::secret, 1}};
  EXPECT_EQ(update("new"), keychainStatus::notAvailable);
  EXPECT_EQ(storedText(), "old");
  EXPECT_THAT(keyring.steps, testing::Not(testing::Contains(Step::replace)));
}

TEST_F(KeyringItemsTest, AnUpdateRefusedByALockChangesNothing) {
  store("old");
  keyring.before = [&](Step step, int /*times*/) {
    if (step == Step::replace) keyring.locked.insert("/login");
  };
  EXPECT_EQ(update("new"), keychainStatus::userCanceled);
  EXPECT_EQ(storedText(), "old");
}

}  // namespace
}  // namespace vantorel
