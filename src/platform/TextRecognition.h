// SPDX-License-Identifier: MIT
#pragma once

#include <stop_token>
#include <string>
#include <vector>

#include "base/Bytes.h"

namespace vantorel {

/// What came of reading a picture.
struct Recognition {
  enum class Outcome {
    recognized,   // `lines` is what stands in the picture; no line when nothing does
    unreadable,   // the bytes are no picture, or are damaged, or nobody could read them
    unavailable,  // this desktop has nothing to recognise text with
    stopped,      // the reading was given up on request
  };
  Outcome outcome = Outcome::unavailable;
  /// One best string per line of text, in reading order, each valid UTF-8 without line breaks.
  std::vector<std::string> lines;
};

/// Reads the text in pictures, in the most accurate way that the desktop has. It remembers nothing
/// of what it read, writes nothing to any disk and logs nothing.
class TextRecognition {
 public:
  virtual ~TextRecognition() = default;

  /// The languages that can be recognised now, as BCP 47 tags ("he-IL", "en-US"). Empty when there
  /// are none or when that cannot be found out. Any thread.
  [[nodiscard]] virtual std::vector<std::string> supportedLanguages() = 0;

  /// Reads an encoded picture (PNG or JPEG). `languages` are tags that are supported, the preferred
  /// one first; with none the implementation chooses. Takes as long as it takes, at a priority at
  /// which nobody notices: call it on a background queue, one picture at a time. Once a stop is
  /// requested, from whatever thread, it returns at once.
  [[nodiscard]] virtual Recognition recognize(ByteView image,
                                              const std::vector<std::string>& languages,
                                              const std::stop_token& stop) = 0;
};

/// Of a desktop that cannot recognise text.
class AbsentTextRecognition : public TextRecognition {
 public:
  [[nodiscard]] std::vector<std::string> supportedLanguages() override { return {}; }
  [[nodiscard]] Recognition recognize(ByteView /*image*/,
                                      const std::vector<std::string>& /*languages*/,
                                      const std::stop_token& /*stop*/) override {
    return {};
  }
};

}  // namespace vantorel
