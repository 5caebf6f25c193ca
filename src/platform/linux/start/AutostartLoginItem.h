// SPDX-License-Identifier: MIT
#pragma once

#include <filesystem>
#include <optional>
#include <string>
#include <vector>

#include "base/FileSystem.h"
#include "platform/LoginItem.h"
#include "platform/linux/start/AutostartEntry.h"
#include "platform/linux/xdg/XdgDirectories.h"

namespace vantorel {

/// Where autostart entries are found, and who heeds them.
struct AutostartPlaces {
  std::optional<std::filesystem::path> own;    // the user's directory
  std::vector<std::filesystem::path> systems;  // the machine's, the most important first
  AutostartSurroundings surroundings;

  [[nodiscard]] static AutostartPlaces fromEnvironment(const EnvironmentLookup& lookup);
};

/// An entry of this program's name in the user's autostart directory, which overrides the
/// machine's. Switched off it stays there, hidden, with all that the user or a desktop wrote into
/// it. A user's entry that cannot be read is never replaced.
class AutostartLoginItem : public LoginItem {
 public:
  static constexpr std::uint64_t maximumFileSize = 64U << 10;

  /// `program` is what a login will start. `files` outlives this.
  AutostartLoginItem(FileSystem& files, AutostartPlaces places, std::filesystem::path program);

  [[nodiscard]] Status status() override;
  [[nodiscard]] bool registerItem() override;
  [[nodiscard]] bool unregisterItem() override;
  /// Only an entry that is the user's own, and as older versions wrote it.
  [[nodiscard]] bool renewItem() override;

 private:
  [[nodiscard]] std::optional<std::string> read(const std::filesystem::path& path);
  /// What counts when the user has no entry; absent when nobody has one.
  [[nodiscard]] std::optional<std::string> machinesEntry();
  [[nodiscard]] bool write(const AutostartEntry& entry);

  FileSystem& files_;
  AutostartPlaces places_;
  std::filesystem::path program_;
  std::filesystem::path path_;  // empty without a directory for it
};

/// The file of the program that runs in this process, as it was installed.
[[nodiscard]] std::filesystem::path ownProgramPath();

}  // namespace vantorel
