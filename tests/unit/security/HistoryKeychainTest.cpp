// SPDX-License-Identifier: MIT
#include "security/HistoryKeychain.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <functional>
#include <string>

#include "fakes/FakeKeychain.h"
#include "security/SecureStorageError.h"

namespace vantorel {
namespace {

using Store = FakeKeychain::Backend;
using Operation = FakeKeychain::Operation;
using HistoryKeychain::Backend;
using HistoryKeychain::loadOrCreate;

Bytes key(unsigned char value, std::size_t size = 32) { return Bytes(size, std::byte{value}); }

Bytes held(const SecretBytes& secret) { return {secret.view().begin(), secret.view().end()}; }

OSStatus statusThrownBy(const std::function<void()>& work) {
  try {
    work();
  } catch (const SecureStorageError& error) {
    if (error.kind() == SecureStorageError::Kind::keychain) return error.status();
  }
  throw std::logic_error("no keychain error was thrown");
}

TEST(HistoryKeychain, NamesItsItem) {
  const auto protectedQuery = HistoryKeychain::baseQuery(Backend::dataProtection);
  EXPECT_EQ(protectedQuery.service, "com.vantorel.mvp.history-encryption");
  EXPECT_EQ(protectedQuery.account, "history-key-v1");
  EXPECT_TRUE(protectedQuery.useDataProtectionKeychain);
  EXPECT_FALSE(HistoryKeychain::baseQuery(Backend::loginKeychain).useDataProtectionKeychain);
}

TEST(LoadOrCreate, PrefersTheDataProtectionKeychain) {
  FakeKeychain keychain;
  keychain.setKey(Store::dataProtection, key(1));
  keychain.setKey(Store::login, key(2));
  const auto material = loadOrCreate(keychain);
  EXPECT_EQ(material.backend, Backend::dataProtection);
  EXPECT_EQ(held(material.data), key(1));
}

TEST(LoadOrCreate, LeavesAKeyInTheLoginKeychainWhereItIs) {
  FakeKeychain keychain;
  keychain.setKey(Store::login, key(2));
  const auto material = loadOrCreate(keychain);
  EXPECT_EQ(material.backend, Backend::loginKeychain);
  EXPECT_EQ(held(material.data), key(2));
  EXPECT_EQ(keychain.itemCount(), 1U);
}

TEST(LoadOrCreate, CreatesALabelledKeyWhereThereIsNone) {
  FakeKeychain keychain;
  const auto material = loadOrCreate(keychain);
  EXPECT_EQ(material.backend, Backend::dataProtection);
  EXPECT_EQ(material.data.size(), 32U);
  EXPECT_EQ(keychain.key(Store::dataProtection), held(material.data));
  const auto& call = keychain.calls().back();
  EXPECT_EQ(call.operation, Operation::add);
  EXPECT_EQ(call.attributes.label, "Vantorel local history encryption");
  EXPECT_EQ(call.attributes.accessibility, KeychainAccessibility::afterFirstUnlockThisDeviceOnly);
}

TEST(LoadOrCreate, AsksBeforeItCreatesAndNotWhereThereIsOne) {
  FakeKeychain keychain;
  int asked = 0;
  const auto refuse = [&] {
    ++asked;
    return false;
  };
  EXPECT_EQ(statusThrownBy([&] { (void)loadOrCreate(keychain, refuse); }),
            keychainStatus::itemNotFound);
  EXPECT_EQ(asked, 1);
  EXPECT_EQ(keychain.itemCount(), 0U);
  keychain.setKey(Store::login, key(2));
  EXPECT_EQ(held(loadOrCreate(keychain, refuse).data), key(2));
  EXPECT_EQ(asked, 1);
}

TEST(LoadOrCreate, MakesADifferentKeyEveryTime) {
  FakeKeychain one;
  FakeKeychain other;
  EXPECT_NE(held(loadOrCreate(one).data), held(loadOrCreate(other).data));
}

TEST(LoadOrCreate, FallsBackToTheLoginKeychainForGood) {
  for (const auto status : {keychainStatus::missingEntitlement, keychainStatus::notAvailable}) {
    FakeKeychain keychain;
    keychain.fail(Store::dataProtection, status);
    const auto created = loadOrCreate(keychain);
    EXPECT_EQ(created.backend, Backend::loginKeychain);
    EXPECT_EQ(keychain.calls().back().attributes.accessibility, KeychainAccessibility::unspecified);

    keychain.recover(Store::dataProtection);
    const auto found = loadOrCreate(keychain);
    EXPECT_EQ(found.backend, Backend::loginKeychain);
    EXPECT_EQ(held(found.data), held(created.data));
    EXPECT_FALSE(keychain.key(Store::dataProtection));
  }
}

TEST(LoadOrCreate, NeverCreatesAKeyBesideAKeychainThatCouldNotBeSearched) {
  struct Case {
    Store backend;
    OSStatus status;
  };
  for (const auto& tried :
       {Case{Store::dataProtection, keychainStatus::userCanceled}, Case{Store::dataProtection, -50},
        Case{Store::dataProtection, keychainStatus::duplicateItem},
        Case{Store::login, keychainStatus::userCanceled},
        Case{Store::login, keychainStatus::notAvailable},
        Case{Store::login, keychainStatus::missingEntitlement}, Case{Store::login, -50}}) {
    FakeKeychain keychain;
    keychain.failOnce(Operation::copyMatching, tried.backend, tried.status);
    EXPECT_EQ(statusThrownBy([&] { (void)loadOrCreate(keychain); }), tried.status);
    EXPECT_EQ(keychain.itemCount(), 0U);
  }
}

TEST(LoadOrCreate, TakesASuccessWithoutDataForAFailure) {
  for (const auto backend : {Store::dataProtection, Store::login}) {
    FakeKeychain keychain;
    keychain.failOnce(Operation::copyMatching, backend, keychainStatus::success);
    EXPECT_EQ(statusThrownBy([&] { (void)loadOrCreate(keychain); }), keychainStatus::success);
    EXPECT_EQ(keychain.itemCount(), 0U);
  }
}

TEST(LoadOrCreate, TakesTheKeyOfAProcessThatWasFaster) {
  FakeKeychain keychain;
  keychain.beforeAdd = [&] { keychain.setKey(Store::dataProtection, key(9)); };
  const auto material = loadOrCreate(keychain);
  EXPECT_EQ(held(material.data), key(9));
  EXPECT_EQ(keychain.key(Store::dataProtection), key(9));
}

TEST(LoadOrCreate, StartsAgainOnEveryDuplicate) {
  FakeKeychain keychain;
  for (int i = 0; i < 5000; ++i) {
    keychain.failOnce(Operation::add, Store::dataProtection, keychainStatus::duplicateItem);
  }
  const auto material = loadOrCreate(keychain);
  EXPECT_EQ(keychain.key(Store::dataProtection), held(material.data));
  EXPECT_EQ(keychain.calls().size(), 3U * 5001U);
}

TEST(LoadOrCreate, TriesTheLoginKeychainOnlyWhenTheOtherIsUnusableForAdding) {
  FakeKeychain keychain;
  keychain.failOnce(Operation::add, Store::dataProtection, keychainStatus::missingEntitlement);
  EXPECT_EQ(loadOrCreate(keychain).backend, Backend::loginKeychain);

  FakeKeychain refusing;
  refusing.failOnce(Operation::add, Store::dataProtection, keychainStatus::userCanceled);
  EXPECT_EQ(statusThrownBy([&] { (void)loadOrCreate(refusing); }), keychainStatus::userCanceled);
  EXPECT_EQ(refusing.itemCount(), 0U);
}

TEST(LoadOrCreate, GivesUpWhenNoBackendTakesTheKey) {
  for (const OSStatus status :
       {keychainStatus::notAvailable, keychainStatus::missingEntitlement, OSStatus{-61}}) {
    FakeKeychain keychain;
    keychain.fail(Store::dataProtection, keychainStatus::missingEntitlement);
    keychain.failOnce(Operation::add, Store::login, status);
    EXPECT_EQ(statusThrownBy([&] { (void)loadOrCreate(keychain); }), status);
  }
}

TEST(Read, AnswersStatusAndData) {
  FakeKeychain keychain;
  EXPECT_EQ(HistoryKeychain::read(keychain, Backend::loginKeychain).status,
            keychainStatus::itemNotFound);
  keychain.setKey(Store::login, key(3, 5));
  const auto result = HistoryKeychain::read(keychain, Backend::loginKeychain);
  EXPECT_EQ(result.status, keychainStatus::success);
  ASSERT_TRUE(result.data);
  EXPECT_EQ(held(*result.data), key(3, 5));
}

TEST(Replace, OverwritesOnlyInTheBackendAsked) {
  FakeKeychain keychain;
  keychain.setKey(Store::dataProtection, key(1));
  keychain.setKey(Store::login, key(2));
  const auto update = HistoryKeychain::beginReplacing(keychain, SecretBytes(ByteView(key(5))),
                                                      Backend::loginKeychain, {});
  EXPECT_EQ(update->settle(), keychainStatus::success);
  EXPECT_EQ(keychain.key(Store::login), key(5));
  EXPECT_EQ(keychain.key(Store::dataProtection), key(1));
}

TEST(Replace, RefusesKeysOfTheWrongLengthBeforeAskingTheKeychain) {
  FakeKeychain keychain;
  keychain.setKey(Store::login, key(2));
  for (const std::size_t size : {0U, 31U, 33U}) {
    try {
      (void)HistoryKeychain::beginReplacing(keychain, SecretBytes(size), Backend::loginKeychain,
                                            {});
      ADD_FAILURE() << size;
    } catch (const SecureStorageError& error) {
      EXPECT_EQ(error.kind(), SecureStorageError::Kind::invalidKey);
    }
  }
  EXPECT_TRUE(keychain.calls().empty());
}

TEST(Replace, NeverAddsAnItem) {
  FakeKeychain keychain;
  const auto update =
      HistoryKeychain::beginReplacing(keychain, SecretBytes(32), Backend::loginKeychain, {});
  EXPECT_EQ(update->settle(), keychainStatus::itemNotFound);
  EXPECT_EQ(keychain.itemCount(), 0U);
}

}  // namespace
}  // namespace vantorel
