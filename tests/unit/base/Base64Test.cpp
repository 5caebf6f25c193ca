#include "base/Base64.h"

#include <gtest/gtest.h>

#include "fakes/TestStore.h"

namespace vantorel {
namespace {

std::string base64(std::string_view text) {
  Bytes out;
  appendBase64(out, bytesOf(text));
  return std::string(textOf(out));
}

TEST(Base64, IsThatOfTheStandard) {
  EXPECT_EQ(base64(""), "");
  EXPECT_EQ(base64("f"), "Zg==");
  EXPECT_EQ(base64("fo"), "Zm8=");
  EXPECT_EQ(base64("foo"), "Zm9v");
  EXPECT_EQ(base64("foobar"), "Zm9vYmFy");
  EXPECT_EQ(base64("\xFB\xFF\xFE"), "+//+");
}

TEST(Base64, IsAppendedToWhatIsThere) {
  Bytes out = toBytes("x");
  appendBase64(out, bytesOf("foo"));
  EXPECT_EQ(textOf(out), "xZm9v");
}

TEST(Base64, ReadsBackEveryByteAtEveryLength) {
  Bytes bytes;
  for (int i = 0; i < 520; ++i) {
    Bytes out;
    appendBase64(out, bytes);
    EXPECT_EQ(out.size(), base64Length(bytes.size()));
    EXPECT_EQ(bytesFromBase64(textOf(out)), bytes);
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
