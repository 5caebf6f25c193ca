// SPDX-License-Identifier: MIT
#pragma once

#include <functional>
#include <memory>
#include <set>

#include "platform/linux/keyring/KeyringBus.h"
#include "platform/linux/keyring/KeyringPrompts.h"
#include "platform/linux/keyring/KeyringService.h"
#include "platform/linux/keyring/KeyringWatch.h"

namespace vantorel {

class KeyringSession;

/// The user's keyring by the desktop's Secret Service protocol, call by call: libsecret's simple
/// functions do not tell a locked keyring from one without the item, and wait without a limit. Only
/// the encryption of a session is taken from it. On the keyring's thread.
class SecretServiceBus : public KeyringService {
 public:
  /// `heard` is called with what may let a lookup end otherwise than the last one did: from the
  /// first unlocking on that is asked for, or from `watch`, until `endWatch`.
  /// `secretAhead` is called before a secret is read.
  SecretServiceBus(GlibThread& thread, std::function<void(KeyringNews)> heard,
                   std::function<void()> secretAhead = {});
  ~SecretServiceBus() override;

  /// Begins a piece of work; every step of it ends at `deadline`.
  void begin(Deadline deadline);
  void setDeadline(Deadline deadline) { bus_.setDeadline(deadline); }

  /// The user wants to be asked, also for what has been asked for already: each question once more.
  /// Only the next piece of work may make a collection.
  void letAsk();

  /// To be told when the service answers, or has a default collection, or has unlocked it.
  void watch() { watch_.ask(); }
  /// To be told of changes alone, by a service that has answered.
  void listen() { watch_.listen(); }
  [[nodiscard]] bool isListening() const { return watch_.isListening(); }
  void endWatch() { watch_.end(); }

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

 private:
  [[nodiscard]] KeyringSession* session();
  [[nodiscard]] KeyringAnswer<UnlockOutcome> ask(const ObjectPath& prompt);
  [[nodiscard]] KeyringAnswer<ObjectPath> createdByPrompt(const ObjectPath& prompt);
  [[nodiscard]] std::uint64_t creationTime(const ObjectPath& item);

  KeyringBus bus_;
  std::function<void()> secretAhead_;
  KeyringWatch watch_;
  KeyringPrompts prompts_;
  std::set<ObjectPath> asked_;
  bool isLet_ = false;                       // make a collection, by the next piece of work
  bool mayMakeCollection_ = false;           // the current one
  std::unique_ptr<KeyringSession> session_;  // of the current piece of work
};

}  // namespace vantorel
