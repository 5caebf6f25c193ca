// SPDX-License-Identifier: MIT
#include "base/Lru.h"

#include <gtest/gtest.h>

#include <string>

namespace vantorel {
namespace {

class LruTest : public ::testing::Test {
 protected:
  LruTest() {
    for (const char* key : {"a", "b", "c"}) lru.insert(key, std::string(key) + "'s");
  }
  Lru<std::string, std::string> lru;
};

TEST_F(LruTest, FindsWhatWasInserted) {
  ASSERT_NE(lru.find("b"), nullptr);
  EXPECT_EQ(*lru.find("b"), "b's");
  EXPECT_EQ(lru.find("d"), nullptr);
  EXPECT_EQ(lru.size(), 3U);
}

TEST_F(LruTest, LetsGoFirstOfWhatWasUsedLongestAgo) {
  (void)lru.find("a");
  EXPECT_EQ(lru.takeOldest(), "b's");
  EXPECT_EQ(lru.find("b"), nullptr);
  EXPECT_EQ(lru.takeOldest(), "c's");
  EXPECT_EQ(lru.takeOldest(), "a's");
  EXPECT_EQ(lru.size(), 0U);
}

TEST_F(LruTest, KeepsTheValueThatAKeyHas) {
  EXPECT_FALSE(lru.insert("a", "another"));
  EXPECT_EQ(lru.size(), 3U);
  EXPECT_EQ(*lru.find("a"), "a's");
}

TEST_F(LruTest, TakesAKeyAgainThatWasLetGo) {
  EXPECT_EQ(lru.takeOldest(), "a's");
  EXPECT_TRUE(lru.insert("a", "another"));
  EXPECT_EQ(*lru.find("a"), "another");
}

TEST_F(LruTest, IsEmptyOnceCleared) {
  lru.clear();
  EXPECT_EQ(lru.size(), 0U);
  EXPECT_EQ(lru.find("a"), nullptr);
  EXPECT_TRUE(lru.insert("a", "another"));
}

}  // namespace
}  // namespace vantorel
