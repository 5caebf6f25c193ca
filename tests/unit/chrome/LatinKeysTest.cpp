// SPDX-License-Identifier: MIT
#include "chrome/LatinKeys.h"

#include <gtest/gtest.h>

#include <utility>
#include <vector>

#include <string_view>

namespace vantorel {
namespace {

TEST(LatinKeys, EveryCharacterOfTheMainBlockLeadsThereAndBack) {
  for (const char c : std::string_view("abcdefghijklmnopqrstuvwxyz0123456789-=[];'\\,./` ")) {
    const auto code = keyCodeOfLatin(c);
    ASSERT_TRUE(code) << c;
    EXPECT_EQ(latinCharacter(*code), c);
  }
}

TEST(LatinKeys, KnownPlaces) {
  EXPECT_EQ(keyCodeOfLatin('v'), keys::v);
  EXPECT_EQ(keyCodeOfLatin(' '), keys::space);
  EXPECT_EQ(keyCodeOfLatin('3'), KeyCode{20});  // not the keypad's
  EXPECT_EQ(latinCharacter(85), '3');           // the keypad's
}

TEST(LatinKeys, TheKeypadHasTheCharactersOfItsCaps) {
  const std::vector<std::pair<KeyCode, char>> keypad = {
      {65, '.'}, {67, '*'}, {69, '+'}, {75, '/'}, {78, '-'}, {82, '0'}, {83, '1'}, {84, '2'},
      {85, '3'}, {86, '4'}, {87, '5'}, {88, '6'}, {89, '7'}, {91, '8'}, {92, '9'}};
  for (const auto& [key, character] : keypad) EXPECT_EQ(latinCharacter(key), character) << key;
  EXPECT_EQ(latinCharacter(90), std::nullopt);
}

TEST(LatinKeys, WhatIsNotThereIsAbsent) {
  EXPECT_EQ(keyCodeOfLatin('!'), std::nullopt);
  EXPECT_EQ(keyCodeOfLatin('\0'), std::nullopt);
  EXPECT_EQ(latinCharacter(keys::returnKey), std::nullopt);
  EXPECT_EQ(latinCharacter(0xFF), std::nullopt);
}

}  // namespace
}  // namespace vantorel
