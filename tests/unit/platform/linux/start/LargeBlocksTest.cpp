// SPDX-License-Identifier: MIT
#include "platform/linux/start/LargeBlocks.h"

#include <gtest/gtest.h>
#include <malloc.h>

#include <vector>

namespace vantorel {
namespace {

TEST(LargeBlocks, AreReturnedAlsoAfterOthersWereFreed) {
  returnFreedLargeBlocks();
  constexpr std::size_t megabyte = 1'048'576;
  { const std::vector<char> freed(9 * megabyte); }
  const auto before = mallinfo2().hblks;
  {
    const std::vector<char> block(8 * megabyte);
    EXPECT_EQ(mallinfo2().hblks, before + 1);
  }
  EXPECT_EQ(mallinfo2().hblks, before);
}

}  // namespace
}  // namespace vantorel
