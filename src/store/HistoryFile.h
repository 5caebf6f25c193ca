#pragma once

#include <filesystem>
#include <optional>
#include <vector>

#include "platform/FileSystem.h"
#include "store/ClipItem.h"

namespace vantorel {

/// The history as JSON: an array of objects, keys in alphabetical order, indented, dates in
/// ISO 8601 with whole seconds, bytes in Base64.
[[nodiscard]] Bytes encodeHistory(const std::vector<ClipItem>& items);

/// Reads what `encodeHistory` writes, and any JSON of that shape; absent as soon as anything in it
/// is not as it should be, since a history is read whole or not at all. Takes the buffer because
/// parsing works inside it; neither depth nor size of the input can exhaust stack or memory.
[[nodiscard]] std::optional<std::vector<ClipItem>> decodeHistory(Bytes json);

/// Puts `bytes` in the place of the file at `path` in one step, readable by its owner alone: a
/// reader finds the old file or the new one, also after a crash. Leaves no other file behind.
[[nodiscard]] FileSystem::Error writeAtomically(FileSystem& files,
                                                const std::filesystem::path& path, ByteView bytes);

}  // namespace vantorel
