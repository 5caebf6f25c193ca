// SPDX-License-Identifier: MIT
#include "chrome/LatinKeys.h"

#include <algorithm>
#include <array>

namespace vantorel {
namespace {

struct LatinKey {
  KeyCode keyCode;
  char character;
};

// The main block stands first, so that it is where a character is looked for.
constexpr std::array latinKeys = {
    // clang-format off
    LatinKey{0, 'a'}, LatinKey{1, 's'}, LatinKey{2, 'd'}, LatinKey{3, 'f'}, LatinKey{4, 'h'}, LatinKey{5, 'g'},
    LatinKey{6, 'z'}, LatinKey{7, 'x'}, LatinKey{8, 'c'}, LatinKey{9, 'v'}, LatinKey{11, 'b'}, LatinKey{12, 'q'},
    LatinKey{13, 'w'}, LatinKey{14, 'e'}, LatinKey{15, 'r'}, LatinKey{16, 'y'}, LatinKey{17, 't'}, LatinKey{18, '1'},
    LatinKey{19, '2'}, LatinKey{20, '3'}, LatinKey{21, '4'}, LatinKey{22, '6'}, LatinKey{23, '5'}, LatinKey{24, '='},
    LatinKey{25, '9'}, LatinKey{26, '7'}, LatinKey{27, '-'}, LatinKey{28, '8'}, LatinKey{29, '0'}, LatinKey{30, ']'},
    LatinKey{31, 'o'}, LatinKey{32, 'u'}, LatinKey{33, '['}, LatinKey{34, 'i'}, LatinKey{35, 'p'}, LatinKey{37, 'l'},
    LatinKey{38, 'j'}, LatinKey{39, '\''}, LatinKey{40, 'k'}, LatinKey{41, ';'}, LatinKey{42, '\\'}, LatinKey{43, ','},
    LatinKey{44, '/'}, LatinKey{45, 'n'}, LatinKey{46, 'm'}, LatinKey{47, '.'}, LatinKey{49, ' '}, LatinKey{50, '`'},
    // the keypad
    LatinKey{65, '.'}, LatinKey{67, '*'}, LatinKey{69, '+'}, LatinKey{75, '/'}, LatinKey{78, '-'}, LatinKey{82, '0'},
    LatinKey{83, '1'}, LatinKey{84, '2'}, LatinKey{85, '3'}, LatinKey{86, '4'}, LatinKey{87, '5'}, LatinKey{88, '6'},
    LatinKey{89, '7'}, LatinKey{91, '8'}, LatinKey{92, '9'},
    // clang-format on
};

}  // namespace

std::optional<char> latinCharacter(KeyCode keyCode) {
  const auto* found = std::find_if(latinKeys.begin(), latinKeys.end(),
                                   [keyCode](const auto& key) { return key.keyCode == keyCode; });
  return found != latinKeys.end() ? std::optional(found->character) : std::nullopt;
}

std::optional<KeyCode> keyCodeOfLatin(char character) {
  const auto* found =
      std::find_if(latinKeys.begin(), latinKeys.end(),
                   [character](const auto& key) { return key.character == character; });
  return found != latinKeys.end() ? std::optional(found->keyCode) : std::nullopt;
}

}  // namespace vantorel
