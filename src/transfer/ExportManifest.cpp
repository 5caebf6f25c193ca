// SPDX-License-Identifier: MIT
#include "transfer/ExportManifest.h"

#include <algorithm>
#include <array>
#include <utility>

#include "base/Iso8601.h"
#include "base/JsonValue.h"
#include "base/JsonWriter.h"
#include "base/WipedText.h"
#include "text/Unicode.h"

namespace vantorel {
namespace {

constexpr std::string_view format = "vantorel-export";
constexpr int version = 1;

using Form = ExportedFile::Form;
constexpr std::array<std::pair<Form, std::string_view>, 5> forms = {{{Form::text, "text"},
                                                                     {Form::html, "html"},
                                                                     {Form::rtf, "rtf"},
                                                                     {Form::picture, "picture"},
                                                                     {Form::paths, "paths"}}};

class ManifestWriter {
 public:
  std::string write(const std::vector<ExportedEntry>& entries, Date exportedAt) {
    json_.beginObject();
    text("format", format);
    json_.key("version");
    json_.integer(version);
    text("exportedAt", iso8601(exportedAt));
    json_.key("entries");
    json_.beginArray();
    for (const ExportedEntry& entry : entries) write(entry);
    json_.endArray();
    json_.endObject();
    json_.endLine();
    return std::string(json_.view());
  }

 private:
  void write(const ExportedEntry& entry) {
    json_.beginObject();
    json_.key("number");
    json_.integer(++number_);
    text("kind", rawValue(entry.kind));
    text("preview", entry.preview);
    json_.key("isPinned");
    json_.boolean(entry.isPinned);
    ifAny("customName", entry.customName);
    ifAny("sourceAppName", entry.sourceAppName);
    ifAny("sourceBundleIdentifier", entry.sourceBundleIdentifier);
    text("createdAt", iso8601(entry.createdAt));
    if (entry.lastCopiedAt) text("lastCopiedAt", iso8601(*entry.lastCopiedAt));
    ifAny("recognizedText", entry.recognizedText);
    json_.key("files");
    json_.beginArray();
    for (const ExportedFile& file : entry.files) write(file);
    json_.endArray();
    json_.endObject();
  }

  void write(const ExportedFile& file) {
    json_.beginObject();
    text("name", file.name);
    const auto* const form = std::find_if(
        forms.begin(), forms.end(), [&](const auto& each) { return each.first == file.form; });
    text("form", form->second);
    text("sha256", file.sha256);
    json_.endObject();
  }

  void text(std::string_view key, std::string_view value) {
    json_.key(key);
    json_.text(validUtf8(std::string(value)));
  }
  void ifAny(std::string_view key, const std::optional<std::string>& value) {
    if (value) text(key, *value);
  }

  JsonWriter json_;
  std::int64_t number_ = 0;
};

/// Null when there is none of that name and type.
template <class Type>
const Type* memberOf(const JsonValue& object, std::string_view key) {
  const JsonValue* const value = object.member(key);
  return value == nullptr ? nullptr : value->as<Type>();
}

std::optional<std::string> textOf(const JsonValue& object, std::string_view key) {
  const auto* const text = memberOf<std::string_view>(object, key);
  // Half of a pair of surrogates passes the parser.
  if (text == nullptr || !isValidUtf8(*text)) return std::nullopt;
  return std::string(*text);
}

/// One that may be missing, but is a text when it is there.
bool readIfAny(const JsonValue& object, std::string_view key, std::optional<std::string>& text) {
  if (object.member(key) == nullptr) return true;
  text = textOf(object, key);
  return text.has_value();
}

bool readDate(const JsonValue& object, std::string_view key, std::optional<Date>& date) {
  std::optional<std::string> text;
  if (!readIfAny(object, key, text)) return false;
  if (text) date = dateFromIso8601(*text);
  return date.has_value() == text.has_value();
}

std::optional<ExportedFile> fileOf(const JsonValue& value) {
  auto name = textOf(value, "name");
  auto sha256 = textOf(value, "sha256");
  const auto formName = textOf(value, "form");
  const auto* const form = std::find_if(forms.begin(), forms.end(),
                                        [&](const auto& each) { return formName == each.second; });
  if (!name || !isExportedFileName(*name) || !sha256 || form == forms.end()) return std::nullopt;
  return ExportedFile{std::move(*name), form->first, std::move(*sha256)};
}

std::optional<ExportedEntry> entryOf(const JsonValue& value) {
  ExportedEntry entry;
  const auto kind = clipKind(textOf(value, "kind").value_or(""));
  auto preview = textOf(value, "preview");
  const auto* const pinned = memberOf<bool>(value, "isPinned");
  const auto* const files = memberOf<JsonValue::Array>(value, "files");
  std::optional<Date> created;
  const bool isWhole = kind && preview && pinned != nullptr && files != nullptr &&
                       readIfAny(value, "customName", entry.customName) &&
                       readIfAny(value, "sourceAppName", entry.sourceAppName) &&
                       readIfAny(value, "sourceBundleIdentifier", entry.sourceBundleIdentifier) &&
                       readIfAny(value, "recognizedText", entry.recognizedText) &&
                       readDate(value, "createdAt", created) && created &&
                       readDate(value, "lastCopiedAt", entry.lastCopiedAt);
  if (!isWhole) return std::nullopt;
  entry.kind = *kind;
  entry.preview = std::move(*preview);
  entry.isPinned = *pinned;
  entry.createdAt = *created;
  for (const JsonValue& each : *files) {
    auto file = fileOf(each);
    if (!file) return std::nullopt;
    entry.files.push_back(std::move(*file));
  }
  return entry;
}

std::optional<std::vector<ExportedEntry>> entriesIn(const JsonValue& manifest) {
  const auto* const number = memberOf<std::int64_t>(manifest, "version");
  const auto* const entries = memberOf<JsonValue::Array>(manifest, "entries");
  if (textOf(manifest, "format") != format || number == nullptr || *number != version ||
      entries == nullptr) {
    return std::nullopt;
  }
  std::vector<ExportedEntry> result;
  for (const JsonValue& each : *entries) {
    auto entry = entryOf(each);
    if (!entry) return std::nullopt;
    result.push_back(std::move(*entry));
  }
  return result;
}

}  // namespace

bool isExportedFileName(std::string_view name) {
  constexpr std::array<std::string_view, 5> endings = {".txt", ".html", ".rtf", ".png", ".jpg"};
  constexpr std::size_t fewestDigits = 4;
  constexpr std::size_t mostDigits = 19;
  const std::size_t digits = std::min(name.find_first_not_of("0123456789"), name.size());
  return digits >= fewestDigits && digits <= mostDigits &&
         std::find(endings.begin(), endings.end(), name.substr(digits)) != endings.end();
}

std::string manifestJson(const std::vector<ExportedEntry>& entries, Date exportedAt) {
  return ManifestWriter().write(entries, exportedAt);
}

std::optional<std::vector<ExportedEntry>> readManifest(Bytes json) {
  std::optional<std::vector<ExportedEntry>> entries;
  if (const auto manifest = JsonValue::readWithin(json)) {
    entries = entriesIn(*manifest);
  }
  wipe(json);
  return entries;
}

}  // namespace vantorel
