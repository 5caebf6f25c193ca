// SPDX-License-Identifier: MIT
#include "panel/DisplayedClips.h"

#include <gmock/gmock.h>

#include "fakes/LeftInString.h"
#include "fakes/TestStore.h"

namespace vantorel {
namespace {

using Selection = DisplayedClips::Selection;
using testing::ElementsAre;
using testing::IsEmpty;

class DisplayedClipsTest : public testing::Test {
 protected:
  void list(std::initializer_list<const char*> texts) {
    for (const auto* text : texts) history_.push_back(textItem(text));
    clips_.refresh(history_, Selection::keepIndex);
  }
  void take(std::size_t index) {
    history_.erase(history_.begin() + static_cast<std::ptrdiff_t>(index));
  }
  [[nodiscard]] std::vector<std::string> texts() const {
    std::vector<std::string> result;
    for (const auto& item : clips_.items()) result.push_back(item.preview);
    return result;
  }
  [[nodiscard]] std::string selected() const {
    return clips_.selected() != nullptr ? clips_.selected()->preview : "";
  }

  std::vector<ClipItem> history_;
  DisplayedClips clips_;
};

TEST_F(DisplayedClipsTest, AnEmptyListSelectsNothing) {
  list({});
  EXPECT_EQ(clips_.selection(), std::nullopt);
  EXPECT_EQ(clips_.selected(), nullptr);
  clips_.moveSelection(1);
  clips_.select(3);
  EXPECT_EQ(clips_.selection(), std::nullopt);
}

TEST_F(DisplayedClipsTest, BeginsWithTheFirstEntry) {
  list({"a", "b"});
  EXPECT_THAT(texts(), ElementsAre("a", "b"));
  EXPECT_EQ(selected(), "a");
}

TEST_F(DisplayedClipsTest, MovesWithinTheListOnly) {
  list({"a", "b", "c"});
  clips_.moveSelection(1);
  EXPECT_EQ(selected(), "b");
  clips_.moveSelection(5);
  EXPECT_EQ(selected(), "c");
  clips_.moveSelection(-9);
  EXPECT_EQ(selected(), "a");
}

TEST_F(DisplayedClipsTest, SelectsByPlaceAndByEntry) {
  list({"a", "b", "c"});
  clips_.select(1);
  EXPECT_EQ(selected(), "b");
  EXPECT_TRUE(clips_.select(history_[2].id));
  EXPECT_EQ(clips_.selection(), 2U);
  EXPECT_FALSE(clips_.select(textItem("d").id));
  EXPECT_EQ(selected(), "c");
}

TEST_F(DisplayedClipsTest, FindsWhatItLists) {
  list({"a", "b"});
  EXPECT_EQ(clips_.indexOf(history_[1].id), 1U);
  EXPECT_EQ(clips_.find(history_[1].id)->preview, "b");
  const Uuid gone = history_[1].id;
  take(1);
  clips_.refresh(history_, Selection::keepEntry);
  EXPECT_EQ(clips_.indexOf(gone), std::nullopt);
  EXPECT_EQ(clips_.find(gone), nullptr);
}

TEST_F(DisplayedClipsTest, TheSelectionFollowsItsEntry) {
  list({"a", "b", "c"});
  clips_.select(1);
  history_.insert(history_.begin(), textItem("new"));
  clips_.refresh(history_, Selection::keepEntry);
  EXPECT_EQ(clips_.selection(), 2U);
  EXPECT_EQ(selected(), "b");
}

TEST_F(DisplayedClipsTest, OrItStaysAtItsPlace) {
  list({"a", "b", "c"});
  clips_.select(1);
  history_.insert(history_.begin(), textItem("new"));
  clips_.refresh(history_, Selection::keepIndex);
  EXPECT_EQ(clips_.selection(), 1U);
  EXPECT_EQ(selected(), "a");
}

TEST_F(DisplayedClipsTest, AnEntryThatGoesLeavesTheSelectionAtItsPlaceOrAtTheEnd) {
  list({"a", "b", "c"});
  clips_.select(1);
  take(1);
  clips_.refresh(history_, Selection::keepEntry);
  EXPECT_EQ(selected(), "c");
  take(1);
  clips_.refresh(history_, Selection::keepEntry);
  EXPECT_EQ(selected(), "a");
}

TEST_F(DisplayedClipsTest, ASearchAndAFilterNarrowTheList) {
  list({"apple", "banana"});
  history_.push_back(filesItem({"/fruit/banana.txt"}));
  EXPECT_FALSE(clips_.isNarrowed());
  clips_.filter.query = "banana";
  EXPECT_TRUE(clips_.isNarrowed());
  EXPECT_FALSE(clips_.isFiltered());
  EXPECT_THAT(texts(), ElementsAre("apple", "banana"));
  clips_.refresh(history_, Selection::keepEntry);
  EXPECT_THAT(texts(), ElementsAre("banana", history_[2].preview));
  clips_.filter.type = ClipTypeFilter::text;
  EXPECT_TRUE(clips_.isFiltered());
  clips_.refresh(history_, Selection::keepEntry);
  EXPECT_THAT(texts(), ElementsAre("banana"));
}

TEST_F(DisplayedClipsTest, ClearedFiltersLeaveTheSearch) {
  list({"a"});
  clips_.filter = {"a", ClipTypeFilter::image, "org.example.Source"};
  clips_.clearFilters();
  EXPECT_FALSE(clips_.isFiltered());
  EXPECT_EQ(clips_.filter.query, "a");
  clips_.filter.sourceId = "";  // the entries of nobody
  EXPECT_TRUE(clips_.isFiltered());
}

TEST_F(DisplayedClipsTest, ClearedItKeepsNothingAndBeginsAtTheTop) {
  list({"a", "b"});
  clips_.select(1);
  clips_.filter.query = "b";
  clips_.filter.sourceId = "editor";
  clips_.clear();
  EXPECT_THAT(clips_.items(), IsEmpty());
  EXPECT_EQ(clips_.items().capacity(), 0U);
  EXPECT_FALSE(clips_.isNarrowed());
  EXPECT_FALSE(isAnythingLeftIn(clips_.filter.query));
  clips_.refresh(history_, Selection::keepIndex);
  EXPECT_EQ(selected(), "a");
}

}  // namespace
}  // namespace vantorel
