// SPDX-License-Identifier: MIT
#include "text/Alphanumeric.h"

#include <unicode/uchar.h>
#include <unicode/utf8.h>

#include <cstdint>

namespace vantorel {

bool isOneAlphanumericScalar(std::string_view text) {
  if (text.empty() || text.size() > U8_MAX_LENGTH) return false;
  const auto* bytes = reinterpret_cast<const std::uint8_t*>(text.data());
  const auto length = static_cast<std::int32_t>(text.size());
  std::int32_t offset = 0;
  UChar32 scalar = 0;
  U8_NEXT(bytes, offset, length, scalar);
  if (scalar < 0 || offset != length) return false;
  return (U_GET_GC_MASK(scalar) & (U_GC_L_MASK | U_GC_M_MASK | U_GC_N_MASK)) != 0;
}

}  // namespace vantorel
