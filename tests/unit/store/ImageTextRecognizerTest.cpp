// SPDX-License-Identifier: MIT
#include "store/ImageTextRecognizer.h"

#include <gtest/gtest.h>

#include "fakes/FakeTextRecognition.h"
#include "fakes/TestStore.h"

namespace vantorel {
namespace {

using Lines = std::vector<std::string>;
using Outcome = Recognition::Outcome;

const Bytes picture = toBytes("picture");

std::optional<std::string> read(FakeTextRecognition& recognition) {
  return ImageTextRecognizer::recognize(recognition, picture, {});
}

Lines languagesAskedFor(Lines supported) {
  FakeTextRecognition recognition;
  recognition.setSupportedLanguages(std::move(supported));
  recognition.introduce(picture, Lines{"word"});
  EXPECT_EQ(read(recognition), "word");
  return recognition.calls().at(0).languages;
}

TEST(ImageTextRecognizer, JoinsTheLinesInTheirOrder) {
  FakeTextRecognition recognition;
  recognition.introduce(picture, Lines{"Invoice 2024", "סך הכול", "", "Thank you"});
  EXPECT_EQ(read(recognition), "Invoice 2024\nסך הכול\n\nThank you");
}

TEST(ImageTextRecognizer, AnImageWithoutTextHasAnEmptyText) {
  FakeTextRecognition recognition;
  recognition.introduce(picture, Lines{});
  EXPECT_EQ(read(recognition), "");
}

TEST(ImageTextRecognizer, PrefersHebrewThenEnglish) {
  EXPECT_EQ(languagesAskedFor({"en-US", "he-IL"}), (Lines{"he-IL", "en-US"}));
  EXPECT_EQ(languagesAskedFor({"fr-FR", "en-US", "de-DE"}), (Lines{"en-US"}));
  EXPECT_EQ(languagesAskedFor({"he-IL"}), (Lines{"he-IL"}));
}

TEST(ImageTextRecognizer, WithoutAPreferredLanguageTheRecogniserChooses) {
  EXPECT_EQ(languagesAskedFor({"fr-FR", "de-DE"}), Lines{});
  EXPECT_EQ(languagesAskedFor({}), Lines{});
}

TEST(ImageTextRecognizer, WhatCannotBeReadHasNoText) {
  FakeTextRecognition recognition;
  for (const Outcome outcome : {Outcome::unreadable, Outcome::unavailable, Outcome::stopped}) {
    recognition.introduce(picture, Recognition{outcome, {"left over"}});
    EXPECT_EQ(read(recognition), std::nullopt);
  }
  AbsentTextRecognition absent;
  EXPECT_EQ(ImageTextRecognizer::recognize(absent, picture, {}), std::nullopt);
}

TEST(ImageTextRecognizer, KeepsTheFirstEightThousandCharacters) {
  FakeTextRecognition recognition;
  recognition.introduce(picture, Lines{std::string(8000, 'x')});
  EXPECT_EQ(read(recognition)->size(), 8000U);
  recognition.introduce(picture, Lines{std::string(7999, 'x'), "yz"});
  EXPECT_EQ(*read(recognition), std::string(7999, 'x') + "\n");
}

TEST(ImageTextRecognizer, CutsBetweenCharactersNotWithinThem) {
  // A letter with two marks, which a reader counts as one character.
  const std::string marked = "\u05E9\u05C1\u05B8";
  std::string line;
  for (int i = 0; i < 8001; ++i) line += marked;
  FakeTextRecognition recognition;
  recognition.introduce(picture, Lines{line});
  EXPECT_EQ(*read(recognition), line.substr(0, 8000 * marked.size()));
}

}  // namespace
}  // namespace vantorel
