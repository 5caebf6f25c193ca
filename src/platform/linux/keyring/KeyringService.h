// SPDX-License-Identifier: MIT
#pragma once

#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "platform/Keychain.h"

namespace vantorel {

/// What a keyring service calls its objects: collections and items.
using ObjectPath = std::string;

/// noAnswer: the service is absent, silent, or answered with an error that says nothing about
/// locks.
enum class KeyringFailure { noAnswer, locked };

template <class Value>
class KeyringAnswer {
 public:
  // NOLINTNEXTLINE(google-explicit-constructor): an answer is its value
  KeyringAnswer(Value value) : value_(std::move(value)) {}
  // NOLINTNEXTLINE(google-explicit-constructor): or its failure
  KeyringAnswer(KeyringFailure failure) : failure_(failure) {}

  explicit operator bool() const { return value_.has_value(); }
  Value& operator*() { return *value_; }
  const Value& operator*() const { return *value_; }
  Value* operator->() { return &*value_; }
  const Value* operator->() const { return &*value_; }
  [[nodiscard]] KeyringFailure failure() const { return failure_; }

 private:
  std::optional<Value> value_;
  KeyringFailure failure_ = KeyringFailure::noAnswer;
};

struct Done {};

/// refused: the user said no, or there is nobody to ask. asking: the user has not answered yet.
enum class UnlockOutcome { unlocked, refused, asking };

/// The single steps that a keyring service offers. Each asks the service afresh, nothing is
/// remembered. On the keyring's thread; every step ends within the time its caller has set.
class KeyringService {
 public:
  virtual ~KeyringService() = default;

  /// The collection that an alias such as "default" names; empty when it names none.
  [[nodiscard]] virtual KeyringAnswer<ObjectPath> collectionNamed(const std::string& alias) = 0;
  [[nodiscard]] virtual KeyringAnswer<bool> isLocked(const ObjectPath& collection) = 0;
  /// Unlocks a collection or an item, with the user's help where needed. The user is asked once for
  /// each object; what is asked for again is refused.
  [[nodiscard]] virtual KeyringAnswer<UnlockOutcome> unlock(const ObjectPath& object) = 0;

  /// Makes a collection that is the default one from then on, with the user's help where needed.
  /// Refused unless the user wants to be asked.
  [[nodiscard]] virtual KeyringAnswer<UnlockOutcome> makeDefaultCollection() = 0;

  /// The collection's items with that service and account, the oldest first. A locked collection
  /// may answer with less than it holds.
  [[nodiscard]] virtual KeyringAnswer<std::vector<ObjectPath>> search(
      const ObjectPath& collection, const KeychainQuery& query) = 0;
  [[nodiscard]] virtual KeyringAnswer<SecretBytes> secret(const ObjectPath& item) = 0;

  /// Adds an item beside any that are there.
  [[nodiscard]] virtual KeyringAnswer<ObjectPath> create(const ObjectPath& collection,
                                                         const KeychainQuery& query,
                                                         const std::string& label,
                                                         const SecretBytes& secret) = 0;
  /// Replaces the secret alone.
  [[nodiscard]] virtual KeyringAnswer<Done> replaceSecret(const ObjectPath& item,
                                                          const SecretBytes& secret) = 0;
  /// As `replaceSecret`, but only sends the request and does not wait for an answer, also when the
  /// time is up: the service will do it after everything that it was asked before.
  virtual void sendSecret(const ObjectPath& item, const SecretBytes& secret) = 0;
  [[nodiscard]] virtual KeyringAnswer<Done> remove(const ObjectPath& item) = 0;
};

}  // namespace vantorel
