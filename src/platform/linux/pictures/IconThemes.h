// SPDX-License-Identifier: MIT
#pragma once

#include <filesystem>
#include <optional>
#include <string>
#include <vector>

#include "base/FileSystem.h"
#include "platform/linux/pictures/IconPlaces.h"
#include "platform/linux/pictures/IconThemeIndex.h"

namespace vantorel {

/// An icon theme with those it inherits from, as they were installed when they were read.
/// Immutable, for any thread; every look-up asks the disk. The toolkit's own look-up belongs to the
/// main thread, which must not wait for a disk.
class IconThemes {
 public:
  /// The theme called `name` comes first, then what it inherits from, then "hicolor", which every
  /// theme rests on, and last the themes that are most complete. `files` outlives this.
  IconThemes(FileSystem& files, const IconPlaces& places, const std::string& name);

  /// The file of the first of `names` that a theme has, in the size that is closest to `pixels`;
  /// themes come before names, as a picture in the user's style is better than the exact one in
  /// another. Then whatever lies outside of all themes. Absent when there is none.
  [[nodiscard]] std::optional<std::filesystem::path> find(const std::vector<std::string>& names,
                                                          int pixels) const;

  /// What changes when a theme is installed, removed or filled: whoever puts a picture into a
  /// theme touches the theme's own directory.
  [[nodiscard]] const std::vector<std::filesystem::path>& watched() const { return watched_; }

 private:
  struct Place {
    std::filesystem::path path;
    IconDirectory directory;
  };
  /// Those of its directories that are there: most of what an index lists is not.
  using Theme = std::vector<Place>;

  void add(const IconPlaces& places, const std::string& name);
  void read(const IconPlaces& places, const std::string& name, int depth);
  [[nodiscard]] std::optional<std::filesystem::path> findIn(const Theme& theme,
                                                            const std::vector<std::string>& names,
                                                            int pixels) const;
  [[nodiscard]] std::optional<std::filesystem::path> fileOf(const std::filesystem::path& directory,
                                                            const std::string& name) const;

  FileSystem& files_;
  std::vector<Theme> themes_;
  std::vector<std::string> seen_;  // names of themes that were looked for
  std::vector<std::filesystem::path> pictures_;
  std::vector<std::filesystem::path> watched_;
};

/// The names to look for when an application says that its icon is `icon`: some say the file's
/// suffix too. None when it is no name.
[[nodiscard]] std::vector<std::string> iconNamesOf(const std::string& icon);

}  // namespace vantorel
