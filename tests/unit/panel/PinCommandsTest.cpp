// SPDX-License-Identifier: MIT
#include "panel/PinCommands.h"

#include <gmock/gmock.h>

#include <memory>

#include "fakes/TestStore.h"

namespace vantorel {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

class PinCommandsTest : public testing::Test {
 protected:
  PinCommandsTest() {
    pins_->onChange = [this](Uuid id) { changed_.push_back(id); };
    pins_->onLimitReached = [this] { ++limitReached_; };
  }
  Uuid addPin(const char* text) {
    const Uuid id = store_.addText(text);
    EXPECT_EQ(store_->togglePinned(id), PinResult::toggled);
    return id;
  }

  TestStore store_;
  std::unique_ptr<PinCommands> pins_ = std::make_unique<PinCommands>(*store_, store_.dispatch());
  std::vector<Uuid> changed_;
  int limitReached_ = 0;
};

TEST_F(PinCommandsTest, TogglesAndTells) {
  const Uuid id = store_.addText("a");
  pins_->toggle(id);
  EXPECT_TRUE(store_.item(id).pinned());
  pins_->toggle(id);
  EXPECT_FALSE(store_.item(id).pinned());
  EXPECT_THAT(changed_, ElementsAre(id, id));
}

TEST_F(PinCommandsTest, TellsTheLimitAndNothingOfWhatIsGone) {
  for (std::size_t i = 0; i < ClipStore::maxPinnedItems; ++i) addPin(std::to_string(i).c_str());
  pins_->toggle(store_.addText("one too many"));
  EXPECT_EQ(limitReached_, 1);
  pins_->toggle(textItem("gone").id);
  EXPECT_EQ(limitReached_, 1);
  EXPECT_THAT(changed_, IsEmpty());
}

TEST_F(PinCommandsTest, MovesBothWaysAndNotBeyondTheEnds) {
  const Uuid a = addPin("a");
  addPin("b");
  store_.addText("none");
  pins_->move(a, 1);
  EXPECT_THAT(store_.texts(), ElementsAre("b", "a", "none"));
  pins_->move(a, 1);
  EXPECT_THAT(store_.texts(), ElementsAre("b", "a", "none"));
  pins_->move(a, -1);
  EXPECT_THAT(store_.texts(), ElementsAre("a", "b", "none"));
  pins_->move(a, -1);
  EXPECT_THAT(changed_, ElementsAre(a, a));
}

TEST_F(PinCommandsTest, MovesNothingButPins) {
  addPin("a");
  pins_->move(store_.addText("none"), -1);
  EXPECT_THAT(changed_, IsEmpty());
}

TEST_F(PinCommandsTest, DropsInALaterTurn) {
  const Uuid a = addPin("a");
  const Uuid b = addPin("b");
  pins_->drop(a, b, DropPlace::after);
  EXPECT_THAT(store_.texts(), ElementsAre("a", "b"));
  store_.dispatch().runQueued();
  EXPECT_THAT(store_.texts(), ElementsAre("b", "a"));
  EXPECT_THAT(changed_, ElementsAre(a));
  pins_->drop(a, b, DropPlace::before);
  store_.dispatch().runQueued();
  EXPECT_THAT(store_.texts(), ElementsAre("a", "b"));
}

TEST_F(PinCommandsTest, ADropAfterItsEndIsNone) {
  const Uuid a = addPin("a");
  const Uuid b = addPin("b");
  pins_->drop(a, b, DropPlace::after);
  pins_.reset();
  store_.dispatch().runQueued();
  EXPECT_THAT(store_.texts(), ElementsAre("a", "b"));
}

}  // namespace
}  // namespace vantorel
