// SPDX-License-Identifier: MIT
#include "panel/RowContent.h"

#include "base/WipedText.h"
#include "chrome/TextPresentation.h"
#include "store/CapturedEntries.h"
#include "store/ClipStore.h"

namespace vantorel {
namespace {

// More than any row can show, and little enough to lay out in no time.
constexpr std::size_t maxTitleCharacters = 160;
constexpr std::size_t maxDetailCharacters = 80;
constexpr std::string_view dot = "  ·  ";

std::string detail(std::string_view text) {
  return TextPresentation::singleLine(text, maxDetailCharacters);
}

}  // namespace

std::string_view placeholder(const ClipItem& item) {
  switch (item.kind) {
    case ClipKind::text:
      return "text.alignleft";
    case ClipKind::image:
      return "photo";
    case ClipKind::files:
      break;
  }
  return isVideo(item) ? "film" : "doc";
}

std::string titleText(const ClipItem& item) {
  std::string_view title = item.preview;
  if (item.kind == ClipKind::image) title = "Image";
  if (item.customName) title = *item.customName;
  return TextPresentation::singleLine(title, maxTitleCharacters);
}

std::string metadataText(const ClipItem& item, Availability availability, std::string_view date) {
  std::string text;
  if (item.kind == ClipKind::image) text = detail(item.preview);
  if (item.kind == ClipKind::files) {
    text = availability == Availability::available ? detail(item.title) : "File unavailable";
  }
  if (item.kind != ClipKind::text) text += dot;
  text += item.sourceAppName ? detail(*item.sourceAppName) : "Unknown";
  text += dot;
  text += date;
  return text;
}

std::string accessibilityText(const ClipItem& item, Availability availability,
                              std::string_view date) {
  return titleText(item) + ", " + metadataText(item, availability, date);
}

std::string pinTitle(const RowContent& row) { return row.pinned ? "Unpin" : "Pin"; }

std::string pinToolTip(const RowContent& row) {
  return row.canPin ? pinTitle(row) + " (⌘P)" : pinLimitText();
}

std::string pinLimitText() {
  return "Up to " + std::to_string(ClipStore::maxPinnedItems) + " pins. Unpin an item first.";
}

void forget(RowContent& row) {
  for (auto* text :
       {&row.title, &row.metadata, &row.accessibilityText, &row.sourceBundleIdentifier}) {
    wipe(*text);
  }
  row = {};
}

RowContent rowContent(const ClipItem& item, Availability availability, std::string_view date,
                      bool canPinMore) {
  RowContent content;
  content.id = item.id;
  content.kind = item.kind;
  content.title = titleText(item);
  content.titleIsRTL = TextPresentation::isPrimarilyRTL(content.title);
  content.named = item.customName.has_value();
  content.available = availability == Availability::available;
  content.metadata = metadataText(item, availability, date);
  content.accessibilityText = accessibilityText(item, availability, date);
  content.sourceBundleIdentifier = item.sourceBundleIdentifier.value_or(std::string());
  content.symbol = placeholder(item);
  content.pinned = item.pinned();
  content.canPin = item.pinned() || canPinMore;
  return content;
}

}  // namespace vantorel
