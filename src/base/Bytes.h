// SPDX-License-Identifier: MIT
#pragma once

#include <cstddef>
#include <cstdint>
#include <span>
#include <string_view>
#include <vector>

namespace vantorel {

using Bytes = std::vector<std::byte>;
using ByteView = std::span<const std::byte>;

inline ByteView bytesOf(std::string_view text) {
  return std::as_bytes(std::span(text.data(), text.size()));
}

inline std::string_view textOf(ByteView bytes) {
  return {reinterpret_cast<const char*>(bytes.data()), bytes.size()};
}

}  // namespace vantorel
