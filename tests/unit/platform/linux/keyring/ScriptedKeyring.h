// SPDX-License-Identifier: MIT
#pragma once

#include <functional>
#include <map>
#include <set>

#include "platform/linux/keyring/KeyringService.h"

namespace vantorel {

/// A keyring of one process whose every step the test can bend.
class ScriptedKeyring : public KeyringService {
 public:
  [[nodiscard]] KeyringAnswer<ObjectPath> collectionNamed(const std::string& alias) override;
  [[nodiscard]] KeyringAnswer<bool> isLocked(const ObjectPath& collection) override;
  [[nodiscard]] KeyringAnswer<UnlockOutcome> unlock(const ObjectPath& object) override;
  [[nodiscard]] KeyringAnswer<UnlockOutcome> makeDefaultCollection() override;
  [[nodiscard]] KeyringAnswer<std::vector<ObjectPath>> search(const ObjectPath& collection,
                                                              const KeychainQuery& query) override;
  [[nodiscard]] KeyringAnswer<SecretBytes> secret(const ObjectPath& item) override;
  [[nodiscard]] KeyringAnswer<ObjectPath> create(const ObjectPath& collection,
                                                 const KeychainQuery& query,
                                                 const std::string& label,
                                                 const SecretBytes& secret) override;
  [[nodiscard]] KeyringAnswer<Done> replaceSecret(const ObjectPath& item,
                                                  const SecretBytes& secret) override;
  void sendSecret(const ObjectPath& item, const SecretBytes& secret) override;
  [[nodiscard]] KeyringAnswer<Done> remove(const ObjectPath& item) override;

  // The test's side.

  enum class Step { collection, isLocked, unlock, search, secret, create, replace, remove };
  struct Item {
    std::string service;
    std::string account;
    std::string label;
    std::string secret;
  };

  std::map<std::string, ObjectPath> aliases{{"default", "/login"}, {"session", "/session"}};
  std::map<ObjectPath, Item> items;
  std::set<ObjectPath> locked;
  UnlockOutcome outcome = UnlockOutcome::refused;  // of each unlocking
  UnlockOutcome making = UnlockOutcome::refused;   // of a new default collection
  /// Steps that do not answer, the n-th time they are asked (from 1).
  std::map<Step, int> silentAt;
  /// Called before a step is done, with how often it has been asked.
  std::function<void(Step, int)> before;
  std::vector<Step> steps;
  int created = 0;

 private:
  [[nodiscard]] bool silent(Step step);
};

}  // namespace vantorel
