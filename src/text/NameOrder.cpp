// SPDX-License-Identifier: MIT
#include "text/NameOrder.h"

#include <unicode/coll.h>
#include <unicode/locid.h>

#include <cstring>

#include "text/CaseFolding.h"

namespace vantorel {
namespace {

/// The POSIX locale orders by code point, capitals first: right for programs, not for readers.
icu::Locale readersLocale() {
  const auto& locale = icu::Locale::getDefault();
  return std::strcmp(locale.getVariant(), "POSIX") == 0 ? icu::Locale::getRoot() : locale;
}

}  // namespace

struct NameOrder::Rules {
  std::unique_ptr<icu::Collator> collator;  // null without ICU's data
};

NameOrder::NameOrder() : rules_(std::make_unique<Rules>()) {
  UErrorCode status = U_ZERO_ERROR;
  rules_->collator.reset(icu::Collator::createInstance(readersLocale(), status));
  if (U_FAILURE(status)) rules_->collator.reset();
  // Letters and their diacritics count, case does not.
  if (rules_->collator) rules_->collator->setStrength(icu::Collator::SECONDARY);
}

NameOrder::~NameOrder() = default;

bool NameOrder::operator()(std::string_view a, std::string_view b) const {
  if (!rules_->collator) return foldedForSearch(a) < foldedForSearch(b);
  UErrorCode status = U_ZERO_ERROR;
  const auto piece = [](std::string_view text) {
    return icu::StringPiece(text.data(), static_cast<std::int32_t>(text.size()));
  };
  return rules_->collator->compareUTF8(piece(a), piece(b), status) == UCOL_LESS;
}

}  // namespace vantorel
