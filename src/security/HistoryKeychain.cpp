// SPDX-License-Identifier: MIT
#include "security/HistoryKeychain.h"

#include <array>
#include <optional>
#include <string>
#include <utility>

#include "base/RandomBytes.h"
#include "security/SecureStorageError.h"

namespace vantorel::HistoryKeychain {
namespace {

/// This kind of keychain cannot be used by this process at all.
bool isUnusable(OSStatus status) {
  return status == keychainStatus::notAvailable || status == keychainStatus::missingEntitlement;
}

std::optional<Material> find(Keychain& keychain) {
  auto protectedItem = read(keychain, Backend::dataProtection);
  if (protectedItem.status == keychainStatus::success && protectedItem.data) {
    return Material{std::move(*protectedItem.data), Backend::dataProtection};
  }
  if (protectedItem.status != keychainStatus::itemNotFound && !isUnusable(protectedItem.status)) {
    throw SecureStorageError::keychain(protectedItem.status);
  }

  auto loginItem = read(keychain, Backend::loginKeychain);
  if (loginItem.status == keychainStatus::success && loginItem.data) {
    return Material{std::move(*loginItem.data), Backend::loginKeychain};
  }
  if (loginItem.status != keychainStatus::itemNotFound) {
    throw SecureStorageError::keychain(loginItem.status);
  }
  return std::nullopt;
}

KeychainAttributes newItemAttributes(Backend backend) {
  return {std::string(label), backend == Backend::dataProtection
                                  ? KeychainAccessibility::afterFirstUnlockThisDeviceOnly
                                  : KeychainAccessibility::unspecified};
}

/// Absent when an item has turned up meanwhile: another process was faster.
std::optional<Material> create(Keychain& keychain) {
  auto key = randomSecret(keySize);
  for (const Backend backend : {Backend::dataProtection, Backend::loginKeychain}) {
    const auto status = keychain.add(baseQuery(backend), newItemAttributes(backend), key);
    if (status == keychainStatus::success) return Material{std::move(key), backend};
    if (status == keychainStatus::duplicateItem) return std::nullopt;
    const bool mayTryNext = backend == Backend::dataProtection && isUnusable(status);
    if (!mayTryNext) throw SecureStorageError::keychain(status);
  }
  throw SecureStorageError::keychain(keychainStatus::notAvailable);
}

}  // namespace

Material loadOrCreate(Keychain& keychain, const MayCreate& mayCreate) {
  for (;;) {
    if (auto found = find(keychain)) return std::move(*found);
    if (mayCreate && !mayCreate()) throw SecureStorageError::keychain(keychainStatus::itemNotFound);
    if (auto created = create(keychain)) return std::move(*created);
  }
}

KeychainQuery baseQuery(Backend backend) {
  return {std::string(service), std::string(account), backend == Backend::dataProtection};
}

KeychainResult read(Keychain& keychain, Backend backend) {
  return keychain.copyMatching(baseQuery(backend));
}

std::unique_ptr<KeychainUpdate> beginReplacing(Keychain& keychain, const SecretBytes& key,
                                               Backend backend, std::function<void()> ended) {
  if (key.size() != keySize) throw SecureStorageError(SecureStorageError::Kind::invalidKey);
  return keychain.beginUpdate(baseQuery(backend), key, std::move(ended));
}

}  // namespace vantorel::HistoryKeychain
