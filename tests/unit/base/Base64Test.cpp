// SPDX-License-Identifier: MIT
#include "base/Base64.h"

#include <gtest/gtest.h>

#include "fakes/TestStore.h"

namespace vantorel {
namespace {

std::string base64(std::string_view text) {
  std::string out(base64Length(text.size()), ' ');
  writeBase64(out.data(), bytesOf(text));
  return out;
}

TEST(Base64, IsThatOfTheStandard) {
  EXPECT_EQ(base64(""), "");
  EXPECT_EQ(base64("f"), "Zg==");
  EXPECT_EQ(base64("fo"), "Zm8=");
  EXPECT_EQ(base64("foo"), "Zm9v");
  EXPECT_EQ(base64("foobar"), "Zm9vYmFy");
  EXPECT_EQ(base64("\xFB\xFF\xFE"), "+//+");
}

TEST(Base64, TouchesNoMoreThanItsLength) {
  std::string out = "xxxxxx";
  writeBase64(out.data() + 1, bytesOf("fo"));
  EXPECT_EQ(out, "xZm8=x");
}

TEST(Base64, ReadsBackEveryByteAtEveryLength) {
  Bytes bytes;
  for (int i = 0; i < 520; ++i) {
    EXPECT_EQ(bytesFromBase64(base64(textOf(bytes))), bytes);
    bytes.push_back(static_cast<std::byte>(i * 7));
  }
}

TEST(Base64, ReadsNothingElse) {
  for (const std::string_view text :
       {"Z", "Zg", "Zg=", "Zg===", "=", "====", "Zm9v\n", "Zm 9v", "Zm9vZg", "Zg==Zm9v", "Zm=v",
        "Z===", "Zm9-", "Zm9_", "Zh==", "Zm9=", "Zm\xC3\xA9"}) {
    EXPECT_FALSE(bytesFromBase64(text)) << text;
  }
  EXPECT_FALSE(bytesFromBase64(std::string_view("Zm9\0", 4)));
}

}  // namespace
}  // namespace vantorel
