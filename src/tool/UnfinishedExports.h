// SPDX-License-Identifier: MIT
#pragma once

#include <filesystem>

namespace vantorel {

/// Removes what exports that were killed have left in `directory`, in the clear. It has to have our
/// names throughout, to belong to this user, to be no link and held by no export that goes on;
/// anything else stays, and so does what cannot be removed.
void removeUnfinishedExports(const std::filesystem::path& directory);

}  // namespace vantorel
