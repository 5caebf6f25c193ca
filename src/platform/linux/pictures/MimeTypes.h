#pragma once

#include <filesystem>
#include <map>
#include <string>
#include <string_view>
#include <vector>

#include "base/FileSystem.h"
#include "platform/linux/pictures/MimeGlobs.h"

namespace vantorel {

/// What a directory counts as.
inline constexpr std::string_view directoryType = "inode/directory";

/// The shared database of MIME types, as far as names of files and pictures of types go. Immutable,
/// for any thread.
class MimeTypes {
 public:
  using IconNames = std::map<std::string, std::string, std::less<>>;  // by type

  /// `icons`: what types' own icons are called when not like the type.
  MimeTypes(MimeGlobs globs, IconNames icons, IconNames genericIcons);

  /// Reads the database in `directories` ("mime", the most important first); where there is none,
  /// no name has a type. Scans a few files.
  [[nodiscard]] static MimeTypes read(FileSystem& files,
                                      const std::vector<std::filesystem::path>& directories);

  /// Empty when the name tells nothing.
  [[nodiscard]] std::string_view typeOf(const std::string& fileName) const;

  /// The icons that may stand for the type, the best first, down to a plain document.
  [[nodiscard]] std::vector<std::string> iconsOf(std::string_view type) const;

 private:
  MimeGlobs globs_;
  IconNames icons_;
  IconNames genericIcons_;
};

}  // namespace vantorel
