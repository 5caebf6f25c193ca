// SPDX-License-Identifier: MIT
#include "base/WipedText.h"

#include <gtest/gtest.h>

#include "fakes/LeftInString.h"

namespace vantorel {
namespace {

TEST(WipedText, LeavesNothingOfShortTexts) {
  std::string text = "hunter2";
  wipe(text);
  EXPECT_TRUE(text.empty());
  EXPECT_FALSE(isAnythingLeftIn(text));
}

TEST(WipedText, LeavesNothingOfLongTexts) {
  std::string text(1000, 'x');
  wipe(text);
  EXPECT_TRUE(text.empty());
  EXPECT_FALSE(isAnythingLeftIn(text));
}

TEST(WipedText, LeavesNothingOfWhatATextWasBefore) {
  std::string text(1000, 'x');
  text = "y";
  EXPECT_TRUE(isAnythingLeftIn(text));
  wipe(text);
  EXPECT_FALSE(isAnythingLeftIn(text));
  text = "hunter2";
  text.clear();
  EXPECT_TRUE(isAnythingLeftIn(text)) << "why it is not enough to clear it";
  wipe(text);
  EXPECT_FALSE(isAnythingLeftIn(text));
}

}  // namespace
}  // namespace vantorel
