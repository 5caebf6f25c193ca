// SPDX-License-Identifier: MIT
#include "chrome/KeyTranslation.h"

#include <QKeyEvent>
#include <algorithm>
#include <array>
#include <optional>

#include "chrome/LatinKeys.h"

namespace vantorel {
namespace {

EventFlags translatedFlags(Qt::KeyboardModifiers modifiers) {
  EventFlags result = 0;
  if (modifiers & Qt::ShiftModifier) result |= flags::shift;
  if (modifiers & Qt::AltModifier) result |= flags::option;
  if (modifiers & (Qt::ControlModifier | Qt::MetaModifier)) result |= flags::command;
  return result;
}

/// Keys that are known by what they do, wherever the user has put them.
std::optional<KeyCode> functionKeyCode(const QKeyEvent& event) {
  switch (event.key()) {
    case Qt::Key_Return:
      return keys::returnKey;
    case Qt::Key_Enter:
      return keys::keypadEnter;
    case Qt::Key_Space:
      return keys::space;
    case Qt::Key_Backspace:
      return keys::deleteKey;
    case Qt::Key_Delete:
      return keys::forwardDelete;
    case Qt::Key_Escape:
      return keys::escape;
    case Qt::Key_Up:
      return keys::upArrow;
    case Qt::Key_Down:
      return keys::downArrow;
    case Qt::Key_PageUp:
      return keys::pageUp;
    case Qt::Key_PageDown:
      return keys::pageDown;
    case Qt::Key_Home:
      return keys::home;
    case Qt::Key_End:
      return keys::end;
    case Qt::Key_Menu:
      return keys::menu;
    case Qt::Key_F10:
      return keys::f10;
    default:
      return std::nullopt;
  }
}

/// What the layout prints on the key; nothing for keys without a character.
QChar printedOn(const QKeyEvent& event) {
  constexpr int firstFunctionKey = 0x01000000;
  constexpr int lastCharacter = 0xFFFF;
  const int key = event.key();
  if (key <= 0 || key >= firstFunctionKey || key > lastCharacter) return {};
  const QChar printed(static_cast<char16_t>(key));
  return event.modifiers() & Qt::ShiftModifier ? printed : printed.toLower();
}

std::optional<KeyCode> place(const QKeyEvent& event, const KeyCodeForScanCode& keyCodeForScanCode) {
  if (keyCodeForScanCode && event.nativeScanCode() != 0) {
    if (const auto code = keyCodeForScanCode(event.nativeScanCode())) return code;
  }
  const char printed = printedOn(event).toLower().toLatin1();
  return printed != 0 ? keyCodeOfLatin(printed) : std::nullopt;
}

bool isDigit(char c) { return c >= '0' && c <= '9'; }

QString withoutModifiers(const QKeyEvent& event, std::optional<KeyCode> keyCode) {
  const QChar printed = printedOn(event);
  const auto onLatinKeyboard = keyCode ? latinCharacter(*keyCode) : std::nullopt;
  if (!onLatinKeyboard) return printed.isNull() ? QString() : QString(printed);

  const bool shift = event.modifiers() & Qt::ShiftModifier;
  const QChar latin = QLatin1Char(*onLatinKeyboard);
  if (isDigit(*onLatinKeyboard) && !shift) return latin;
  const bool foreign = printed.isLetter() && printed.script() != QChar::Script_Latin;
  if (foreign) return shift ? latin.toUpper() : latin;
  return printed.isNull() ? QString() : QString(printed);
}

EventFlags shortcutFlags(Qt::KeyboardModifiers modifiers) {
  EventFlags result = 0;
  if (modifiers & Qt::ShiftModifier) result |= flags::shift;
  if (modifiers & Qt::AltModifier) result |= flags::option;
  if (modifiers & Qt::ControlModifier) result |= flags::control;
  if (modifiers & Qt::MetaModifier) result |= flags::command;
  return result;
}

}  // namespace

KeyEvent translated(const QKeyEvent& event, const KeyCodeForScanCode& keyCodeForScanCode) {
  const auto keyCode = place(event, keyCodeForScanCode);
  KeyEvent result;
  result.keyCode = functionKeyCode(event).value_or(keyCode.value_or(unknownKeyCode));
  result.flags = translatedFlags(event.modifiers());
  result.characters = event.text().toStdString();
  result.charactersIgnoringModifiers = withoutModifiers(event, keyCode).toStdString();
  return result;
}

KeyEvent translatedForShortcut(const QKeyEvent& event,
                               const KeyCodeForScanCode& keyCodeForScanCode) {
  KeyEvent result = translated(event, keyCodeForScanCode);
  result.flags = shortcutFlags(event.modifiers());
  const auto keyCode = place(event, keyCodeForScanCode);
  const auto latin = keyCode ? latinCharacter(*keyCode) : std::nullopt;
  if (latin && isDigit(*latin) && !printedOn(event).isLetterOrNumber()) {
    result.charactersIgnoringModifiers = std::string(1, *latin);
  }
  return result;
}

bool isModifierKey(const QKeyEvent& event) {
  constexpr std::array modifierKeys = {
      Qt::Key_Shift,   Qt::Key_Control,    Qt::Key_Meta,       Qt::Key_Alt,     Qt::Key_AltGr,
      Qt::Key_Super_L, Qt::Key_Super_R,    Qt::Key_Hyper_L,    Qt::Key_Hyper_R, Qt::Key_CapsLock,
      Qt::Key_NumLock, Qt::Key_ScrollLock, Qt::Key_Mode_switch};
  return std::find(modifierKeys.begin(), modifierKeys.end(), event.key()) != modifierKeys.end();
}

}  // namespace vantorel
