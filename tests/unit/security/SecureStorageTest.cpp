// SPDX-License-Identifier: MIT
#include "security/SecureStorage.h"

#include <gtest/gtest.h>
#include <openssl/evp.h>

#include <array>
#include <atomic>
#include <set>
#include <string>
#include <thread>
#include <vector>

#include "fakes/FakeKeychain.h"
#include "security/SecureStorageError.h"

namespace vantorel {
namespace {

using Backend = FakeKeychain::Backend;

SecretBytes keyOf(std::size_t size, unsigned char value = 7) {
  SecretBytes key(size);
  for (auto& byte : key.bytes()) byte = std::byte{value};
  return key;
}

Bytes bytes(std::string_view text) {
  const auto view = bytesOf(text);
  return {view.begin(), view.end()};
}

SecureStorageError::Kind kindThrownBy(const std::function<void()>& work) {
  try {
    work();
  } catch (const SecureStorageError& error) {
    return error.kind();
  }
  throw std::logic_error("no SecureStorageError was thrown");
}

TEST(Sealing, OfNothingGivesMagicNonceAndTag) {
  const auto storage = SecureStorage::ephemeral();
  const auto envelope = storage->seal({});
  ASSERT_EQ(envelope.size(), 33U);
  EXPECT_EQ(textOf(ByteView(envelope).first(5)), "VNTL1");
  EXPECT_TRUE(storage->open(envelope).empty());
}

TEST(Sealing, AddsThirtyThreeBytesAndHidesThePlaintext) {
  const auto storage = SecureStorage::ephemeral();
  const auto plaintext = bytes("a secret that must not be readable");
  const auto envelope = storage->seal(plaintext);
  EXPECT_EQ(envelope.size(), plaintext.size() + 33);
  EXPECT_EQ(textOf(envelope).find("secret"), std::string_view::npos);
  EXPECT_EQ(storage->open(envelope), plaintext);
}

TEST(Sealing, ComesBackWholeWithMegabytesOfEveryByte) {
  const auto storage = SecureStorage::ephemeral();
  Bytes plaintext(3'000'001);
  for (std::size_t i = 0; i < plaintext.size(); ++i) plaintext[i] = static_cast<std::byte>(i * 31);
  EXPECT_EQ(storage->open(storage->seal(plaintext)), plaintext);
}

TEST(Sealing, TheSamePlaintextTwiceGivesDifferentEnvelopes) {
  const auto storage = SecureStorage::ephemeral();
  const auto plaintext = bytes("the same");
  std::set<Bytes> envelopes;
  std::set<Bytes> nonces;
  for (int i = 0; i < 50; ++i) {
    const auto envelope = storage->seal(plaintext);
    envelopes.insert(envelope);
    nonces.emplace(envelope.begin() + 5, envelope.begin() + 17);
  }
  EXPECT_EQ(envelopes.size(), 50U);
  EXPECT_EQ(nonces.size(), 50U);
}

/// Seals with the cipher library directly, by the layout that is on users' disks.
Bytes sealedIndependently(ByteView plaintext, const SecretBytes& key) {
  const auto raw = [](auto* pointer) { return reinterpret_cast<unsigned char*>(pointer); };
  Bytes envelope = bytes("VNTL1");
  for (unsigned i = 0; i < 12; ++i) envelope.push_back(static_cast<std::byte>(i));
  envelope.resize(17 + plaintext.size() + 16);
  auto* context = EVP_CIPHER_CTX_new();
  int written = 0;
  EVP_EncryptInit_ex(context, EVP_aes_256_gcm(), nullptr,
                     reinterpret_cast<const unsigned char*>(key.view().data()),
                     raw(envelope.data() + 5));
  EVP_EncryptUpdate(context, nullptr, &written, raw(envelope.data()), 5);
  EVP_EncryptUpdate(context, raw(envelope.data() + 17), &written,
                    reinterpret_cast<const unsigned char*>(plaintext.data()),
                    static_cast<int>(plaintext.size()));
  EVP_EncryptFinal_ex(context, raw(envelope.data() + 17 + plaintext.size()), &written);
  EVP_CIPHER_CTX_ctrl(context, EVP_CTRL_AEAD_GET_TAG, 16, envelope.data() + 17 + plaintext.size());
  EVP_CIPHER_CTX_free(context);
  return envelope;
}

TEST(Opening, ReadsAnEnvelopeMadeElsewhereUnderTheSameKey) {
  const SecureStorage storage(keyOf(32));
  const auto plaintext = bytes("[]\n");
  EXPECT_EQ(storage.open(sealedIndependently(plaintext, keyOf(32))), plaintext);
}

TEST(Opening, RefusesWhatDoesNotBeginWithTheMagic) {
  const auto storage = SecureStorage::ephemeral();
  for (const auto& text : {"", "VNTL", "VNTL2 and more", "[{\"id\": 1}]", "vntl1"}) {
    EXPECT_EQ(kindThrownBy([&] { (void)storage->open(bytes(text)); }),
              SecureStorageError::Kind::invalidCiphertext)
        << text;
    EXPECT_FALSE(SecureStorage::isSealed(bytes(text))) << text;
  }
}

TEST(Opening, LeavesACutEnvelopeToTheCipher) {
  const auto storage = SecureStorage::ephemeral();
  const auto envelope = storage->seal(bytes("some text"));
  for (std::size_t size = 5; size < envelope.size(); ++size) {
    EXPECT_THROW((void)storage->open(ByteView(envelope).first(size)), CipherError) << size;
  }
}

TEST(Opening, FailsWhenAnyByteIsChanged) {
  const auto storage = SecureStorage::ephemeral();
  const auto envelope = storage->seal(bytes("some text"));
  for (std::size_t i = 0; i < envelope.size(); ++i) {
    auto changed = envelope;
    changed[i] ^= std::byte{1};
    EXPECT_THROW((void)storage->open(changed), std::runtime_error) << i;
  }
  auto longer = envelope;
  longer.push_back(std::byte{0});
  EXPECT_THROW((void)storage->open(longer), CipherError);
}

TEST(Opening, FailsUnderAnotherKey) {
  const auto envelope = SecureStorage(keyOf(32, 1)).seal(bytes("text"));
  EXPECT_THROW((void)SecureStorage(keyOf(32, 2)).open(envelope), CipherError);
}

TEST(Key, OfAnyLengthButThirtyTwoIsRefused) {
  for (const std::size_t size : {0U, 16U, 31U, 33U}) {
    EXPECT_EQ(kindThrownBy([&] { const SecureStorage storage(keyOf(size)); }),
              SecureStorageError::Kind::invalidKey);
  }
}

TEST(Rotation, MakesWhatWasSealedBeforeUnreadable) {
  const auto storage = SecureStorage::ephemeral();
  const auto before = storage->seal(bytes("old"));
  storage->beginRotation({});
  EXPECT_THROW((void)storage->open(before), CipherError);
  EXPECT_EQ(storage->open(storage->seal(bytes("new"))), bytes("new"));
}

TEST(Rotation, StoresTheNewKeyBeforeUsingIt) {
  SecretBytes stored;
  SecureStorage storage(keyOf(32), [&](const SecretBytes& key, const auto& /*ended*/) {
    stored = key.duplicate();
    return FakeKeychain::endedUpdate(keychainStatus::success);
  });
  storage.beginRotation({});
  EXPECT_FALSE(storage.isRotating());
  ASSERT_EQ(stored.size(), 32U);
  EXPECT_EQ(SecureStorage(std::move(stored)).open(storage.seal(bytes("x"))), bytes("x"));
}

TEST(Rotation, KeepsTheOldKeyWhenTheNewOneCannotBeStored) {
  SecureStorage storage(keyOf(32), [](const SecretBytes& /*key*/, const auto& /*ended*/) {
    return FakeKeychain::endedUpdate(keychainStatus::notAvailable);
  });
  const auto envelope = storage.seal(bytes("kept"));
  storage.beginRotation({});
  EXPECT_FALSE(storage.isRotating());
  EXPECT_EQ(storage.open(envelope), bytes("kept"));
}

/// A storage whose keychain answers late.
class LateRotation : public testing::Test {
 protected:
  LateRotation() {
    keychain_.setKey(Backend::login, keyOf(32).view());
    keychain_.answersUpdatesLate = true;
    storage_ = SecureStorage::production(keychain_);
    envelope_ = storage_->seal(bytes("text"));
    storage_->beginRotation([this] { ++ended_; });
  }

  [[nodiscard]] bool opensWhatWasSealedBefore() const {
    try {
      return storage_->open(envelope_) == bytes("text");
    } catch (const CipherError&) {
      return false;
    }
  }
  /// Whether the keychain holds the key that is in use.
  [[nodiscard]] bool agrees() {
    const auto stored = keychain_.key(Backend::login);
    return SecureStorage(SecretBytes(ByteView(*stored))).open(storage_->seal(bytes("x"))) ==
           bytes("x");
  }

  FakeKeychain keychain_;
  std::shared_ptr<SecureStorage> storage_;
  Bytes envelope_;
  int ended_ = 0;
};

TEST_F(LateRotation, UsesTheOldKeyUntilTheKeychainHasTheNewOne) {
  EXPECT_TRUE(storage_->isRotating());
  EXPECT_TRUE(opensWhatWasSealedBefore());
  keychain_.makeUpdates();
  EXPECT_TRUE(opensWhatWasSealedBefore());
  keychain_.tellOfUpdates();
  EXPECT_EQ(ended_, 1);
  EXPECT_TRUE(storage_->settleRotation());
  EXPECT_FALSE(storage_->isRotating());
  EXPECT_FALSE(opensWhatWasSealedBefore());
  EXPECT_TRUE(agrees());
}

TEST_F(LateRotation, IsGivenUpWhenItIsSettledTooEarly) {
  EXPECT_FALSE(storage_->settleRotation());
  keychain_.makeUpdates();
  EXPECT_TRUE(opensWhatWasSealedBefore());
  EXPECT_TRUE(agrees());
}

TEST_F(LateRotation, CountsAnAnswerThatNobodyHasHeardOfYet) {
  keychain_.makeUpdates();
  EXPECT_TRUE(storage_->settleRotation());
  EXPECT_TRUE(agrees());
}

TEST_F(LateRotation, IsBegunOnceAtATime) {
  storage_->beginRotation({});
  EXPECT_EQ(keychain_.waitingUpdates(), 1);
  EXPECT_FALSE(storage_->settleRotation());
  storage_->beginRotation({});
  EXPECT_EQ(keychain_.waitingUpdates(), 1);
  EXPECT_TRUE(storage_->isRotating());
}

TEST(Rotation, MayHappenWhileOtherThreadsSealAndOpen) {
  const auto storage = SecureStorage::ephemeral();
  std::atomic<bool> stop = false;
  std::atomic<int> opened = 0;
  std::vector<std::thread> readers;
  readers.reserve(2);
  for (int i = 0; i < 2; ++i) {
    readers.emplace_back([&] {
      while (!stop) {
        try {
          if (storage->open(storage->seal(bytes("text"))) == bytes("text")) ++opened;
        } catch (const CipherError&) {
          continue;  // rotated in between
        }
      }
    });
  }
  // Rotates as long as it takes the readers to meet it often, however they are scheduled.
  int rotations = 0;
  while (rotations < 200 || opened < 200) {
    storage->beginRotation({});
    ++rotations;
  }
  stop = true;
  for (auto& reader : readers) reader.join();
  EXPECT_EQ(storage->open(storage->seal(bytes("after"))), bytes("after"));
}

TEST(Production, UsesTheKeyThatTheKeychainHolds) {
  FakeKeychain keychain;
  keychain.setKey(Backend::dataProtection, keyOf(32).view());
  const auto envelope = SecureStorage::production(keychain)->seal(bytes("text"));
  EXPECT_EQ(SecureStorage(keyOf(32)).open(envelope), bytes("text"));
}

TEST(Production, RefusesKeyMaterialOfTheWrongLength) {
  for (const std::size_t size : {31U, 33U}) {
    FakeKeychain keychain;
    keychain.setKey(Backend::dataProtection, keyOf(size).view());
    EXPECT_EQ(kindThrownBy([&] { (void)SecureStorage::production(keychain); }),
              SecureStorageError::Kind::invalidKey);
  }
}

TEST(Production, RotatesInTheBackendThatTheKeyCameFrom) {
  FakeKeychain keychain;
  keychain.setKey(Backend::login, keyOf(32).view());
  const auto storage = SecureStorage::production(keychain);
  storage->beginRotation({});
  EXPECT_FALSE(keychain.key(Backend::dataProtection));
  const auto stored = keychain.key(Backend::login);
  ASSERT_TRUE(stored);
  EXPECT_EQ(SecureStorage(SecretBytes(ByteView(*stored))).open(storage->seal(bytes("x"))),
            bytes("x"));
}

TEST(Production, KeepsBothKeysWhenTheKeychainRefusesTheNewOne) {
  FakeKeychain keychain;
  keychain.setKey(Backend::login, keyOf(32).view());
  const auto storage = SecureStorage::production(keychain);
  const auto envelope = storage->seal(bytes("text"));
  keychain.fail(Backend::login, keychainStatus::userCanceled);
  storage->beginRotation({});
  EXPECT_FALSE(storage->isRotating());
  EXPECT_EQ(storage->open(envelope), bytes("text"));
  EXPECT_EQ(SecureStorage(SecretBytes(ByteView(*keychain.key(Backend::login)))).open(envelope),
            bytes("text"));
}

}  // namespace
}  // namespace vantorel
