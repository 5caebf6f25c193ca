// SPDX-License-Identifier: MIT
#include "base/Uuid.h"

#include <gtest/gtest.h>

#include <functional>
#include <set>

namespace vantorel {
namespace {

TEST(Uuid, IsAllZeroByDefault) {
  EXPECT_EQ(Uuid().string(), "00000000-0000-0000-0000-000000000000");
}

TEST(Uuid, IsReadInEitherCaseAndWrittenInUpperCase) {
  const auto lower = Uuid::parse("0a1b2c3d-4e5f-6789-abcd-ef0123456789");
  const auto upper = Uuid::parse("0A1B2C3D-4E5F-6789-ABCD-EF0123456789");
  ASSERT_TRUE(lower);
  EXPECT_EQ(lower, upper);
  EXPECT_EQ(lower->string(), "0A1B2C3D-4E5F-6789-ABCD-EF0123456789");
}

TEST(Uuid, IsNotReadFromAnythingElse) {
  for (const char* text :
       {"", "0A1B2C3D", "0A1B2C3D4E5F6789ABCDEF0123456789", "{0A1B2C3D-4E5F-6789-ABCD-EF012345678}",
        "0A1B2C3D-4E5F-6789-ABCD-EF012345678", "0A1B2C3D-4E5F-6789-ABCD-EF01234567890",
        "0A1B2C3D-4E5F-6789-ABCD-EF012345678G", "0A1B2C3D-4E5F-6789-ABCDE-F012345678 ",
        "0A1B2C3D04E5F-6789-ABCD-EF012345678-", " A1B2C3D-4E5F-6789-ABCD-EF0123456789"}) {
    EXPECT_FALSE(Uuid::parse(text)) << text;
  }
  EXPECT_FALSE(Uuid::parse(std::string(36, '\0')));
}

TEST(Uuid, RandomOnesHashDifferently) {
  std::set<std::size_t> hashes;
  for (int i = 0; i < 100; ++i) hashes.insert(std::hash<Uuid>()(Uuid::random()));
  EXPECT_EQ(hashes.size(), 100U);
}

TEST(Uuid, RandomOnesDifferAndSayThatTheyAreRandom) {
  std::set<Uuid> seen;
  for (int i = 0; i < 1000; ++i) {
    const Uuid id = Uuid::random();
    EXPECT_TRUE(seen.insert(id).second);
    const std::string text = id.string();
    EXPECT_EQ(text[14], '4');
    EXPECT_NE(std::string("89AB").find(text[19]), std::string::npos);
    EXPECT_EQ(Uuid::parse(text), id);
  }
}

}  // namespace
}  // namespace vantorel
