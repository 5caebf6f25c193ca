// SPDX-License-Identifier: MIT
// What of a history is left in memory that was given back.
#include <gtest/gtest.h>
#include <malloc.h>

#include <cstdlib>
#include <cstring>
#include <new>

#include "fakes/TestStore.h"
#include "store/HistoryFile.h"
#include "store/SealedHistory.h"

namespace {

constexpr std::string_view needle = "a phrase that nobody may find again";
bool isWatching = false;
int found = 0;

void giveBack(void* memory) {
  if (isWatching && memory != nullptr) {
    const std::size_t size = malloc_usable_size(memory);
    if (memmem(memory, size, needle.data(), needle.size()) != nullptr) ++found;
  }
  std::free(memory);
}

}  // namespace

void* operator new(std::size_t size) {
  if (void* const memory = std::calloc(1, size > 0 ? size : 1)) return memory;
  throw std::bad_alloc();
}
void operator delete(void* memory) noexcept { giveBack(memory); }
void operator delete(void* memory, std::size_t /*size*/) noexcept { giveBack(memory); }

namespace vantorel {
namespace {

class HistoryWiping : public testing::Test {
 protected:
  static void SetUpTestSuite() {
    const std::string control = std::string(needle) + "!";
    EXPECT_EQ(leftBy([&] { (void)toBytes(control); }), 1) << "nothing would be found";
  }
  /// How many pieces of memory were given back with the needle in them.
  template <class Act>
  static int leftBy(Act act) {
    found = 0;
    isWatching = true;
    act();
    isWatching = false;
    return found;
  }
  static std::vector<ClipItem> items() {
    ClipItem item = textItem("x");
    item.text = std::string(30'000, 'x') + std::string(needle);
    return {item, textItem("y"), item};
  }
};

TEST_F(HistoryWiping, AnEncodedHistoryLeavesNothing) {
  const auto list = items();
  EXPECT_EQ(leftBy([&] { (void)EncodedHistory(list).view(); }), 0);
}

TEST_F(HistoryWiping, AnEncodedHistoryThatOutgrowsItsRoomLeavesNothing) {
  auto list = items();
  for (int i = 0; i < 12; ++i) {
    list.push_back(filesItem(std::vector<std::string>(100, "/" + std::string(500, '\xFF'))));
  }
  EXPECT_EQ(leftBy([&] { (void)EncodedHistory(list).view(); }), 0);
}

TEST_F(HistoryWiping, ADecodedHistoryLeavesNothingBesideItsEntries) {
  Bytes json = encodeHistory(items());
  std::optional<std::vector<ClipItem>> read;
  EXPECT_EQ(leftBy([&] { read = decodeHistory(std::move(json)); }), 0);
  ASSERT_TRUE(read);
  EXPECT_EQ(read->size(), 3U);
}

TEST_F(HistoryWiping, EntriesThatGoLeaveNothingOfTheirContents) {
  auto list = items();
  list[1].rtfData = toBytes(std::string(300, 'x') + std::string(needle));
  list[1].htmlData = toBytes(std::string(30'000, 'x') + std::string(needle));
  list[1].text = std::string(needle);
  auto others = list;
  list.clear();
  EXPECT_EQ(others[1].text->get(), needle) << "somebody holds it still";
  EXPECT_EQ(leftBy([&] { others.clear(); }), 0);
}

TEST_F(HistoryWiping, AHistoryThatIsSavedLeavesNothing) {
  const TemporaryDirectory directory;
  PosixFileSystem disk;
  const HistoryDirectories directories(disk, directory.path() / "ClipHistory");
  const SealedHistory file({disk, SecureStorage::ephemeral()}, directories,
                           directories.base() / "history.vntl", maximumHistoryBytes);
  const auto list = items();
  auto outcome = SealedHistory::Outcome::failed;
  EXPECT_EQ(leftBy([&] { outcome = file.write(list); }), 0);
  EXPECT_EQ(outcome, SealedHistory::Outcome::saved);
}

}  // namespace
}  // namespace vantorel
