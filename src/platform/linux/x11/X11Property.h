// SPDX-License-Identifier: MIT
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "base/Bytes.h"
#include "platform/linux/x11/X11Connection.h"

namespace vantorel {

/// The value of a window's property. Of format 16 and 32 the bytes are in this machine's order.
struct X11Property {
  xcb_atom_t type = XCB_ATOM_NONE;
  std::uint8_t format = 0;  // 8, 16 or 32 bits for each element
  Bytes bytes;

  /// The elements of a format 32 value; empty for other formats.
  [[nodiscard]] std::vector<std::uint32_t> values32() const;
};

enum class AfterReading { keep, remove };
enum class PropertyOutcome { read, absent, tooLarge };

struct PropertyReading {
  PropertyOutcome outcome = PropertyOutcome::absent;
  X11Property property;  // filled when read
};

/// Reads a whole property of any type, up to `maximumBytes`. What is larger is not transferred.
/// With `remove` the property is deleted, a too large one as well. A window that is gone, and a
/// lost connection, answer `absent`. Waits for the server alone. Any thread.
[[nodiscard]] PropertyReading readProperty(const X11Connection& connection, xcb_window_t window,
                                           xcb_atom_t property, std::size_t maximumBytes,
                                           AfterReading after = AfterReading::keep);

/// A property of format 8 as it stands; absent when it is not there, of another format or too
/// large.
[[nodiscard]] std::optional<std::string> stringProperty(const X11Connection& connection,
                                                        xcb_window_t window, xcb_atom_t property,
                                                        std::size_t maximumBytes = 65536);

/// A property of format 32 (cardinals, atoms, windows); empty when it is not there.
[[nodiscard]] std::vector<std::uint32_t> values32Property(const X11Connection& connection,
                                                          xcb_window_t window, xcb_atom_t property,
                                                          std::size_t maximumBytes = 65536);

}  // namespace vantorel
