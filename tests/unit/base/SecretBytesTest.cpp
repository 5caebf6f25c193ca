#include "base/SecretBytes.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <utility>

namespace vantorel {
namespace {

const Bytes key(6, std::byte{0x5A});

bool holds(const SecretBytes& secret, ByteView bytes) {
  return std::ranges::equal(secret.view(), bytes);
}

TEST(SecretBytes, AreZeroUntilTheyAreFilled) {
  EXPECT_TRUE(holds(SecretBytes(5), Bytes(5)));
  EXPECT_EQ(SecretBytes().size(), 0U);
}

TEST(SecretBytes, AreEmptyOnceTheyAreMovedFrom) {
  SecretBytes first(key);
  SecretBytes second(std::move(first));
  EXPECT_TRUE(holds(second, key));
  EXPECT_EQ(first.size(), 0U);  // NOLINT(bugprone-use-after-move): that is what is asked
  SecretBytes third(2);
  third = std::move(second);
  EXPECT_TRUE(holds(third, key));
  EXPECT_EQ(second.size(), 0U);  // NOLINT(bugprone-use-after-move)
}

TEST(SecretBytes, ADuplicateHasItsOwn) {
  SecretBytes first(key);
  const SecretBytes second = first.duplicate();
  first.bytes().front() = {};
  EXPECT_TRUE(holds(second, key));
  EXPECT_FALSE(holds(first, key));
}

}  // namespace
}  // namespace vantorel
