// SPDX-License-Identifier: MIT
#include "base/SecretBytes.h"

#include <gtest/gtest.h>
#include <openssl/crypto.h>

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

TEST(SecretBytes, LieInTheLockedHeapAndLeaveNothingThere) {
  const Bytes longKey(32, std::byte{0x5A});
  const std::byte* place = nullptr;
  {
    const SecretBytes secret(longKey);
    place = secret.view().data();
    EXPECT_EQ(CRYPTO_secure_allocated(place), 1);
  }
  // The block is still mapped; the heap keeps its own notes in its first half.
  EXPECT_TRUE(std::all_of(place + 16, place + 32, [](std::byte b) { return b == std::byte{}; }));
}

TEST(SecretBytes, MoreThanTheLockedHeapHoldsLieElsewhere) {
  const Bytes large(1 << 20U, std::byte{0x5A});
  SecretBytes secret(large);
  EXPECT_TRUE(holds(secret, large));
  EXPECT_EQ(CRYPTO_secure_allocated(secret.view().data()), 0);
  secret = SecretBytes(key);
  EXPECT_TRUE(holds(secret, key));
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
