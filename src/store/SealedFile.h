// SPDX-License-Identifier: MIT
#pragma once

#include <filesystem>
#include <optional>

#include "base/FileSystem.h"
#include "security/SecureStorage.h"

namespace vantorel {

/// The plaintext of an envelope; absent when it is none, is damaged, or belongs to another key.
[[nodiscard]] std::optional<Bytes> opened(const SecureStorage& storage, ByteView envelope);

/// Seals the bytes and puts them in the place of the file at `path` in one step. Any thread.
[[nodiscard]] bool writeSealed(FileSystem& files, const std::filesystem::path& path,
                               const SecureStorage& storage, ByteView plaintext);

}  // namespace vantorel
