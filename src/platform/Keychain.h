// SPDX-License-Identifier: MIT
#pragma once

#include <cstdint>
#include <functional>
#include <memory>
#include <optional>
#include <string>

#include "base/SecretBytes.h"

namespace vantorel {

/// How a keychain answers: a number of the one desktop whose names the core speaks. An
/// implementation maps its own failures to the ones below; messages and logs show the number.
using OSStatus = std::int32_t;

namespace keychainStatus {
inline constexpr OSStatus success = 0;
inline constexpr OSStatus userCanceled = -128;    // locked, and the user did not unlock it
inline constexpr OSStatus notAvailable = -25291;  // no keychain, or it does not answer
inline constexpr OSStatus duplicateItem = -25299;
inline constexpr OSStatus itemNotFound = -25300;        // only ever said of an unlocked keychain
inline constexpr OSStatus missingEntitlement = -34018;  // this kind of keychain is not for us
}  // namespace keychainStatus

/// What identifies one generic-password item.
struct KeychainQuery {
  std::string service;
  std::string account;
  /// Asks for a second keychain, which only some desktops have; without it every operation answers
  /// `missingEntitlement`, and the caller turns to the login keychain.
  bool useDataProtectionKeychain = false;
};

/// When the item can be read, where a desktop lets a program choose. The Secret Service does not:
/// there it is ignored, and an item is as open as its collection.
enum class KeychainAccessibility { unspecified, afterFirstUnlockThisDeviceOnly };

/// What a new item is given beside its query.
struct KeychainAttributes {
  std::string label;
  KeychainAccessibility accessibility = KeychainAccessibility::unspecified;
};

struct KeychainResult {
  OSStatus status = keychainStatus::success;
  std::optional<SecretBytes> data;
};

/// A change of an item that is under way. Main thread.
class KeychainUpdate {
 public:
  /// Gives the change up unless it was settled.
  virtual ~KeychainUpdate() = default;

  /// Whether the keychain has answered.
  [[nodiscard]] virtual bool hasEnded() const = 0;
  /// The keychain's answer, at once and only once. One that has not come is not waited for: the
  /// change is given up, which is `notAvailable`, and the item keeps or gets back its old data.
  [[nodiscard]] virtual OSStatus settle() = 0;
};

/// The user's keychain. Main thread; answers within 5 seconds whatever the service does.
/// `itemNotFound` means that an unlocked keychain was searched and holds no such item: a locked,
/// silent or absent one must answer otherwise, since the caller creates a new key on it.
class Keychain {
 public:
  virtual ~Keychain() = default;

  /// The one matching item's data, byte for byte.
  [[nodiscard]] virtual KeychainResult copyMatching(const KeychainQuery& query) = 0;

  /// Adds an item; `duplicateItem` when one matches already, which is left as it is.
  [[nodiscard]] virtual OSStatus add(const KeychainQuery& query,
                                     const KeychainAttributes& attributes,
                                     const SecretBytes& data) = 0;

  /// Begins to replace the data of the matching item and returns at once; never adds one. `ended`
  /// is called on the main queue when the keychain has answered, or after 5 seconds, unless it has
  /// answered before this returns.
  [[nodiscard]] virtual std::unique_ptr<KeychainUpdate> beginUpdate(
      const KeychainQuery& query, const SecretBytes& data, std::function<void()> ended) = 0;
};

}  // namespace vantorel
