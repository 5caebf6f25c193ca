// SPDX-License-Identifier: MIT
#include "text/NameOrder.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <string>
#include <vector>

namespace vantorel {
namespace {

std::vector<std::string> sorted(std::vector<std::string> names) {
  const NameOrder order;
  std::stable_sort(names.begin(), names.end(),
                   [&](const auto& a, const auto& b) { return order(a, b); });
  return names;
}

TEST(NameOrder, DoesNotLookAtTheCase) {
  EXPECT_EQ(sorted({"Safari", "notes", "Mail"}),
            (std::vector<std::string>{"Mail", "notes", "Safari"}));
  const NameOrder order;
  EXPECT_FALSE(order("Notes", "notes"));
  EXPECT_FALSE(order("notes", "Notes"));
}

TEST(NameOrder, PutsLettersWithDiacriticsBesideTheirLetter) {
  EXPECT_EQ(sorted({"Zoom", "Éditeur", "Editor", "éditeur", "Files"}),
            (std::vector<std::string>{"Éditeur", "éditeur", "Editor", "Files", "Zoom"}));
}

TEST(NameOrder, TakesAnythingForAName) {
  EXPECT_EQ(sorted({"\u05D1", "", "\u05D0"}), (std::vector<std::string>{"", "\u05D0", "\u05D1"}));
  const NameOrder order;
  EXPECT_FALSE(order("\xFF\xFE", "\xFF\xFE"));
}

}  // namespace
}  // namespace vantorel
