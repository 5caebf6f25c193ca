// SPDX-License-Identifier: MIT
#pragma once

#include <filesystem>
#include <system_error>

namespace vantorel {

/// Sets the attribute by which backup programs leave a directory out. A file system that has no
/// such attribute, or does not let us set it, counts as success: there is nothing to be done
/// about it. An error means that the directory cannot be opened, or its attributes not be written
/// for another reason. Any thread.
[[nodiscard]] std::error_code setNoDump(const std::filesystem::path& directory);

}  // namespace vantorel
