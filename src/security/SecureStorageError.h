// SPDX-License-Identifier: MIT
#pragma once

#include <stdexcept>

#include "base/CipherError.h"
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

}  // namespace vantorel
