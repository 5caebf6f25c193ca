// SPDX-License-Identifier: MIT
#include "tool/EntryList.h"

#include <algorithm>
#include <charconv>
#include <cstdint>
#include <iterator>
#include <optional>
#include <utility>

#include "base/Iso8601.h"
#include "base/JsonWriter.h"
#include "chrome/TextPresentation.h"
#include "store/ClipSearchFilter.h"
#include "text/Unicode.h"

namespace vantorel {
namespace {

constexpr std::size_t longestTitle = 160;  // characters, as in a row of the panel

/// The name of a pin, the first line of a text, or what is told of anything else.
std::string titleOf(const ClipItem& item) {
  std::string_view title = item.customName ? *item.customName : item.preview;
  if (!item.customName && item.kind == ClipKind::text) {
    title = title.substr(0, title.find_first_of("\r\n"));
  }
  return TextPresentation::singleLine(title, longestTitle);
}

void writeText(JsonWriter& json, std::string_view key, std::string_view text) {
  json.key(key);
  json.text(validUtf8(std::string(text)));
}

void writeIfAny(JsonWriter& json, std::string_view key, const std::optional<std::string>& text) {
  if (text) writeText(json, key, *text);
}

void writeEntry(JsonWriter& json, const NumberedEntry& entry) {
  const ClipItem& item = entry.item;
  json.beginObject();
  json.key("number");
  json.integer(static_cast<std::int64_t>(entry.number));
  writeText(json, "id", item.id.string());
  writeText(json, "kind", rawValue(item.kind));
  writeText(json, "title", titleOf(item));
  json.key("pinned");
  json.boolean(item.pinned());
  writeIfAny(json, "name", item.customName);
  writeIfAny(json, "source", item.sourceAppName);
  writeIfAny(json, "sourceId", item.sourceBundleIdentifier);
  writeText(json, "firstCopied", iso8601(item.createdAt));
  writeText(json, "lastCopied", iso8601(item.recency()));
  json.endObject();
}

std::string asJson(const std::vector<NumberedEntry>& entries) {
  JsonWriter json;
  json.beginArray();
  for (const auto& entry : entries) writeEntry(json, entry);
  json.endArray();
  json.endLine();
  return std::string(json.view());
}

}  // namespace

std::vector<NumberedEntry> numbered(std::vector<ClipItem> items) {
  std::vector<NumberedEntry> entries;
  entries.reserve(items.size());
  for (ClipItem& item : items) {
    entries.push_back({.number = entries.size() + 1, .item = std::move(item)});
  }
  return entries;
}

std::vector<NumberedEntry> found(const std::vector<NumberedEntry>& entries,
                                 std::string_view words) {
  const ClipSearchFilter filter{.query = std::string(words)};
  std::vector<NumberedEntry> result;
  std::copy_if(entries.begin(), entries.end(), std::back_inserter(result),
               [&](const NumberedEntry& entry) { return filter.includes(entry.item); });
  return result;
}

const NumberedEntry* entryCalled(const std::vector<NumberedEntry>& entries, std::string_view name) {
  const auto id = Uuid::parse(name);
  std::size_t number = 0;
  const auto* const end = name.data() + name.size();
  const auto read = std::from_chars(name.data(), end, number);
  const bool isNumber = read.ec == std::errc() && read.ptr == end;
  const auto match = std::find_if(entries.begin(), entries.end(), [&](const NumberedEntry& entry) {
    return id ? entry.item.id == *id : isNumber && entry.number == number;
  });
  return match == entries.end() ? nullptr : &*match;
}

std::string entryList(const std::vector<NumberedEntry>& entries, ToolLine::Form form) {
  if (form == ToolLine::Form::json) return asJson(entries);
  constexpr std::size_t longestLine = 4 * longestTitle + 40;  // bytes
  std::string list;
  list.reserve(entries.size() * longestLine);  // one that grows leaves a copy
  for (const auto& [number, item] : entries) {
    list += std::to_string(number) + '\t';
    list += rawValue(item.kind);
    list += '\t' + titleOf(item);
    list += form == ToolLine::Form::null ? '\0' : '\n';
  }
  return list;
}

std::string pathList(const ClipItem& item, ToolLine::Form form) {
  std::size_t size = 0;
  for (const std::string& path : item.filePaths) size += path.size() + 1;
  std::string list;
  list.reserve(size);
  for (const std::string& path : item.filePaths) {
    list += path;
    list += form == ToolLine::Form::null ? '\0' : '\n';
  }
  return list;
}

}  // namespace vantorel
