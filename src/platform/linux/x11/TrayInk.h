// SPDX-License-Identifier: MIT
#pragma once

#include <cstdint>
#include <optional>
#include <span>
#include <vector>

#include "platform/Bitmap.h"

namespace vantorel {

// Colours here are 0xRRGGBB.

/// For a background that nobody knows: as far from a light grey bar as from a dark grey one.
constexpr std::uint32_t inkAnywhere = 0x8d8d8d;

/// Nearly black or nearly white: what stands out from that background more.
[[nodiscard]] std::uint32_t inkOn(std::uint32_t background);

/// What pixels (0xAARRGGBB, multiplied by alpha) look like from afar. Absent where most of what is
/// seen there is seen through them.
[[nodiscard]] std::optional<std::uint32_t> backgroundOf(std::span<const std::uint32_t> pixels);

/// A template's shape in that colour, as pixels multiplied by alpha.
[[nodiscard]] std::vector<std::uint32_t> inked(const Bitmap& shape, std::uint32_t ink);

}  // namespace vantorel
