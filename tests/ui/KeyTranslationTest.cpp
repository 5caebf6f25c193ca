// SPDX-License-Identifier: MIT
#include "chrome/KeyTranslation.h"

#include <gtest/gtest.h>

#include <QKeyEvent>

namespace vantorel {
namespace {

// Scan codes of places on the keyboard, as X11 numbers them.
constexpr quint32 scan1 = 10;
constexpr quint32 scan2 = 11;
constexpr quint32 scanP = 33;
constexpr quint32 scanF = 41;
constexpr quint32 scanSemicolon = 47;

/// Knows the few places that these tests use.
std::optional<KeyCode> placeOf(std::uint32_t scanCode) {
  switch (scanCode) {
    case scan1:
      return 18;
    case scan2:
      return 19;
    case scanP:
      return 35;
    case scanF:
      return 3;
    case scanSemicolon:
      return 41;
    default:
      return std::nullopt;
  }
}

KeyEvent press(int key, Qt::KeyboardModifiers modifiers, quint32 scanCode, const QString& text) {
  const QKeyEvent event(QEvent::KeyPress, key, modifiers, scanCode, 0, 0, text);
  return translated(event, placeOf);
}

KeyEvent press(int key, Qt::KeyboardModifiers modifiers = Qt::NoModifier) {
  return press(key, modifiers, 0, {});
}

TEST(KeyTranslation, FunctionKeysHaveTheirCodes) {
  EXPECT_EQ(press(Qt::Key_Return).keyCode, keys::returnKey);
  EXPECT_EQ(press(Qt::Key_Enter, Qt::KeypadModifier).keyCode, keys::keypadEnter);
  EXPECT_EQ(press(Qt::Key_Space).keyCode, keys::space);
  EXPECT_EQ(press(Qt::Key_Backspace).keyCode, keys::deleteKey);
  EXPECT_EQ(press(Qt::Key_Delete).keyCode, keys::forwardDelete);
  EXPECT_EQ(press(Qt::Key_Escape).keyCode, keys::escape);
  EXPECT_EQ(press(Qt::Key_Up).keyCode, keys::upArrow);
  EXPECT_EQ(press(Qt::Key_Down).keyCode, keys::downArrow);
}

TEST(KeyTranslation, AFunctionKeyCountsWhereverTheUserHasPutIt) {
  EXPECT_EQ(press(Qt::Key_Escape, Qt::NoModifier, scanP, {}).keyCode, keys::escape);
}

TEST(KeyTranslation, ControlAndSuperAreCommandAltIsOption) {
  EXPECT_EQ(press(Qt::Key_P, Qt::ControlModifier).flags, flags::command);
  EXPECT_EQ(press(Qt::Key_P, Qt::MetaModifier).flags, flags::command);
  EXPECT_EQ(press(Qt::Key_P, Qt::AltModifier).flags, flags::option);
  EXPECT_EQ(press(Qt::Key_P, Qt::ShiftModifier | Qt::ControlModifier).flags,
            flags::shift | flags::command);
  EXPECT_EQ(press(Qt::Key_P).flags, 0U);
}

TEST(KeyTranslation, KeysThatWalkAreKnownByWhatTheyDo) {
  EXPECT_EQ(press(Qt::Key_PageUp).keyCode, keys::pageUp);
  EXPECT_EQ(press(Qt::Key_PageDown).keyCode, keys::pageDown);
  EXPECT_EQ(press(Qt::Key_Home).keyCode, keys::home);
  EXPECT_EQ(press(Qt::Key_End).keyCode, keys::end);
  EXPECT_EQ(press(Qt::Key_Menu).keyCode, keys::menu);
  EXPECT_EQ(press(Qt::Key_F10).keyCode, keys::f10);
}

TEST(KeyTranslation, LettersAreWhatTheKeyPrints) {
  const auto plain = press(Qt::Key_P, Qt::NoModifier, scanP, "p");
  EXPECT_EQ(plain.characters, "p");
  EXPECT_EQ(plain.charactersIgnoringModifiers, "p");
  EXPECT_EQ(plain.keyCode, KeyCode{35});
  EXPECT_EQ(press(Qt::Key_P, Qt::ShiftModifier, scanP, "P").charactersIgnoringModifiers, "P");
  EXPECT_EQ(press(Qt::Key_P, Qt::ControlModifier, scanP, "\x10").charactersIgnoringModifiers, "p");
}

TEST(KeyTranslation, ALatinLayoutCountsAsItPrints) {
  // Dvorak prints "u" where a US keyboard has "f".
  EXPECT_EQ(press(Qt::Key_U, Qt::ControlModifier, scanF, "\x15").charactersIgnoringModifiers, "u");
  EXPECT_EQ(
      press(Qt::Key_Odiaeresis, Qt::ControlModifier, scanSemicolon, {}).charactersIgnoringModifiers,
      "ö");
}

TEST(KeyTranslation, OtherScriptsCountAsTheirPlaces) {
  constexpr int hebrewPe = 0x05E4;
  constexpr int cyrillicA = 0x0410;
  const auto hebrew = press(hebrewPe, Qt::ControlModifier, scanP, {});
  EXPECT_EQ(hebrew.charactersIgnoringModifiers, "p");
  EXPECT_EQ(hebrew.keyCode, KeyCode{35});
  EXPECT_EQ(press(hebrewPe, Qt::NoModifier, scanP, "פ").characters, "פ");
  EXPECT_EQ(press(cyrillicA, Qt::ControlModifier, scanF, {}).charactersIgnoringModifiers, "f");
  EXPECT_EQ(press(cyrillicA, Qt::ControlModifier | Qt::ShiftModifier, scanF, {})
                .charactersIgnoringModifiers,
            "F");
}

TEST(KeyTranslation, DigitsOfAShiftedRowCountAsDigits) {
  EXPECT_EQ(press(Qt::Key_Ampersand, Qt::ControlModifier, scan1, {}).charactersIgnoringModifiers,
            "1");
  EXPECT_EQ(press(Qt::Key_Eacute, Qt::ControlModifier, scan2, {}).charactersIgnoringModifiers, "2");
}

TEST(KeyTranslation, AShiftedDigitIsWhatItPrints) {
  EXPECT_EQ(press(Qt::Key_Exclam, Qt::ControlModifier | Qt::ShiftModifier, scan1, {})
                .charactersIgnoringModifiers,
            "!");
  EXPECT_EQ(press(Qt::Key_1, Qt::ControlModifier | Qt::ShiftModifier, scan1, {})
                .charactersIgnoringModifiers,
            "1");
}

TEST(KeyTranslation, WithoutPlacesTheLayoutDecides) {
  const QKeyEvent event(QEvent::KeyPress, Qt::Key_P, Qt::ControlModifier, "\x10");
  const auto result = translated(event, {});
  EXPECT_EQ(result.keyCode, KeyCode{35});
  EXPECT_EQ(result.charactersIgnoringModifiers, "p");
}

TEST(KeyTranslation, KeysWithoutACharacterHaveNone) {
  const auto shift = press(Qt::Key_Shift, Qt::ShiftModifier);
  EXPECT_EQ(shift.keyCode, unknownKeyCode);
  EXPECT_EQ(shift.charactersIgnoringModifiers, "");
  EXPECT_EQ(press(0).charactersIgnoringModifiers, "");
  EXPECT_EQ(press(Qt::Key_unknown).charactersIgnoringModifiers, "");
  EXPECT_EQ(press(-1).charactersIgnoringModifiers, "");
}

TEST(KeyTranslation, AShortcutTellsSuperFromControl) {
  const auto flagsOf = [](Qt::KeyboardModifiers modifiers) {
    const QKeyEvent event(QEvent::KeyPress, Qt::Key_P, modifiers, scanP, 0, 0);
    return translatedForShortcut(event, placeOf).flags;
  };
  EXPECT_EQ(flagsOf(Qt::MetaModifier), flags::command);
  EXPECT_EQ(flagsOf(Qt::ControlModifier), flags::control);
  EXPECT_EQ(flagsOf(Qt::MetaModifier | Qt::ShiftModifier | Qt::AltModifier | Qt::ControlModifier),
            flags::command | flags::shift | flags::option | flags::control);
}

TEST(KeyTranslation, AShortcutMeansTheKeyOfADigitWhateverShiftMakesOfIt) {
  const auto charactersOf = [](int key, Qt::KeyboardModifiers modifiers, quint32 scanCode) {
    const QKeyEvent event(QEvent::KeyPress, key, modifiers, scanCode, 0, 0);
    return translatedForShortcut(event, placeOf).charactersIgnoringModifiers;
  };
  const auto superShift = Qt::MetaModifier | Qt::ShiftModifier;
  EXPECT_EQ(charactersOf(Qt::Key_Exclam, superShift, scan1), "1");
  EXPECT_EQ(charactersOf(Qt::Key_1, superShift, scan1), "1");
  EXPECT_EQ(charactersOf(Qt::Key_Ampersand, Qt::MetaModifier, scan1), "1");
  EXPECT_EQ(charactersOf(Qt::Key_At, superShift, scan2), "2");
  EXPECT_EQ(charactersOf(Qt::Key_Colon, superShift, scanSemicolon), ":");
}

TEST(KeyTranslation, ModifierKeysAreKnown) {
  const auto isModifier = [](Qt::Key key) {
    return isModifierKey(QKeyEvent(QEvent::KeyPress, key, Qt::NoModifier));
  };
  for (const auto key : {Qt::Key_Shift, Qt::Key_Control, Qt::Key_Alt, Qt::Key_AltGr, Qt::Key_Meta,
                         Qt::Key_Super_L, Qt::Key_Super_R, Qt::Key_CapsLock, Qt::Key_NumLock}) {
    EXPECT_TRUE(isModifier(key)) << key;
  }
  for (const auto key : {Qt::Key_A, Qt::Key_Space, Qt::Key_Escape, Qt::Key_F1}) {
    EXPECT_FALSE(isModifier(key)) << key;
  }
}

}  // namespace
}  // namespace vantorel
