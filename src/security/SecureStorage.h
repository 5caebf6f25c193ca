// SPDX-License-Identifier: MIT
#pragma once

#include <functional>
#include <memory>
#include <mutex>
#include <string_view>

#include "base/Bytes.h"
#include "base/SecretBytes.h"
#include "platform/Keychain.h"

namespace vantorel {

/// Seals and opens everything the history writes: AES-256-GCM in an envelope of magic, nonce,
/// ciphertext and tag. The key is an immutable snapshot: sealing and opening may run on any thread
/// while the main thread rotates it. A new key is used once the keychain has it, and not before.
class SecureStorage {
 public:
  /// Begins to store a new key, as `Keychain::beginUpdate` does.
  using PersistKey = std::function<std::unique_ptr<KeychainUpdate>(const SecretBytes& key,
                                                                   std::function<void()> ended)>;

  /// Prefix of every envelope, and the additional authenticated data of its cipher.
  static constexpr std::string_view magic = "VNTL1";
  static constexpr std::size_t keySize = 32;

  /// Throws `invalidKey` unless `key` is exactly 32 bytes.
  explicit SecureStorage(SecretBytes key, PersistKey persistKey = {});

  /// With the key of the user's keychain, made there if an unlocked keychain has none and
  /// `mayCreate` agrees. Throws `SecureStorageError`. `keychain` outlives the result.
  [[nodiscard]] static std::shared_ptr<SecureStorage> production(
      Keychain& keychain, const std::function<bool()>& mayCreate = {});
  /// With a random key that dies with the process.
  [[nodiscard]] static std::shared_ptr<SecureStorage> ephemeral();

  /// Whether these bytes claim to be an envelope.
  [[nodiscard]] static bool isSealed(ByteView bytes);

  /// An envelope under a fresh random nonce: 33 bytes larger than the plaintext. Any thread.
  [[nodiscard]] Bytes seal(ByteView plaintext) const;

  /// Throws `SecureStorageError` without the magic, `CipherError` when the envelope is cut,
  /// changed or sealed under another key. Any thread.
  [[nodiscard]] Bytes open(ByteView envelope) const;

  /// Begins to replace the key by a new random one; nothing happens while that is under way. When
  /// the keychain has answered, `ended` is called on the main queue, and the rotation is to be
  /// settled; where there is nothing to wait for, it is settled when this returns. Main thread.
  void beginRotation(std::function<void()> ended);
  [[nodiscard]] bool isRotating() const { return rotation_ != nullptr; }
  /// Ends the rotation, at once. True: the keychain has the new key, which is in use from now on,
  /// and what was sealed before cannot be opened any more. False: it has refused it or not answered
  /// yet, and the old key stays, here and there. Main thread.
  bool settleRotation();

 private:
  struct Rotation {
    std::shared_ptr<const SecretBytes> key;
    std::unique_ptr<KeychainUpdate> update;
  };

  void use(std::shared_ptr<const SecretBytes> key);
  [[nodiscard]] std::shared_ptr<const SecretBytes> key() const;

  mutable std::mutex keyMutex_;
  std::shared_ptr<const SecretBytes> key_;
  PersistKey persistKey_;
  std::unique_ptr<Rotation> rotation_;  // while one is under way
};

}  // namespace vantorel
