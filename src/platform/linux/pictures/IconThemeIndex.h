// SPDX-License-Identifier: MIT
#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace vantorel {

enum class IconSizing { fixed, scalable, threshold };

/// One directory of an icon theme, and the sizes that its pictures are for, in points that `scale`
/// pixels make up.
struct IconDirectory {
  std::string path;  // below the theme's own directory
  int size = 0;
  int scale = 1;
  int minimum = 0;    // when scalable
  int maximum = 0;    // when scalable
  int threshold = 2;  // how far from `size` is still right, when that is the rule
  IconSizing sizing = IconSizing::threshold;
  friend bool operator==(const IconDirectory&, const IconDirectory&) = default;
};

/// Whether the directory's pictures are meant for that size at that scale.
[[nodiscard]] bool isMeantFor(const IconDirectory& directory, int size, int scale);

/// How many pixels its pictures are away from that size at that scale.
[[nodiscard]] int pixelsApart(const IconDirectory& directory, int size, int scale);

/// What an icon theme says about itself.
struct IconThemeIndex {
  std::vector<std::string> inherits;  // themes to look in next, in this order
  std::vector<IconDirectory> directories;
};

/// Whether it can be a theme's name: one part of a path, not hidden.
[[nodiscard]] bool isIconThemeName(std::string_view name);

/// Reads an "index.theme". Directories without a proper size, or that lie outside the theme, are
/// left out, and so is what exceeds any theme there is. Absent when it is no theme's index.
[[nodiscard]] std::optional<IconThemeIndex> parseIconThemeIndex(std::string_view text);

}  // namespace vantorel
