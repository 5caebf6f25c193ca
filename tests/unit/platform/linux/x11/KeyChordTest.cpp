// SPDX-License-Identifier: MIT
#include "platform/linux/x11/KeyChord.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "unit/platform/linux/x11/ScriptedKeyboard.h"

namespace vantorel {
namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;

constexpr KeyAction down(X11KeyCode key) { return {key, KeyDirection::down}; }
constexpr KeyAction up(X11KeyCode key) { return {key, KeyDirection::up}; }

ScriptedKeyboard latin() { return ScriptedKeyboard::usual().key(at::v, {'v'}, {'V'}); }
ScriptedKeyboard hebrew() { return ScriptedKeyboard::usual().key(at::v, {0xce4}); }

KeyPresses held(std::initializer_list<X11KeyCode> physical,
                std::initializer_list<X11KeyCode> synthetic = {}) {
  KeyPresses presses;
  for (const auto key : physical) presses.physical[key] = true;
  for (const auto key : synthetic) presses.synthetic[key] = true;
  presses.seen = presses.physical | presses.synthetic;
  return presses;
}

TEST(KeyChord, PastesByWhatTheProgramKnows) {
  const auto keyboard = latin();
  auto keys = PasteKeys::controlV;
  EXPECT_EQ(chordFor(keyboard.map(), 0, keys), (KeyChord{{at::control}, at::v}));
  keys = PasteKeys::controlShiftV;
  EXPECT_EQ(chordFor(keyboard.map(), 0, keys), (KeyChord{{at::control, at::shift}, at::v}));
  keys = PasteKeys::shiftInsert;
  EXPECT_EQ(chordFor(keyboard.map(), 0, keys), (KeyChord{{at::shift}, at::insert}));
}

TEST(KeyChord, AKeyboardWithoutVInsertsInstead) {
  for (auto keys : {PasteKeys::controlV, PasteKeys::controlShiftV}) {
    EXPECT_EQ(chordFor(hebrew().map(), 0, keys), (KeyChord{{at::shift}, at::insert}));
    EXPECT_EQ(keys, PasteKeys::shiftInsert);
  }
}

TEST(KeyChord, AKeyboardWithoutTheKeysHasNoChord) {
  auto keys = PasteKeys::controlV;
  EXPECT_EQ(chordFor(ScriptedKeyboard().key(at::v, {'v'}).map(), 0, keys), std::nullopt);
  EXPECT_EQ(chordFor(ScriptedKeyboard().map(), 0, keys), std::nullopt);
}

TEST(KeyChord, OtherKeysArePressedByPlaceWithCommandAsControl) {
  const auto keyboard = latin();
  EXPECT_EQ(chordAt(keyboard.map(), keys::escape, 0), (KeyChord{{}, 9}));
  EXPECT_EQ(chordAt(keyboard.map(), 0, flags::command | flags::shift | flags::option),
            (KeyChord{{at::control, at::alt, at::shift}, 38}));
  EXPECT_EQ(chordAt(keyboard.map(), 127, 0), std::nullopt);
  EXPECT_EQ(chordAt(ScriptedKeyboard().map(), 0, flags::option), std::nullopt);
}

TEST(ChordPlan, PressesAndLetsGoInReverse) {
  const auto plan = planChord(latin().map(), {{at::control, at::shift}, at::v}, {});
  EXPECT_THAT(plan.actions, ElementsAre(down(at::control), down(at::shift), down(at::v), up(at::v),
                                        up(at::shift), up(at::control)));
  EXPECT_THAT(plan.suspended, IsEmpty());
}

TEST(ChordPlan, LetsHeldModifiersGoFirst) {
  const auto plan =
      planChord(latin().map(), {{at::control}, at::v}, held({at::super}, {at::shift}));
  EXPECT_THAT(plan.actions, ElementsAre(up(at::shift), up(at::super), down(at::control),
                                        down(at::v), up(at::v), up(at::control)));
  EXPECT_THAT(plan.suspended, ElementsAre(at::shift, at::super));
}

TEST(ChordPlan, LetsTheVeryKeysOfTheChordGoFirst) {
  const auto plan = planChord(latin().map(), {{at::control}, at::v}, held({at::control, at::v}));
  EXPECT_THAT(plan.actions, ElementsAre(up(at::control), up(at::v), down(at::control), down(at::v),
                                        up(at::v), up(at::control)));
  EXPECT_THAT(plan.suspended, ElementsAre(at::control)) << "a letter is not pressed again";
}

TEST(ChordPlan, LeavesLockKeysAlone) {
  const auto plan =
      planChord(latin().map(), {{at::control}, at::v}, held({at::capsLock, at::numLock}));
  EXPECT_THAT(plan.actions,
              ElementsAre(down(at::control), down(at::v), up(at::v), up(at::control)));
  EXPECT_THAT(plan.suspended, IsEmpty());
}

TEST(ChordPlan, LetsOtherHeldKeysGoForGood) {
  constexpr X11KeyCode returnKey = 36;
  const auto plan = planChord(latin().map(), {{at::control}, at::v}, held({returnKey}));
  EXPECT_THAT(plan.actions, ElementsAre(up(returnKey), down(at::control), down(at::v), up(at::v),
                                        up(at::control)));
  EXPECT_THAT(plan.suspended, IsEmpty());
}

TEST(ChordPlan, FreesWhatSyntheticInputHoldsUnseen) {
  KeyPresses presses;
  presses.synthetic[at::control] = true;
  const auto plan = planChord(latin().map(), {{at::control}, at::v}, presses);
  EXPECT_THAT(plan.actions, ElementsAre(up(at::control), down(at::control), down(at::v), up(at::v),
                                        up(at::control)));
  EXPECT_THAT(plan.suspended, IsEmpty());
}

TEST(ChordPlan, AKeyOfTwoModifiersIsLetGoOnce) {
  auto keyboard = latin();
  keyboard.modifier(5, at::alt);
  const auto plan = planChord(keyboard.map(), {{at::control}, at::v}, held({at::alt}));
  EXPECT_THAT(plan.suspended, ElementsAre(at::alt));
}

TEST(KeysToRestore, AreThoseThatFingersHoldStill) {
  const auto before = held({at::shift, at::super});
  EXPECT_THAT(keysToRestore({at::shift, at::super}, before, held({at::super})),
              ElementsAre(at::super));
  EXPECT_THAT(keysToRestore({at::shift, at::super}, before, {}), IsEmpty());
}

TEST(KeysToRestore, IncludeWhatSyntheticInputHeld) {
  const auto before = held({}, {at::shift});
  EXPECT_THAT(keysToRestore({at::shift}, before, {}), ElementsAre(at::shift));
}

}  // namespace
}  // namespace vantorel
