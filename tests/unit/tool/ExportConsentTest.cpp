// SPDX-License-Identifier: MIT
#include "tool/ExportConsent.h"

#include <gtest/gtest.h>

#include <vector>

namespace vantorel {
namespace {

using Lines = std::vector<std::optional<std::string>>;

/// Consent by who types these lines, and how many of them were asked for.
std::pair<ExportConsent, std::size_t> consent(bool inTheClear, const Lines& typed) {
  std::size_t asked = 0;
  const auto given = consentToExport(inTheClear, "out", [&](const std::string&) {
    return asked < typed.size() ? typed[asked++] : (++asked, std::nullopt);
  });
  return {given, asked};
}

TEST(ExportConsent, IsAskedForTwice) {
  EXPECT_EQ(consent(false, {"yes", "out"}), (std::pair{ExportConsent::given, std::size_t{2}}));
  for (const Lines& typed : std::vector<Lines>{{"y"}, {"Yes"}, {""}, {"out"}, {std::nullopt}})
    EXPECT_EQ(consent(false, typed), (std::pair{ExportConsent::withheld, std::size_t{1}}));
  for (const Lines& typed :
       std::vector<Lines>{{"yes", "yes"}, {"yes", ""}, {"yes", "out/"}, {"yes", std::nullopt}})
    EXPECT_EQ(consent(false, typed), (std::pair{ExportConsent::withheld, std::size_t{2}}));
}

TEST(ExportConsent, WhoKnowsWhatItIsTypesTheNameAlone) {
  EXPECT_EQ(consent(true, {"out"}), (std::pair{ExportConsent::given, std::size_t{1}}));
  EXPECT_EQ(consent(true, {"yes"}), (std::pair{ExportConsent::withheld, std::size_t{1}}));
}

TEST(ExportConsent, WhereNobodyCanBeAskedItHasToBeSaid) {
  EXPECT_EQ(consentToExport(true, "out", {}), ExportConsent::given);
  EXPECT_EQ(consentToExport(false, "out", {}), ExportConsent::nobodyToAsk);
}

}  // namespace
}  // namespace vantorel
