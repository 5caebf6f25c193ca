// SPDX-License-Identifier: MIT
#pragma once

#include <filesystem>
#include <string>

#include "platform/linux/xdg/XdgDirectories.h"

namespace vantorel {

/// How a configuration of the desktop starts `program`: by its name alone where $PATH leads to that
/// very file, else by its path. Looks at the directories of $PATH.
[[nodiscard]] std::string ownCommand(const std::filesystem::path& program,
                                     const EnvironmentLookup& environment);

/// What the session calls its desktop; empty when it does not say.
[[nodiscard]] std::string desktopName(const EnvironmentLookup& environment);

}  // namespace vantorel
