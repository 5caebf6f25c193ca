// SPDX-License-Identifier: MIT
#pragma once

#include <cstddef>
#include <span>
#include <string_view>

#include "base/JsonEvents.h"

namespace vantorel {

// Both tell `events` of the one JSON value that `text` is. False when it is none, when more stands
// behind it, or when `events` refused something. They never recurse; what `events` throws passes.

/// Whether what is no UTF-8 is refused. Where every text is looked at anyhow it need not be.
enum class JsonEncoding { checked, unchecked };

/// Unescapes within `text`, so that no other copy of it is made: what is told lasts as long as it.
[[nodiscard]] bool readJsonWithin(std::span<std::byte> text, JsonEncoding encoding,
                                  JsonEvents& events);

/// Leaves `text` as it is, and numbers unread, which may be of any length: each is told as the real
/// number 0. What is told lasts for the call. `position` is kept at how many bytes were read: those
/// up to the end of a key or of a value, but not yet the bracket that ends a container. The
/// encoding is checked.
[[nodiscard]] bool readJsonInPieces(std::string_view text, std::size_t& position,
                                    JsonEvents& events);

}  // namespace vantorel
