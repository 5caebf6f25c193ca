#pragma once

#include <tesseract/baseapi.h>

#include <filesystem>
#include <memory>
#include <optional>
#include <string>

#include "platform/linux/textinpictures/reading/PageReader.h"

namespace vantorel {

/// Reads lines with one model of Tesseract. The model is loaded when first needed: text in one
/// script never needs the other.
class TesseractReader : public LineReader {
 public:
  TesseractReader(std::filesystem::path modelDirectory, std::string model);
  ~TesseractReader() override;

  /// False when the model cannot be loaded.
  [[nodiscard]] bool load();
  [[nodiscard]] std::optional<LineReading> read(const GreyPicture& line) override;

 private:
  enum class State { asleep, loaded, failed };

  std::filesystem::path modelDirectory_;
  std::string model_;
  State state_ = State::asleep;
  tesseract::TessBaseAPI engine_;
};

}  // namespace vantorel
