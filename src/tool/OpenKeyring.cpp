// SPDX-License-Identifier: MIT
#include "tool/OpenKeyring.h"

#include <exception>
#include <utility>

#include "platform/linux/keyring/KeyringState.h"
#include "platform/linux/start/ClosedProcess.h"
#include "security/HistoryKeychain.h"

namespace vantorel {
namespace {

std::string troubleOf(DesktopFacts::Keyring keyring) {
  switch (keyring) {
    case DesktopFacts::Keyring::unlocked:
      return {};
    case DesktopFacts::Keyring::locked:
      return "the keyring is locked. Unlock it, as a log-in to the desktop does, and try again.";
    case DesktopFacts::Keyring::noCollection:
      return "the keyring has no default collection. Start Vantorel, which offers to make one.";
    case DesktopFacts::Keyring::absent:
      break;
  }
  return "no keyring answers here. 'vantorel --check' says what is missing.";
}

}  // namespace

OpenKeyring::OpenKeyring(Dispatch& dispatch)
    : trouble_(troubleOf(keyringState(SecretServiceKeychain::timeLimit))), keychain_(dispatch) {
  keychain_.onSecretAhead(closeProcess);
}

std::shared_ptr<SecureStorage> OpenKeyring::storage() {
  if (!trouble_.empty()) return nullptr;
  auto found = HistoryKeychain::read(keychain_, HistoryKeychain::Backend::loginKeychain);
  if (found.status == keychainStatus::itemNotFound) {
    trouble_ = "the keyring does not have the key of this history.";
  } else if (found.status != keychainStatus::success || !found.data) {
    trouble_ = "the keyring did not give the key of the history. Try again.";
  }
  if (!trouble_.empty()) return nullptr;
  try {
    return std::make_shared<SecureStorage>(std::move(*found.data));
  } catch (const std::exception&) {
    trouble_ = "what the keyring has for this history is no key.";
    return nullptr;
  }
}

}  // namespace vantorel
