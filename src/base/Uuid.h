// SPDX-License-Identifier: MIT
#pragma once

#include <array>
#include <compare>
#include <cstddef>
#include <cstdint>
#include <functional>
#include <optional>
#include <string>
#include <string_view>

namespace vantorel {

/// A 128-bit identifier. The toolkit's is out of reach here, below the core.
class Uuid {
 public:
  /// All zero.
  Uuid() = default;
  /// Random (version 4), from the system's generator.
  [[nodiscard]] static Uuid random();
  /// Reads the canonical form with hyphens, in either case.
  [[nodiscard]] static std::optional<Uuid> parse(std::string_view text);
  /// The canonical form with hyphens, in upper case.
  [[nodiscard]] std::string string() const;

  // NOLINTNEXTLINE(modernize-use-nullptr): the analyser takes the comparison's zero for a pointer
  friend auto operator<=>(const Uuid&, const Uuid&) = default;

 private:
  std::array<std::uint8_t, 16> bytes_{};
  friend struct std::hash<Uuid>;
};

}  // namespace vantorel

template <>
struct std::hash<vantorel::Uuid> {
  std::size_t operator()(const vantorel::Uuid& id) const noexcept;
};
