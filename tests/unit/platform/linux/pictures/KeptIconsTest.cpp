// SPDX-License-Identifier: MIT
#include "platform/linux/pictures/KeptIcons.h"

#include <gtest/gtest.h>

namespace vantorel {
namespace {

SharedBitmap picture() { return std::make_shared<const Bitmap>(); }

TEST(KeptIcons, TellWhatIsKnownAndWhatIsKnownToBeNone) {
  KeptIcons icons(2);
  EXPECT_EQ(icons.find("a"), std::nullopt);
  const auto one = picture();
  icons.keep("a", one, icons.generation());
  icons.keep("b", nullptr, icons.generation());
  EXPECT_EQ(icons.find("a"), std::optional(one));
  EXPECT_EQ(icons.find("b"), std::optional(SharedBitmap()));
}

TEST(KeptIcons, TheOneUsedLongestAgoGoes) {
  KeptIcons icons(2);
  for (const auto* name : {"a", "b"}) icons.keep(name, picture(), icons.generation());
  EXPECT_TRUE(icons.find("a"));
  icons.keep("c", picture(), icons.generation());
  EXPECT_TRUE(icons.find("a"));
  EXPECT_FALSE(icons.find("b"));
  EXPECT_TRUE(icons.find("c"));
}

TEST(KeptIcons, WhatWasLookedForInTheOldStyleIsNotKept) {
  KeptIcons icons(2);
  const auto before = icons.generation();
  icons.keep("a", picture(), before);
  icons.clear();
  icons.keep("b", picture(), before);
  EXPECT_FALSE(icons.find("a"));
  EXPECT_FALSE(icons.find("b"));
}

}  // namespace
}  // namespace vantorel
