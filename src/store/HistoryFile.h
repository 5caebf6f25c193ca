// SPDX-License-Identifier: MIT
#pragma once

#include <cstdint>
#include <optional>
#include <vector>

#include "base/Bytes.h"
#include "base/JsonWriter.h"
#include "store/ClipItem.h"

namespace vantorel {

/// No history that was ever written is larger; what claims to be is neither read nor written.
inline constexpr std::uint64_t maximumHistoryBytes = std::uint64_t{1} << 30U;

/// The history as JSON: an array of objects, keys in alphabetical order, indented, dates in
/// ISO 8601 with whole seconds, bytes in Base64. Always readable again: bytes that are not UTF-8
/// (a file's name may be any bytes) are written as U+FFFD. It is everything that was copied, so its
/// memory is overwritten when it goes.
class EncodedHistory {
 public:
  explicit EncodedHistory(const std::vector<ClipItem>& items);

  [[nodiscard]] ByteView view() const { return bytesOf(json_.view()); }

 private:
  JsonWriter json_;
};

/// Reads what an `EncodedHistory` says, and any JSON of that shape; absent as soon as anything in
/// it is not as it should be, since a history is read whole or not at all. Of a key that is given
/// twice the last value counts. Takes the buffer because parsing works inside it, and overwrites it
/// afterwards; neither depth
/// nor size of the input can exhaust stack or memory.
[[nodiscard]] std::optional<std::vector<ClipItem>> decodeHistory(Bytes json);

}  // namespace vantorel
