// SPDX-License-Identifier: MIT
#include "panel/RowMenu.h"

#include <gmock/gmock.h>

namespace vantorel {
namespace {

using testing::ElementsAre;

enum class Pins { free, full };

RowContent row(ClipKind kind, bool pinned, Pins pins = Pins::free) {
  RowContent content;
  content.kind = kind;
  content.pinned = pinned;
  content.canPin = pinned || pins == Pins::free;
  return content;
}

/// Titles from the top; separators as "-".
std::vector<std::string> titles(const RowContent& content) {
  std::vector<std::string> result;
  for (const auto& line : rowMenu(content)) result.push_back(line.action ? line.title : "-");
  return result;
}

RowMenuLine lineFor(const RowContent& content, RowAction action) {
  for (const auto& line : rowMenu(content)) {
    if (line.action == action) return line;
  }
  ADD_FAILURE() << "No such line";
  return {};
}

TEST(RowMenu, OnlyTextCanBePastedAsPlainText) {
  EXPECT_THAT(titles(row(ClipKind::text, false)),
              ElementsAre("Paste as Plain Text", "Pin", "-", "Delete"));
  EXPECT_THAT(titles(row(ClipKind::image, false)), ElementsAre("Pin", "-", "Delete"));
  EXPECT_THAT(titles(row(ClipKind::files, false)), ElementsAre("Pin", "-", "Delete"));
}

TEST(RowMenu, OnlyPinsAreRenamedAndMoved) {
  EXPECT_THAT(titles(row(ClipKind::text, true)),
              ElementsAre("Paste as Plain Text", "Unpin", "Rename…", "Move Up", "Move Down", "-",
                          "Delete"));
  EXPECT_THAT(titles(row(ClipKind::image, true)),
              ElementsAre("Unpin", "Rename…", "Move Up", "Move Down", "-", "Delete"));
}

TEST(RowMenu, EveryLineDoesWhatItSays) {
  std::vector<RowAction> actions;
  for (const auto& line : rowMenu(row(ClipKind::text, true))) {
    if (line.action) actions.push_back(*line.action);
  }
  EXPECT_THAT(actions, ElementsAre(RowAction::pastePlain, RowAction::togglePin, RowAction::rename,
                                   RowAction::moveUp, RowAction::moveDown, RowAction::remove));
}

TEST(RowMenu, ALineThatNobodyServesDoesNothing) {
  for (const auto action : {RowAction::pastePlain, RowAction::togglePin, RowAction::rename,
                            RowAction::moveUp, RowAction::moveDown, RowAction::remove}) {
    EXPECT_NO_THROW(perform({}, action, Uuid::random()));
  }
}

TEST(RowMenu, WithFivePinsAnotherCannotBePinnedAndTheMenuSaysWhy) {
  const auto line = lineFor(row(ClipKind::text, false, Pins::full), RowAction::togglePin);
  EXPECT_EQ(line.title, "Pin");
  EXPECT_FALSE(line.enabled);
  EXPECT_EQ(line.toolTip, "Up to 5 pins. Unpin an item first.");
}

TEST(RowMenu, WithFivePinsAPinCanStillBeTakenAway) {
  const auto line = lineFor(row(ClipKind::text, true, Pins::full), RowAction::togglePin);
  EXPECT_EQ(line.title, "Unpin");
  EXPECT_TRUE(line.enabled);
  EXPECT_EQ(line.toolTip, "Unpin (⌘P)");
}

TEST(RowMenu, ThePinNamesItsKey) {
  EXPECT_EQ(lineFor(row(ClipKind::image, false), RowAction::togglePin).toolTip, "Pin (⌘P)");
}

}  // namespace
}  // namespace vantorel
