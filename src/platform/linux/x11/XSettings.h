// SPDX-License-Identifier: MIT
#pragma once

#include <cstdint>
#include <map>
#include <string>
#include <variant>

#include "base/Bytes.h"

namespace vantorel {

using XSetting = std::variant<std::int32_t, std::string>;
using XSettings = std::map<std::string, XSetting, std::less<>>;

/// Numbers and texts of a settings manager's property; colours are left out. What follows a damaged
/// entry is not read.
[[nodiscard]] XSettings parseXSettings(ByteView bytes);

}  // namespace vantorel
