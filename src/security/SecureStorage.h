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
/// while the main thread rotates it.
class SecureStorage {
 public:
  /// Stores a new key; throws when it cannot, and the old key then stays.
  using PersistKey = std::function<void(const SecretBytes& key)>;

  /// Prefix of every envelope, and the additional authenticated data of its cipher.
  static constexpr std::string_view magic = "VNTL1";
  static constexpr std::size_t keySize = 32;

  /// Throws `invalidKey` unless `key` is exactly 32 bytes.
  explicit SecureStorage(SecretBytes key, PersistKey persistKey = {});

  /// With the key of the user's keychain, made there if an unlocked keychain has none. Throws
  /// `SecureStorageError`. `keychain` outlives the result.
  [[nodiscard]] static std::shared_ptr<SecureStorage> production(Keychain& keychain);
  /// With a random key that dies with the process.
  [[nodiscard]] static std::shared_ptr<SecureStorage> ephemeral();

  /// Whether these bytes claim to be an envelope.
  [[nodiscard]] static bool isSealed(ByteView bytes);

  /// An envelope under a fresh random nonce: 33 bytes larger than the plaintext. Any thread.
  [[nodiscard]] Bytes seal(ByteView plaintext) const;

  /// Throws `SecureStorageError` without the magic, `CipherError` when the envelope is cut,
  /// changed or sealed under another key. Any thread.
  [[nodiscard]] Bytes open(ByteView envelope) const;

  /// Replaces the key by a new random one, after the keychain has taken it; throws and keeps the
  /// old one otherwise. What was sealed before cannot be opened any more. Main thread.
  void rotateKey();

 private:
  [[nodiscard]] std::shared_ptr<const SecretBytes> key() const;

  mutable std::mutex keyMutex_;
  std::shared_ptr<const SecretBytes> key_;
  PersistKey persistKey_;
};

}  // namespace vantorel
