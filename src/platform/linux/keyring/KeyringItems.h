// SPDX-License-Identifier: MIT
#pragma once

#include <functional>
#include <string>

#include "platform/linux/keyring/KeyringService.h"

namespace vantorel {

// The keychain's operations in single steps of a keyring service, on its default collection. The
// one rule above all: "not found" is said only of a collection that was the default one and
// unlocked after it had been searched, since a new key is made on that word.

[[nodiscard]] KeychainResult findKeyringItem(KeyringService& service, const KeychainQuery& query);

/// Never leaves a second item: of two programs that add at the same moment, the one that finds the
/// other's item takes its own back and answers `duplicateItem`. Nothing is added to the collection
/// that lives only as long as the user's session.
[[nodiscard]] OSStatus addKeyringItem(KeyringService& service, const KeychainQuery& query,
                                      const std::string& label, const SecretBytes& secret);

/// `accepted` is called once the service has taken the new secret: false says that the caller has
/// given up meanwhile. Then, and when the service did not answer, the old secret is sent after the
/// new one, so that an update which was reported as failed does not come true later.
[[nodiscard]] OSStatus updateKeyringItem(KeyringService& service, const KeychainQuery& query,
                                         const SecretBytes& secret,
                                         const std::function<bool()>& accepted);

}  // namespace vantorel
