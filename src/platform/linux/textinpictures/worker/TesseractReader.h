// SPDX-License-Identifier: MIT
#pragma once

#include <tesseract/baseapi.h>

#include <filesystem>
#include <memory>
#include <optional>
#include <string>

#include "base/Bytes.h"
#include "base/FileDescriptor.h"
#include "platform/linux/textinpictures/reading/PageReader.h"

namespace vantorel {

/// Reads lines with one model of Tesseract. The model's file is opened at once, so that a process
/// may give up opening files afterwards; it is loaded when first needed: text in one script never
/// needs the other.
class TesseractReader : public LineReader {
 public:
  TesseractReader(const std::filesystem::path& modelDirectory, std::string model);
  ~TesseractReader() override;

  /// False when the model cannot be loaded.
  [[nodiscard]] bool load();
  [[nodiscard]] std::optional<LineReading> read(const GreyPicture& line) override;
  [[nodiscard]] const std::string& model() const { return model_; }

 private:
  enum class State { asleep, loaded, failed };

  /// Empty when it cannot be read.
  [[nodiscard]] Bytes modelBytes() const;

  const std::string model_;
  const FileDescriptor file_;
  State state_ = State::asleep;
  tesseract::TessBaseAPI engine_;
};

}  // namespace vantorel
