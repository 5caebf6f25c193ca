// SPDX-License-Identifier: MIT
#include "platform/linux/textinpictures/worker/TesseractReader.h"

#include <fcntl.h>
#include <tesseract/resultiterator.h>
#include <unistd.h>

#include <algorithm>
#include <climits>
#include <utility>

namespace vantorel {
namespace {

constexpr int bytesPerPixel = 1;
constexpr int resolution = 300;  // of a line at the size it is read at

/// Without the invisible marks of direction, which would keep a search from finding the word, and
/// without white space.
std::string cleaned(std::string_view text) {
  constexpr std::string_view leftToRight = "\u200E";
  constexpr std::string_view rightToLeft = "\u200F";
  std::string result;
  while (!text.empty()) {
    if (text.starts_with(leftToRight) || text.starts_with(rightToLeft)) {
      text.remove_prefix(leftToRight.size());
      continue;
    }
    if (text.front() != '\n' && text.front() != ' ') result += text.front();
    text.remove_prefix(1);
  }
  return result;
}

ReadWord wordAt(const tesseract::ResultIterator& place) {
  ReadWord word;
  const std::unique_ptr<char[]> text(place.GetUTF8Text(tesseract::RIL_WORD));
  if (text) word.text = cleaned(text.get());
  word.confidence = place.Confidence(tesseract::RIL_WORD);
  int top = 0;
  int bottom = 0;
  place.BoundingBox(tesseract::RIL_WORD, &word.left, &top, &word.right, &bottom);
  return word;
}

}  // namespace

TesseractReader::TesseractReader(const std::filesystem::path& modelDirectory, std::string model)
    : model_(std::move(model)),
      file_(::open((modelDirectory / (model_ + ".traineddata")).c_str(), O_RDONLY | O_CLOEXEC)) {}

TesseractReader::~TesseractReader() = default;

Bytes TesseractReader::modelBytes() const {
  const off_t size = file_.isOpen() ? ::lseek(file_.get(), 0, SEEK_END) : 0;
  if (size <= 0 || size > INT_MAX) return {};
  Bytes bytes(static_cast<std::size_t>(size));
  std::size_t done = 0;
  while (done < bytes.size()) {
    const ssize_t got = retryingInterrupted([&] {
      return ::pread(file_.get(), bytes.data() + done, bytes.size() - done,
                     static_cast<off_t>(done));
    });
    if (got <= 0) return {};
    done += static_cast<std::size_t>(got);
  }
  return bytes;
}

bool TesseractReader::load() {
  if (state_ != State::asleep) return state_ == State::loaded;
  const Bytes bytes = modelBytes();
  const bool loaded = !bytes.empty() && engine_.Init(reinterpret_cast<const char*>(bytes.data()),
                                                     static_cast<int>(bytes.size()), model_.c_str(),
                                                     tesseract::OEM_LSTM_ONLY, nullptr, 0, nullptr,
                                                     nullptr, false, nullptr) == 0;
  state_ = loaded ? State::loaded : State::failed;
  if (!loaded) return false;
  engine_.SetPageSegMode(tesseract::PSM_SINGLE_LINE);
  // Every line comes as dark on light; a second try on its negative would find nothing.
  engine_.SetVariable("tessedit_do_invert", "0");
  return true;
}

std::optional<LineReading> TesseractReader::read(const GreyPicture& line) {
  if (!load()) return std::nullopt;
  LineReading reading{model_ == "heb" ? Script::hebrew : Script::latin, {}};
  engine_.SetImage(line.pixels.data(), line.width, line.height, bytesPerPixel,
                   line.width * bytesPerPixel);
  engine_.SetSourceResolution(resolution);
  if (engine_.Recognize(nullptr) != 0) return std::nullopt;
  const std::unique_ptr<tesseract::ResultIterator> place(engine_.GetIterator());
  if (place && !place->Empty(tesseract::RIL_WORD)) {
    do {
      ReadWord word = wordAt(*place);
      if (!word.text.empty()) reading.words.push_back(std::move(word));
    } while (place->Next(tesseract::RIL_WORD));
  }
  engine_.Clear();
  std::sort(reading.words.begin(), reading.words.end(),
            [](const ReadWord& a, const ReadWord& b) { return a.left < b.left; });
  return reading;
}

}  // namespace vantorel
