// SPDX-License-Identifier: MIT
#include "platform/linux/shortcuts/OwnCommand.h"

#include <sstream>
#include <system_error>

namespace vantorel {

std::string ownCommand(const std::filesystem::path& program, const EnvironmentLookup& environment) {
  std::istringstream directories(environment("PATH").value_or(std::string()));
  std::error_code error;
  for (std::string directory; std::getline(directories, directory, ':');) {
    const auto found = std::filesystem::path(directory) / program.filename();
    if (!std::filesystem::exists(found, error)) continue;
    // The first one is what a shell would start.
    if (std::filesystem::equivalent(found, program, error)) return program.filename().string();
    break;
  }
  return program.string();
}

std::string desktopName(const EnvironmentLookup& environment) {
  auto name = environment("XDG_CURRENT_DESKTOP").value_or(std::string());
  // Started by hand, this one names itself nowhere else.
  if (name.empty() && environment("SWAYSOCK")) return "sway";
  return name;
}

}  // namespace vantorel
