// SPDX-License-Identifier: MIT
#pragma once

#include <QString>
#include <string_view>

namespace vantorel {

/// Where the resource with that name and extension would be; it need not exist.
[[nodiscard]] QString bundledResource(std::string_view name, std::string_view extension);

}  // namespace vantorel
