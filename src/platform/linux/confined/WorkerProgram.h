// SPDX-License-Identifier: MIT
#pragma once

#include <filesystem>
#include <string_view>

namespace vantorel {

/// A worker's program of that name as it lies beside this one, in a build or installed; else empty.
[[nodiscard]] std::filesystem::path workerProgram(std::string_view name);

}  // namespace vantorel
