#pragma once

#include <functional>
#include <memory>
#include <set>

#include "platform/linux/keyring/KeyringBus.h"
#include "platform/linux/keyring/KeyringPrompts.h"
#include "platform/linux/keyring/KeyringService.h"

namespace vantorel {

class KeyringSession;

/// The user's keyring by the desktop's Secret Service protocol, call by call: libsecret's simple
/// functions do not tell a locked keyring from one without the item, and wait without a limit. Only
/// the encryption of a session is taken from it. On the keyring's thread.
class SecretServiceBus : public KeyringService {
 public:
  /// `unlockedLater` is called whenever something may have been unlocked that was found locked
  /// before: by the user's late answer, or by another program.
  SecretServiceBus(GlibThread& thread, std::function<void()> unlockedLater);
  ~SecretServiceBus() override;

  /// Begins a piece of work; every step of it ends at `deadline`.
  void begin(Deadline deadline);
  void setDeadline(Deadline deadline) { bus_.setDeadline(deadline); }

  [[nodiscard]] KeyringAnswer<ObjectPath> collectionNamed(const std::string& alias) override;
  [[nodiscard]] KeyringAnswer<bool> isLocked(const ObjectPath& collection) override;
  [[nodiscard]] KeyringAnswer<UnlockOutcome> unlock(const ObjectPath& object) override;
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
  void watchForUnlock();
  void watch(const char* interface, const char* signal, const char* argument);
  void endWatch();
  [[nodiscard]] KeyringAnswer<UnlockOutcome> ask(const ObjectPath& prompt);
  [[nodiscard]] KeyringAnswer<ObjectPath> createdByPrompt(const ObjectPath& prompt);
  [[nodiscard]] std::uint64_t creationTime(const ObjectPath& item);

  KeyringBus bus_;
  std::function<void()> unlockedLater_;
  KeyringPrompts prompts_;
  std::set<ObjectPath> asked_;
  std::unique_ptr<KeyringSession> session_;  // of the current piece of work
  ObjectPointer<GDBusConnection> watched_;
  std::vector<guint> watches_;
};

}  // namespace vantorel
