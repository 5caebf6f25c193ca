// SPDX-License-Identifier: MIT
#pragma once

#include <functional>
#include <memory>
#include <string_view>

#include "base/SecretBytes.h"
#include "platform/Keychain.h"

/// Keeps the history's key as one item of the user's keychain. Main thread.
namespace vantorel::HistoryKeychain {

inline constexpr std::string_view service = "com.vantorel.mvp.history-encryption";
inline constexpr std::string_view account = "history-key-v1";
inline constexpr std::string_view label = "Vantorel local history encryption";
inline constexpr std::size_t keySize = 32;

/// In the order in which they are preferred.
enum class Backend { dataProtection, loginKeychain };

struct Material {
  SecretBytes data;
  Backend backend = Backend::dataProtection;
};

/// Whether there may be a new key: asked once none was found.
using MayCreate = std::function<bool()>;

/// The key where it is kept, or a new random one that the keychain has taken. A new one is made
/// only when no backend that can be asked has any; a backend that holds the key keeps it. Does not
/// look at the length of what it finds. Throws `SecureStorageError`: with `itemNotFound` when there
/// is none and there may not be a new one.
[[nodiscard]] Material loadOrCreate(Keychain& keychain, const MayCreate& mayCreate = {});

/// What identifies the item in that backend.
[[nodiscard]] KeychainQuery baseQuery(Backend backend);

/// The item's bytes, if any, and the keychain's status.
[[nodiscard]] KeychainResult read(Keychain& keychain, Backend backend);

/// Begins to overwrite the stored key, which must exist: see `Keychain::beginUpdate`. Throws
/// `invalidKey` for anything but 32 bytes.
[[nodiscard]] std::unique_ptr<KeychainUpdate> beginReplacing(Keychain& keychain,
                                                             const SecretBytes& key,
                                                             Backend backend,
                                                             std::function<void()> ended);

}  // namespace vantorel::HistoryKeychain
