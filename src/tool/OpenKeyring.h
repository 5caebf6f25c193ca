// SPDX-License-Identifier: MIT
#pragma once

#include <memory>
#include <optional>
#include <string>

#include "platform/Dispatch.h"
#include "platform/linux/keyring/SecretServiceKeychain.h"
#include "security/SecureStorage.h"

namespace vantorel {

/// The user's keyring for a process that nobody waits for a question of: it is used when it is
/// open, and otherwise left alone.
class OpenKeyring {
 public:
  /// Waits for the service, which the bus may have to start, but no longer than some seconds.
  /// `dispatch` outlives this.
  explicit OpenKeyring(Dispatch& dispatch);

  /// Why it cannot be used and what to do about it, in one line; empty when it is open.
  [[nodiscard]] const std::string& trouble() const { return trouble_; }
  [[nodiscard]] Keychain& keychain() { return keychain_; }

  /// What opens the history; absent without its key, for which `trouble` has the reason then. No
  /// other process can look into this one from here on.
  [[nodiscard]] std::shared_ptr<SecureStorage> storage();

 private:
  std::string trouble_;
  SecretServiceKeychain keychain_;
};

}  // namespace vantorel
