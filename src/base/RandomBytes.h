// SPDX-License-Identifier: MIT
#pragma once

#include <cstddef>
#include <span>

#include "base/SecretBytes.h"

namespace vantorel {

/// Fills `bytes` from the system's generator; throws `CipherError` when it has none. Any thread.
void fillWithRandom(std::span<std::byte> bytes);

/// As many random bytes, from the generator that is kept apart for keys.
[[nodiscard]] SecretBytes randomSecret(std::size_t size);

}  // namespace vantorel
