// SPDX-License-Identifier: MIT
#include "store/ClipSearchIndex.h"

#include <algorithm>
#include <iterator>
#include <utility>

#include "base/WipedText.h"
#include "text/CaseFolding.h"
#include "text/Unicode.h"

namespace vantorel {
namespace {

bool areSame(const std::optional<SharedText>& a, const std::optional<SharedText>& b) {
  return a && b ? a->sharesWith(*b) : a.has_value() == b.has_value();
}

std::string_view last(std::string_view text, std::size_t count) {
  return text.substr(text.size() - std::min(text.size(), count));
}

}  // namespace

std::vector<ClipItem> ClipSearchIndex::matching(const std::vector<ClipItem>& items,
                                                const ClipSearchFilter& filter) {
  forgetWhatIsGone(items);
  useNeedle(foldedForSearch(trimmed(filter.query)));
  std::vector<ClipItem> found;
  std::copy_if(items.begin(), items.end(), std::back_inserter(found), [&](const ClipItem& item) {
    return filter.includesTypeAndSource(item) && (needle_.empty() || matches(item));
  });
  return found;
}

void ClipSearchIndex::prepare(const ClipItem& item) { (void)folded(item); }

void ClipSearchIndex::clear() {
  entries_ = {};
  wipe(needle_);
}

ClipSearchIndex::Entry& ClipSearchIndex::folded(const ClipItem& item) {
  const auto [position, isNew] = entries_.try_emplace(item.id);
  auto& entry = position->second;
  if (isNew || !areSame(entry.text, item.text)) {
    entry.text = item.text;
    entry.foldedText = item.text ? foldedForSearch(**item.text) : std::string();
    if (item.text && entry.foldedText == **item.text) entry.foldedText = {};
    entry.isRuledOut = false;
  }
  if (auto details = searchedDetails(item); isNew || details != entry.details) {
    entry.foldedDetails = foldedForSearch(details);
    entry.details = std::move(details);
    entry.isRuledOut = false;
  }
  return entry;
}

/// What does not contain the beginning of a needle does not contain the needle, so while a query
/// is being typed only what is still shown has to be searched.
void ClipSearchIndex::useNeedle(std::string needle) {
  if (!narrows(needle, needle_)) {
    for (auto& [id, entry] : entries_) entry.isRuledOut = false;
  }
  needle_ = std::move(needle);
}

bool ClipSearchIndex::matches(const ClipItem& item) {
  auto& entry = folded(item);
  if (entry.isRuledOut) return false;
  std::string_view text = entry.foldedText;
  if (text.empty() && entry.text) text = **entry.text;
  // The details follow the text, and the needle may lie across the border.
  std::string rest(last(text, needle_.size() - 1));
  rest += entry.foldedDetails;
  entry.isRuledOut = !containsFolded(rest, needle_) && !containsFolded(text, needle_);
  return !entry.isRuledOut;
}

void ClipSearchIndex::forgetWhatIsGone(const std::vector<ClipItem>& items) {
  for (auto& [id, entry] : entries_) entry.isListed = false;
  for (const auto& item : items) {
    const auto found = entries_.find(item.id);
    if (found != entries_.end()) found->second.isListed = true;
  }
  std::erase_if(entries_, [](const auto& each) { return !each.second.isListed; });
}

}  // namespace vantorel
