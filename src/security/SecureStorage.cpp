// SPDX-License-Identifier: MIT
#include "security/SecureStorage.h"

#include <openssl/crypto.h>
#include <openssl/evp.h>

#include <algorithm>
#include <array>
#include <utility>

#include "base/RandomBytes.h"
#include "security/HistoryKeychain.h"
#include "security/SecureStorageError.h"

namespace vantorel {
namespace {

constexpr std::size_t nonceSize = 12;
constexpr std::size_t tagSize = 16;
constexpr std::size_t nonceOffset = SecureStorage::magic.size();
constexpr std::size_t ciphertextOffset = nonceOffset + nonceSize;

static_assert(SecureStorage::keySize == HistoryKeychain::keySize);

unsigned char* raw(std::byte* bytes) { return reinterpret_cast<unsigned char*>(bytes); }
const unsigned char* raw(const std::byte* bytes) {
  return reinterpret_cast<const unsigned char*>(bytes);
}

void require(int succeeded) {
  if (succeeded != 1) throw CipherError("the cipher failed");
}

/// Looked up once: the library's own shorthand looks it up at every use, which for a short text
/// takes longer than the cipher.
const EVP_CIPHER* aesGcm() {
  static const EVP_CIPHER* const cipher = EVP_CIPHER_fetch(nullptr, "AES-256-GCM", nullptr);
  return cipher;
}

enum class Direction { open = 0, seal = 1 };

/// AES-256-GCM in one direction with the magic as additional authenticated data. Its context is
/// wiped when it goes.
class Cipher {
 public:
  Cipher(Direction direction, const SecretBytes& key, const std::byte* nonce)
      : context_(EVP_CIPHER_CTX_new(), EVP_CIPHER_CTX_free) {
    require(context_ && aesGcm() != nullptr ? 1 : 0);
    require(EVP_CipherInit_ex2(context_.get(), aesGcm(), raw(key.view().data()), raw(nonce),
                               static_cast<int>(direction), nullptr));
    int written = 0;
    require(EVP_CipherUpdate(context_.get(), nullptr, &written,
                             raw(bytesOf(SecureStorage::magic).data()),
                             static_cast<int>(SecureStorage::magic.size())));
  }

  void run(ByteView input, std::byte* output) {
    constexpr std::size_t largestStep = 1 << 30;  // the library counts in int
    while (!input.empty()) {
      const auto step = input.first(std::min(input.size(), largestStep));
      int written = 0;
      require(EVP_CipherUpdate(context_.get(), raw(output), &written, raw(step.data()),
                               static_cast<int>(step.size())));
      output += written;
      input = input.subspan(step.size());
    }
  }

  void finishWithTag(std::byte* tag) {
    require(finish());
    require(EVP_CIPHER_CTX_ctrl(context_.get(), EVP_CTRL_AEAD_GET_TAG, tagSize, tag));
  }

  [[nodiscard]] bool finishAgainstTag(const std::byte* tag) {
    std::array<std::byte, tagSize> expected{};
    std::copy_n(tag, tagSize, expected.begin());
    require(EVP_CIPHER_CTX_ctrl(context_.get(), EVP_CTRL_AEAD_SET_TAG, tagSize, expected.data()));
    return finish() == 1;
  }

 private:
  int finish() {
    std::array<unsigned char, tagSize> nothing{};
    int written = 0;
    return EVP_CipherFinal_ex(context_.get(), nothing.data(), &written);
  }

  std::unique_ptr<EVP_CIPHER_CTX, decltype(&EVP_CIPHER_CTX_free)> context_;
};

}  // namespace

SecureStorage::SecureStorage(SecretBytes key, PersistKey persistKey)
    : persistKey_(std::move(persistKey)) {
  if (key.size() != keySize) throw SecureStorageError(SecureStorageError::Kind::invalidKey);
  key_ = std::make_shared<const SecretBytes>(std::move(key));
}

std::shared_ptr<SecureStorage> SecureStorage::production(Keychain& keychain,
                                                         const std::function<bool()>& mayCreate) {
  auto material = HistoryKeychain::loadOrCreate(keychain, mayCreate);
  return std::make_shared<SecureStorage>(
      std::move(material.data),
      [&keychain, backend = material.backend](const SecretBytes& key, std::function<void()> ended) {
        return HistoryKeychain::beginReplacing(keychain, key, backend, std::move(ended));
      });
}

std::shared_ptr<SecureStorage> SecureStorage::ephemeral() {
  return std::make_shared<SecureStorage>(randomSecret(keySize));
}

bool SecureStorage::isSealed(ByteView bytes) {
  return textOf(bytes.first(std::min(bytes.size(), magic.size()))) == magic;
}

Bytes SecureStorage::seal(ByteView plaintext) const {
  Bytes envelope(ciphertextOffset + plaintext.size() + tagSize);
  const auto prefix = bytesOf(magic);
  std::copy(prefix.begin(), prefix.end(), envelope.begin());
  const auto nonce = std::span(envelope).subspan(nonceOffset, nonceSize);
  fillWithRandom(nonce);

  Cipher cipher(Direction::seal, *key(), nonce.data());
  cipher.run(plaintext, envelope.data() + ciphertextOffset);
  cipher.finishWithTag(envelope.data() + ciphertextOffset + plaintext.size());
  return envelope;
}

Bytes SecureStorage::open(ByteView envelope) const {
  if (!isSealed(envelope)) {
    throw SecureStorageError(SecureStorageError::Kind::invalidCiphertext);
  }
  if (envelope.size() < ciphertextOffset + tagSize) {
    throw CipherError("the envelope is too short for nonce and tag");
  }
  const auto ciphertext =
      envelope.subspan(ciphertextOffset, envelope.size() - ciphertextOffset - tagSize);

  Cipher cipher(Direction::open, *key(), envelope.data() + nonceOffset);
  Bytes plaintext(ciphertext.size());
  cipher.run(ciphertext, plaintext.data());
  if (!cipher.finishAgainstTag(envelope.data() + envelope.size() - tagSize)) {
    // Not to be trusted, and perhaps the user's text all the same: none of it stays in memory.
    OPENSSL_cleanse(plaintext.data(), plaintext.size());
    throw CipherError("the envelope was changed or sealed under another key");
  }
  return plaintext;
}

void SecureStorage::beginRotation(std::function<void()> ended) {
  if (rotation_) return;
  auto fresh = std::make_shared<const SecretBytes>(randomSecret(keySize));
  if (!persistKey_) return use(std::move(fresh));
  auto update = persistKey_(*fresh, std::move(ended));
  const bool known = update->hasEnded();
  rotation_ = std::make_unique<Rotation>(Rotation{std::move(fresh), std::move(update)});
  if (known) (void)settleRotation();
}

bool SecureStorage::settleRotation() {
  const auto rotation = std::exchange(rotation_, nullptr);
  if (!rotation || rotation->update->settle() != keychainStatus::success) return false;
  use(rotation->key);
  return true;
}

void SecureStorage::use(std::shared_ptr<const SecretBytes> key) {
  const std::lock_guard lock(keyMutex_);
  key_.swap(key);
}

std::shared_ptr<const SecretBytes> SecureStorage::key() const {
  const std::lock_guard lock(keyMutex_);
  return key_;
}

}  // namespace vantorel
