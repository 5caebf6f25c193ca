// SPDX-License-Identifier: MIT
#pragma once

#include <algorithm>
#include <cstddef>
#include <vector>

#include "platform/linux/textinpictures/reading/Pixels.h"

namespace vantorel {

/// Numbers that are gradually found to mean the same.
class DisjointSets {
 public:
  [[nodiscard]] int add() {
    parents_.push_back(static_cast<int>(parents_.size()));
    return parents_.back();
  }
  [[nodiscard]] int root(int number) {
    while (parent(number) != number) {
      parent(number) = parent(parent(number));
      number = parent(number);
    }
    return number;
  }
  void unite(int a, int b) {
    a = root(a);
    b = root(b);
    parent(std::max(a, b)) = std::min(a, b);
  }
  [[nodiscard]] std::size_t size() const { return parents_.size(); }

 private:
  int& parent(int number) { return parents_[static_cast<std::size_t>(number)]; }
  std::vector<int> parents_;
};

/// A set of pixels that hang together.
struct PixelGroup {
  PixelBox box;
  int count = 0;
};

struct PixelGroups {
  static constexpr int none = -1;
  /// For each pixel the group it belongs to.
  std::vector<int> groupOf;
  std::vector<PixelGroup> groups;

  [[nodiscard]] const PixelGroup& of(std::size_t pixel) const {
    return groups[static_cast<std::size_t>(groupOf[pixel])];
  }
};

/// Gives the groups consecutive numbers and measures them. `groupOf` holds numbers of `sets`.
[[nodiscard]] PixelGroups measured(std::vector<int> groupOf, DisjointSets& sets, int width);

/// Pixels of one colour, or of slowly changing colours, that touch along an edge.
[[nodiscard]] PixelGroups flatAreas(const ColourPicture& picture);

/// The greatest difference of two colours in any channel.
[[nodiscard]] int colourDistance(std::uint32_t a, std::uint32_t b);

/// Pixels that `belongs` says yes to and that touch, be it at a corner.
template <class Belongs>
PixelGroups touchingPixels(int width, int height, Belongs belongs) {
  DisjointSets sets;
  std::vector<int> groupOf(static_cast<std::size_t>(width) * static_cast<std::size_t>(height),
                           PixelGroups::none);
  std::size_t pixel = 0;
  const auto row = static_cast<std::size_t>(width);
  for (int y = 0; y < height; ++y) {
    for (int x = 0; x < width; ++x, ++pixel) {
      if (!belongs(pixel)) continue;
      int group = PixelGroups::none;
      const auto join = [&](std::size_t neighbour) {
        const int other = groupOf[neighbour];
        if (other == PixelGroups::none || other == group) return;
        if (group == PixelGroups::none) {
          group = other;
        } else {
          sets.unite(group, other);
        }
      };
      if (x > 0) join(pixel - 1);
      if (y > 0) {
        if (x > 0) join(pixel - row - 1);
        join(pixel - row);
        if (x + 1 < width) join(pixel - row + 1);
      }
      groupOf[pixel] = group == PixelGroups::none ? sets.add() : group;
    }
  }
  return measured(std::move(groupOf), sets, width);
}

}  // namespace vantorel
