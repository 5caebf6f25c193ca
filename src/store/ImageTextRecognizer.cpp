// SPDX-License-Identifier: MIT
#include "store/ImageTextRecognizer.h"

#include <algorithm>
#include <vector>

#include "platform/CaptureLimits.h"
#include "text/Unicode.h"

namespace vantorel::ImageTextRecognizer {
namespace {

std::vector<std::string> languagesFor(TextRecognition& recognition) {
  const auto supported = recognition.supportedLanguages();
  std::vector<std::string> languages;
  for (const std::string_view language : preferredLanguages) {
    if (std::find(supported.begin(), supported.end(), language) != supported.end())
      languages.emplace_back(language);
  }
  return languages;
}

}  // namespace

std::optional<std::string> recognize(TextRecognition& recognition, ByteView data,
                                     const std::stop_token& stop) {
  const auto recognized = recognition.recognize(data, languagesFor(recognition), stop);
  if (recognized.outcome != Recognition::Outcome::recognized) return std::nullopt;
  std::string text;
  for (const std::string& line : recognized.lines) {
    if (&line != &recognized.lines.front()) text += '\n';
    text += line;
  }
  text.resize(prefixOfCharacters(text, longestRecognizedText).size());
  return text;
}

}  // namespace vantorel::ImageTextRecognizer
