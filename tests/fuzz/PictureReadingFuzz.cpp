// SPDX-License-Identifier: MIT
#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <memory>
#include <span>
#include <utility>
#include <vector>

#include "platform/linux/textinpictures/reading/PageReader.h"
#include "platform/linux/textinpictures/reading/PictureRows.h"

namespace {

using namespace vantorel;

constexpr std::int64_t mostPixels = 400'000;  // more only takes longer

/// Stands in for the engine, which is not what is looked at: says a word for every line.
class OneWord : public LineReader {
 public:
  std::optional<LineReading> read(const GreyPicture& line) override {
    if (line.width <= 0 || line.height <= 0) std::abort();
    if (line.pixels.size() !=
        static_cast<std::size_t>(line.width) * static_cast<std::size_t>(line.height)) {
      std::abort();
    }
    return LineReading{Script::latin, {{"word", 95, 0, line.width}}};
  }
};

}  // namespace

/// From the bytes of a picture to the pictures of its lines: whatever comes, no row and no line is
/// outside of it.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  const auto picture = openPicture(std::as_bytes(std::span(data, size)));
  if (!picture || std::int64_t{picture->width()} * picture->height() > mostPixels) return 0;
  std::vector<std::unique_ptr<LineReader>> readers;
  readers.push_back(std::make_unique<OneWord>());
  int lines = 0;
  PageReader page(std::move(readers), [&lines] { return ++lines > 1000; });
  (void)page.read(*picture);
  return 0;
}
