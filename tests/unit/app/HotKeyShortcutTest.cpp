// SPDX-License-Identifier: MIT
#include "app/HotKeyShortcut.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "fakes/FakeUserDefaults.h"

namespace vantorel {
namespace {

using testing::Optional;

const HotKeyShortcut defaultShortcut;

HotKeyShortcut loaded(DefaultsValue keyCode, DefaultsValue modifiers, DefaultsValue label) {
  FakeUserDefaults defaults;
  defaults.set("shortcut.keyCode", std::move(keyCode));
  defaults.set("shortcut.modifiers", std::move(modifiers));
  defaults.set("shortcut.keyLabel", std::move(label));
  return HotKeyShortcut::load(defaults);
}

DefaultsValue number(std::int64_t value) { return value; }
DefaultsValue text(const char* value) { return std::string(value); }

KeyEvent press(KeyCode keyCode, EventFlags eventFlags, const std::string& characters) {
  return {keyCode, eventFlags, characters, characters};
}

TEST(HotKeyShortcut, IsCommandShiftVUnlessChosenOtherwise) {
  EXPECT_EQ(defaultShortcut.keyCode, 9U);
  EXPECT_EQ(defaultShortcut.modifiers, 0x300U);
  EXPECT_EQ(defaultShortcut.keyLabel, "V");
  EXPECT_EQ(defaultShortcut.display(), "⌘⇧V");
  EXPECT_EQ(HotKeyShortcut::load(FakeUserDefaults()), defaultShortcut);
}

TEST(HotKeyShortcut, ShowsCommandFirstAndControlLast) {
  EXPECT_EQ((HotKeyShortcut{49, 0x900, "Space"}).display(), "⌘⌥Space");
  EXPECT_EQ((HotKeyShortcut{40, 0x1B00, "K"}).display(), "⌘⇧⌥⌃K");
  EXPECT_EQ((HotKeyShortcut{40, 0x1800, "K"}).display(), "⌥⌃K");
}

TEST(HotKeyShortcut, LoadsWhatItSaved) {
  FakeUserDefaults defaults;
  const HotKeyShortcut shortcut{40, 0x1800, "K"};
  shortcut.save(defaults);
  EXPECT_THAT(defaults.integer("shortcut.keyCode"), Optional(40));
  EXPECT_THAT(defaults.integer("shortcut.modifiers"), Optional(0x1800));
  EXPECT_THAT(defaults.string("shortcut.keyLabel"), Optional(std::string("K")));
  EXPECT_EQ(HotKeyShortcut::load(defaults), shortcut);
}

TEST(HotKeyShortcut, LoadsTheDefaultWhenAnythingIsMissingOrOfAnotherType) {
  for (const auto* missing : {"shortcut.keyCode", "shortcut.modifiers", "shortcut.keyLabel"}) {
    FakeUserDefaults defaults;
    HotKeyShortcut{40, 0x1800, "K"}.save(defaults);
    defaults.remove(missing);
    EXPECT_EQ(HotKeyShortcut::load(defaults), defaultShortcut) << missing;
    defaults.set(missing, true);
    EXPECT_EQ(HotKeyShortcut::load(defaults), defaultShortcut) << missing;
  }
}

TEST(HotKeyShortcut, LoadsTheDefaultForAKeyThatIsOnNoKeyboard) {
  EXPECT_EQ(loaded(number(127), number(0x300), text("K")).keyCode, 127U);
  EXPECT_EQ(loaded(number(0), number(0x300), text("K")).keyCode, 0U);
  for (const std::int64_t keyCode : {std::int64_t{128}, std::int64_t{-1}, std::int64_t{1} << 32}) {
    EXPECT_EQ(loaded(number(keyCode), number(0x300), text("K")), defaultShortcut) << keyCode;
  }
}

TEST(HotKeyShortcut, LoadsTheDefaultForTooFewModifiers) {
  for (const std::int64_t modifiers :
       {std::int64_t{0}, std::int64_t{0x200}, std::int64_t{0x100}, std::int64_t{0x800},
        std::int64_t{0x1000}, std::int64_t{0x101}, std::int64_t{-1},
        (std::int64_t{1} << 32) + 0x300}) {
    EXPECT_EQ(loaded(number(40), number(modifiers), text("K")), defaultShortcut) << modifiers;
  }
}

TEST(HotKeyShortcut, LoadsEveryPairOfModifiersWithOneThatIsNotShift) {
  for (const std::int64_t modifiers : {0x300, 0x900, 0x1100, 0xA00, 0x1200, 0x1800, 0x1B00}) {
    EXPECT_EQ(loaded(number(40), number(modifiers), text("K")).modifiers, modifiers);
  }
}

TEST(HotKeyShortcut, LoadsTheDefaultForALabelThatIsNoSingleLetterOrDigit) {
  for (const auto* label :
       {"", "KK", "space", "Space ", "-", " ", "e\u0301", "\xC3", "K\xCC", "🙂"}) {
    EXPECT_EQ(loaded(number(40), number(0x300), text(label)), defaultShortcut) << label;
  }
}

TEST(HotKeyShortcut, LoadsLettersAndDigitsOfEveryScriptAndSpace) {
  for (const auto* label : {"É", "ש", "7", "٣", "k", "漢", "𝔎", "Space"}) {
    EXPECT_EQ(loaded(number(40), number(0x300), text(label)).keyLabel, label);
  }
}

TEST(HotKeyShortcut, TakesOptionControlKFromAKeyPress) {
  EXPECT_THAT(HotKeyShortcut::fromEvent(press(40, flags::option | flags::control, "k")),
              Optional(HotKeyShortcut{40, 0x1800, "K"}));
}

TEST(HotKeyShortcut, RefusesAKeyPressWithTooFewModifiers) {
  for (const auto eventFlags :
       {EventFlags{0}, flags::shift, flags::command, flags::option, flags::control,
        flags::shift | flags::capsLock, flags::command | flags::capsLock}) {
    EXPECT_EQ(HotKeyShortcut::fromEvent(press(40, eventFlags, "k")), std::nullopt) << eventFlags;
  }
}

TEST(HotKeyShortcut, TakesShiftWithOneOtherModifier) {
  EXPECT_THAT(HotKeyShortcut::fromEvent(press(40, flags::shift | flags::control, "K")),
              Optional(HotKeyShortcut{40, 0x1200, "K"}));
}

TEST(HotKeyShortcut, DisregardsCapsLockAndModifiersItDoesNotKnow) {
  const auto eventFlags = flags::command | flags::option | flags::capsLock | (EventFlags{1} << 23);
  EXPECT_THAT(HotKeyShortcut::fromEvent(press(40, eventFlags, "k")),
              Optional(HotKeyShortcut{40, 0x900, "K"}));
}

TEST(HotKeyShortcut, CallsTheSpaceBarSpaceWhateverItTypes) {
  for (const auto* characters : {" ", "", "x"}) {
    EXPECT_THAT(HotKeyShortcut::fromEvent(press(49, flags::command | flags::option, characters)),
                Optional(HotKeyShortcut{49, 0x900, "Space"}));
  }
}

TEST(HotKeyShortcut, RefusesAKeyThatTypesNoSingleLetterOrDigit) {
  for (const auto* characters : {"", "\t", "-", "ab", "\x1B", "\xFF"}) {
    EXPECT_EQ(HotKeyShortcut::fromEvent(press(40, flags::command | flags::shift, characters)),
              std::nullopt)
        << characters;
  }
}

TEST(HotKeyShortcut, LabelsAKeyInUpperCase) {
  const auto label = [](const char* characters) {
    const auto shortcut =
        HotKeyShortcut::fromEvent(press(40, flags::command | flags::shift, characters));
    return shortcut ? shortcut->keyLabel : "none";
  };
  EXPECT_EQ(label("é"), "É");
  EXPECT_EQ(label("ש"), "ש");
  EXPECT_EQ(label("i"), "I");
  EXPECT_EQ(label("5"), "5");
}

TEST(HotKeyShortcut, ReadsTheKeyAndNotWhatItsModifiersMakeOfIt) {
  const KeyEvent event{40, flags::option | flags::control, "\x0B", "k"};
  EXPECT_THAT(HotKeyShortcut::fromEvent(event), Optional(HotKeyShortcut{40, 0x1800, "K"}));
}

}  // namespace
}  // namespace vantorel
