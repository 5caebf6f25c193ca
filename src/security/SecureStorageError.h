#pragma once

#include <stdexcept>

#include "platform/Keychain.h"

namespace vantorel {

class SecureStorageError : public std::runtime_error {
 public:
  enum class Kind {
    keychain,           // a keychain call failed, see `status()`
    invalidCiphertext,  // no envelope
    invalidKey,         // key material that is not exactly 32 bytes
  };

  explicit SecureStorageError(Kind kind, OSStatus status = keychainStatus::success);
  [[nodiscard]] static SecureStorageError keychain(OSStatus status) {
    return SecureStorageError(Kind::keychain, status);
  }

  [[nodiscard]] Kind kind() const { return kind_; }
  [[nodiscard]] OSStatus status() const { return status_; }

 private:
  Kind kind_;
  OSStatus status_;
};

/// The cipher refused: too short for nonce and tag, or not authentic under this key.
class CipherError : public std::runtime_error {
 public:
  using std::runtime_error::runtime_error;
};

}  // namespace vantorel
