// SPDX-License-Identifier: MIT
#pragma once

#include <string>
#include <string_view>

namespace vantorel {

/// How a language pairs the letters i: nearly all pair I with i, the Turkic ones I with ı and İ
/// with i.
enum class CaseRules { general, turkic };

/// Those of the user's locale. Any thread.
[[nodiscard]] CaseRules currentCaseRules();

/// The text in the form in which two texts are equal when they differ in nothing but case and in
/// how their characters are composed; diacritics stay. Folding a text piece by piece gives the same
/// as folding it whole wherever the next piece begins with an ASCII character. Any thread.
[[nodiscard]] std::string foldedForSearch(std::string_view text,
                                          CaseRules rules = currentCaseRules());

/// Whether one folded text occurs in another, ending at the end of a character: a letter is not
/// found in that letter with a diacritic. Everything contains the empty text. Any thread.
[[nodiscard]] bool containsFolded(std::string_view haystack, std::string_view needle);

/// Whether every text that contains `longer` also contains `shorter`, as far as their beginnings
/// tell. Both are folded.
[[nodiscard]] bool narrows(std::string_view longer, std::string_view shorter);

}  // namespace vantorel
