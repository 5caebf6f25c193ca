// SPDX-License-Identifier: MIT
#include "security/SecureStorageError.h"

#include <string>

namespace vantorel {
namespace {

std::string described(SecureStorageError::Kind kind, OSStatus status) {
  switch (kind) {
    case SecureStorageError::Kind::keychain:
      return "the keychain answered " + std::to_string(status);
    case SecureStorageError::Kind::invalidCiphertext:
      return "not a sealed envelope";
    case SecureStorageError::Kind::invalidKey:
      return "the key material is not 32 bytes long";
  }
  return "secure storage failed";
}

}  // namespace

SecureStorageError::SecureStorageError(Kind kind, OSStatus status)
    : std::runtime_error(described(kind, status)), kind_(kind), status_(status) {}

}  // namespace vantorel
