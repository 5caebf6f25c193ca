// SPDX-License-Identifier: MIT
#include "platform/linux/wayland/ChordKeyboard.h"

#include <linux/input-event-codes.h>

#include "platform/linux/windows/KeyCodeTable.h"

namespace vantorel {

KernelChord kernelChordFor(PasteKeys& keys, std::optional<KernelKey> v) {
  if (!v) keys = PasteKeys::shiftInsert;
  switch (keys) {
    case PasteKeys::controlV:
      return {{KEY_LEFTCTRL}, *v};
    case PasteKeys::controlShiftV:
      return {{KEY_LEFTCTRL, KEY_LEFTSHIFT}, *v};
    case PasteKeys::shiftInsert:
      break;
  }
  return {{KEY_LEFTSHIFT}, KEY_INSERT};
}

std::optional<KernelChord> kernelChordAt(KeyCode keyCode, EventFlags eventFlags) {
  const auto key = x11KeyCode(keyCode);
  if (!key) return std::nullopt;
  KernelChord chord{{}, *key - x11KeyOffset};
  if ((eventFlags & (flags::command | flags::control)) != 0) {
    chord.modifiers.push_back(KEY_LEFTCTRL);
  }
  if ((eventFlags & flags::option) != 0) chord.modifiers.push_back(KEY_LEFTALT);
  if ((eventFlags & flags::shift) != 0) chord.modifiers.push_back(KEY_LEFTSHIFT);
  return chord;
}

}  // namespace vantorel
