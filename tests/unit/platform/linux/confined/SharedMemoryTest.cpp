// SPDX-License-Identifier: MIT
#include "platform/linux/confined/SharedMemory.h"

#include <gtest/gtest.h>
#include <sys/mman.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>

namespace vantorel {
namespace {

TEST(SharedMemory, ACopyIsReadAndNeverChanged) {
  const Bytes bytes(100'000, std::byte{7});
  const auto memory = sharedCopy(bytes);
  ASSERT_TRUE(memory.isOpen());
  const MappedMemory view(memory, MappedMemory::Access::reading);
  EXPECT_TRUE(std::equal(view.bytes().begin(), view.bytes().end(), bytes.begin(), bytes.end()));
  EXPECT_TRUE(MappedMemory(memory, MappedMemory::Access::writing).bytes().empty());
  EXPECT_EQ(::pwrite(memory.get(), "x", 1, 0), -1);
  EXPECT_EQ(::ftruncate(memory.get(), 0), -1);
}

TEST(SharedMemory, NothingHasAViewToo) {
  const auto memory = sharedCopy({});
  EXPECT_TRUE(memory.isOpen());
  EXPECT_TRUE(MappedMemory(memory, MappedMemory::Access::reading).bytes().empty());
  EXPECT_TRUE(MappedMemory(FileDescriptor(-1), MappedMemory::Access::reading).bytes().empty());
}

TEST(SharedMemory, WhatIsWrittenIntoARoomIsRead) {
  const auto room = sharedRoom(50'000);
  {
    const MappedMemory view(room, MappedMemory::Access::writing);
    ASSERT_EQ(view.bytes().size(), 50'000U);
    view.bytes()[49'999] = std::byte{9};
  }
  Bytes read(50'000);
  ASSERT_TRUE(readShared(room, read));
  EXPECT_EQ(read.front(), std::byte{0});
  EXPECT_EQ(read.back(), std::byte{9});
  Bytes more(50'001);
  EXPECT_FALSE(readShared(room, more));
}

TEST(SharedMemory, ARoomKeepsItsSize) {
  const auto room = sharedRoom(50'000);
  EXPECT_EQ(::ftruncate(room.get(), 10), -1);
  EXPECT_EQ(::ftruncate(room.get(), 60'000), -1);
}

TEST(SharedMemory, ARoomTakesOnlyWhatIsWrittenTo) {
  const auto room = sharedRoom(std::size_t{400} << 20U);
  ASSERT_TRUE(room.isOpen());
  struct stat facts {};
  ASSERT_EQ(::fstat(room.get(), &facts), 0);
  EXPECT_EQ(facts.st_blocks, 0);
}

}  // namespace
}  // namespace vantorel
