// SPDX-License-Identifier: MIT
#pragma once

#include <cstdint>
#include <optional>
#include <string>

namespace vantorel {

/// What a portal told of the user's settings, as far as it did.
struct PortalAnswers {
  /// What it is asked for.
  enum class Extent { colors, all };

  std::optional<std::uint32_t> scheme;
  std::optional<std::uint32_t> contrast;
  std::optional<bool> animations;
  std::optional<std::string> theme;
  std::optional<std::string> iconTheme;
};

}  // namespace vantorel
