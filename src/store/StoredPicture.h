// SPDX-License-Identifier: MIT
#pragma once

#include <optional>

#include "security/SecureStorage.h"
#include "store/AssetFolder.h"
#include "store/ClipItem.h"

namespace vantorel {

/// The encoded picture of an entry; absent when its file is missing or damaged, is sealed under
/// another key or without any (`storage` may be null), or holds another picture than the entry was
/// made for. A file of an older history that is not sealed is taken for what the entry's hash says
/// it is, and sealed. Any thread.
[[nodiscard]] std::optional<Bytes> storedPicture(const AssetFolder& assets,
                                                 const SecureStorage* storage,
                                                 const ClipItem& item);

}  // namespace vantorel
