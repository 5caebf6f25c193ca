// SPDX-License-Identifier: MIT
#pragma once

#include <optional>
#include <string>

namespace vantorel {

/// The application that a capture is attributed to; empty when it is nobody's.
struct SourceApp {
  std::optional<std::string> name;  // localized
  std::optional<std::string> bundleIdentifier;
  friend bool operator==(const SourceApp&, const SourceApp&) = default;
};

}  // namespace vantorel
