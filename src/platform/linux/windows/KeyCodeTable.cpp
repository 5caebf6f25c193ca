// SPDX-License-Identifier: MIT
#include "platform/linux/windows/KeyCodeTable.h"

#include <algorithm>
#include <array>

namespace vantorel {

namespace {

struct Pair {
  std::uint8_t keyCode;
  std::uint8_t kernelKey;
};

constexpr std::array<Pair, 119> table = {
    Pair{0, 30},     // A
    Pair{1, 31},     // S
    Pair{2, 32},     // D
    Pair{3, 33},     // F
    Pair{4, 35},     // H
    Pair{5, 34},     // G
    Pair{6, 44},     // Z
    Pair{7, 45},     // X
    Pair{8, 46},     // C
    Pair{9, 47},     // V
    Pair{10, 86},    // the key between left Shift and Z
    Pair{11, 48},    // B
    Pair{12, 16},    // Q
    Pair{13, 17},    // W
    Pair{14, 18},    // E
    Pair{15, 19},    // R
    Pair{16, 21},    // Y
    Pair{17, 20},    // T
    Pair{18, 2},     // 1
    Pair{19, 3},     // 2
    Pair{20, 4},     // 3
    Pair{21, 5},     // 4
    Pair{22, 7},     // 6
    Pair{23, 6},     // 5
    Pair{24, 13},    // equals
    Pair{25, 10},    // 9
    Pair{26, 8},     // 7
    Pair{27, 12},    // minus
    Pair{28, 9},     // 8
    Pair{29, 11},    // 0
    Pair{30, 27},    // right bracket
    Pair{31, 24},    // O
    Pair{32, 22},    // U
    Pair{33, 26},    // left bracket
    Pair{34, 23},    // I
    Pair{35, 25},    // P
    Pair{36, 28},    // Return
    Pair{37, 38},    // L
    Pair{38, 36},    // J
    Pair{39, 40},    // quote
    Pair{40, 37},    // K
    Pair{41, 39},    // semicolon
    Pair{42, 43},    // backslash
    Pair{43, 51},    // comma
    Pair{44, 53},    // slash
    Pair{45, 49},    // N
    Pair{46, 50},    // M
    Pair{47, 52},    // period
    Pair{48, 15},    // Tab
    Pair{49, 57},    // space
    Pair{50, 41},    // grave
    Pair{51, 14},    // backspace
    Pair{53, 1},     // Escape
    Pair{54, 126},   // right Super
    Pair{55, 125},   // left Super
    Pair{56, 42},    // left Shift
    Pair{57, 58},    // Caps Lock
    Pair{58, 56},    // left Alt
    Pair{59, 29},    // left Control
    Pair{60, 54},    // right Shift
    Pair{61, 100},   // right Alt
    Pair{62, 97},    // right Control
    Pair{64, 187},   // F17
    Pair{65, 83},    // keypad period
    Pair{67, 55},    // keypad asterisk
    Pair{69, 78},    // keypad plus
    Pair{71, 69},    // NumLock
    Pair{72, 115},   // volume up
    Pair{73, 114},   // volume down
    Pair{74, 113},   // mute
    Pair{75, 98},    // keypad slash
    Pair{76, 96},    // keypad Enter
    Pair{78, 74},    // keypad minus
    Pair{79, 188},   // F18
    Pair{80, 189},   // F19
    Pair{81, 117},   // keypad equals
    Pair{82, 82},    // keypad 0
    Pair{83, 79},    // keypad 1
    Pair{84, 80},    // keypad 2
    Pair{85, 81},    // keypad 3
    Pair{86, 75},    // keypad 4
    Pair{87, 76},    // keypad 5
    Pair{88, 77},    // keypad 6
    Pair{89, 71},    // keypad 7
    Pair{90, 190},   // F20
    Pair{91, 72},    // keypad 8
    Pair{92, 73},    // keypad 9
    Pair{93, 124},   // yen
    Pair{94, 89},    // underscore of Japanese keyboards
    Pair{95, 121},   // keypad comma
    Pair{96, 63},    // F5
    Pair{97, 64},    // F6
    Pair{98, 65},    // F7
    Pair{99, 61},    // F3
    Pair{100, 66},   // F8
    Pair{101, 67},   // F9
    Pair{102, 94},   // left of the space bar, Japanese
    Pair{103, 87},   // F11
    Pair{104, 92},   // right of the space bar, Japanese
    Pair{105, 183},  // F13
    Pair{106, 186},  // F16
    Pair{107, 184},  // F14
    Pair{109, 68},   // F10
    Pair{110, 127},  // menu
    Pair{111, 88},   // F12
    Pair{113, 185},  // F15
    Pair{114, 110},  // Insert
    Pair{115, 102},  // Home
    Pair{116, 104},  // page up
    Pair{117, 111},  // forward delete
    Pair{118, 62},   // F4
    Pair{119, 107},  // End
    Pair{120, 60},   // F2
    Pair{121, 109},  // page down
    Pair{122, 59},   // F1
    Pair{123, 105},  // left
    Pair{124, 106},  // right
    Pair{125, 108},  // down
    Pair{126, 103},  // up
};

}  // namespace

std::optional<X11KeyCode> x11KeyCode(KeyCode keyCode) {
  const auto* found = std::find_if(table.begin(), table.end(),
                                   [keyCode](const Pair& pair) { return pair.keyCode == keyCode; });
  if (found == table.end()) return std::nullopt;
  return static_cast<X11KeyCode>(found->kernelKey + x11KeyOffset);
}

std::optional<KeyCode> keyCodeFromX11(std::uint32_t x11KeyCode) {
  const auto* found = std::find_if(table.begin(), table.end(), [x11KeyCode](const Pair& pair) {
    return pair.kernelKey + x11KeyOffset == x11KeyCode;
  });
  if (found == table.end()) return std::nullopt;
  return found->keyCode;
}

bool isModifierKey(KeyCode keyCode) {
  constexpr std::array modifiers = {keys::rightCommand, keys::command,     keys::shift,
                                    keys::capsLock,     keys::option,      keys::control,
                                    keys::rightShift,   keys::rightOption, keys::rightControl};
  return std::find(modifiers.begin(), modifiers.end(), keyCode) != modifiers.end();
}

}  // namespace vantorel
