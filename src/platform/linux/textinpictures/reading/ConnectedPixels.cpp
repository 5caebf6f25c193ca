// SPDX-License-Identifier: MIT
#include "platform/linux/textinpictures/reading/ConnectedPixels.h"

#include <cstdlib>
#include <utility>

namespace vantorel {
namespace {

// A gradient, or the noise of a compressed screenshot, is still one paper.
constexpr int sameColour = 2;

void grow(PixelBox& box, int x, int y) {
  if (box.right < box.left) {
    box = {x, y, x, y};
    return;
  }
  box.left = std::min(box.left, x);
  box.right = std::max(box.right, x);
  box.top = std::min(box.top, y);
  box.bottom = std::max(box.bottom, y);
}

}  // namespace

PixelGroups measured(std::vector<int> groupOf, DisjointSets& sets, int width) {
  PixelGroups result;
  std::vector<int> numbers(sets.size(), PixelGroups::none);
  int x = 0;
  int y = 0;
  for (int& group : groupOf) {
    if (group != PixelGroups::none) {
      int& number = numbers[static_cast<std::size_t>(sets.root(group))];
      if (number == PixelGroups::none) {
        number = static_cast<int>(result.groups.size());
        result.groups.emplace_back();
      }
      group = number;
      PixelGroup& measured = result.groups[static_cast<std::size_t>(number)];
      grow(measured.box, x, y);
      ++measured.count;
    }
    if (++x == width) {
      x = 0;
      ++y;
    }
  }
  result.groupOf = std::move(groupOf);
  return result;
}

int colourDistance(std::uint32_t a, std::uint32_t b) {
  const auto channel = [](std::uint32_t colour, unsigned shift) {
    return static_cast<int>(colour >> shift & 0xFFU);
  };
  return std::max({std::abs(channel(a, 16) - channel(b, 16)),
                   std::abs(channel(a, 8) - channel(b, 8)),
                   std::abs(channel(a, 0) - channel(b, 0))});
}

PixelGroups flatAreas(const ColourPicture& picture) {
  DisjointSets sets;
  const auto& pixels = picture.pixels;
  const auto row = static_cast<std::size_t>(picture.width);
  std::vector<int> areaOf(pixels.size(), PixelGroups::none);
  std::size_t pixel = 0;
  for (int y = 0; y < picture.height; ++y) {
    for (int x = 0; x < picture.width; ++x, ++pixel) {
      const auto goesOn = [&](std::size_t neighbour) {
        return pixels[pixel] == pixels[neighbour] ||
               colourDistance(pixels[pixel], pixels[neighbour]) <= sameColour;
      };
      const bool fromLeft = x > 0 && goesOn(pixel - 1);
      const bool fromAbove = y > 0 && goesOn(pixel - row);
      if (fromLeft) {
        areaOf[pixel] = areaOf[pixel - 1];
        if (fromAbove && areaOf[pixel] != areaOf[pixel - row])
          sets.unite(areaOf[pixel], areaOf[pixel - row]);
      } else {
        areaOf[pixel] = fromAbove ? areaOf[pixel - row] : sets.add();
      }
    }
  }
  return measured(std::move(areaOf), sets, picture.width);
}

}  // namespace vantorel
