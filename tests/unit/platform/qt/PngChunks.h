// SPDX-License-Identifier: MIT
#pragma once

#include <cstdint>
#include <string>

/// A PNG put together by hand, whether or not it makes sense.
namespace vantorel::png {

struct Header {
  std::uint32_t width = 2;
  std::uint32_t height = 2;
  char depth = 8;
  char colourType = 2;
  char compression = 0;
  char filter = 0;
  char interlace = 0;
};

inline const std::string signature = "\x89PNG\r\n\x1A\n";

[[nodiscard]] std::string number(std::uint32_t value);
/// With its length and its checksum.
[[nodiscard]] std::string chunk(const std::string& type, const std::string& data);
[[nodiscard]] std::string ihdr(const Header& header);

}  // namespace vantorel::png
