// SPDX-License-Identifier: MIT
#include "transfer/ExportManifest.h"

#include <rapidjson/document.h>
#include <rapidjson/prettywriter.h>

#include <algorithm>
#include <array>
#include <utility>

#include "base/Iso8601.h"
#include "base/WipedText.h"
#include "store/HistoryJson.h"
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

class ManifestWriter : private rapidjson::PrettyWriter<HistoryJson> {
 public:
  std::string write(const std::vector<ExportedEntry>& entries, Date exportedAt) {
    SetIndent(' ', 2);
    StartObject();
    text("format", format);
    Key("version");
    Int(version);
    text("exportedAt", iso8601(exportedAt));
    Key("entries");
    StartArray();
    for (const ExportedEntry& entry : entries) write(entry);
    EndArray();
    EndObject();
    buffer_.Put('\n');
    return {buffer_.GetString(), buffer_.GetSize()};
  }

  ManifestWriter() : PrettyWriter(buffer_) {}

 private:
  void write(const ExportedEntry& entry) {
    StartObject();
    Key("number");
    Uint64(++number_);
    text("kind", rawValue(entry.kind));
    text("preview", entry.preview);
    Key("isPinned");
    Bool(entry.isPinned);
    ifAny("customName", entry.customName);
    ifAny("sourceAppName", entry.sourceAppName);
    ifAny("sourceBundleIdentifier", entry.sourceBundleIdentifier);
    text("createdAt", iso8601(entry.createdAt));
    if (entry.lastCopiedAt) text("lastCopiedAt", iso8601(*entry.lastCopiedAt));
    ifAny("recognizedText", entry.recognizedText);
    Key("files");
    StartArray();
    for (const ExportedFile& file : entry.files) write(file);
    EndArray();
    EndObject();
  }

  void write(const ExportedFile& file) {
    StartObject();
    text("name", file.name);
    const auto* const form = std::find_if(
        forms.begin(), forms.end(), [&](const auto& each) { return each.first == file.form; });
    text("form", form->second);
    text("sha256", file.sha256);
    EndObject();
  }

  void text(std::string_view key, std::string_view value) {
    Key(key.data(), static_cast<rapidjson::SizeType>(key.size()));
    const std::string valid = validUtf8(std::string(value));
    String(valid.data(), static_cast<rapidjson::SizeType>(valid.size()));
  }
  void ifAny(std::string_view key, const std::optional<std::string>& value) {
    if (value) text(key, *value);
  }

  HistoryJson buffer_;
  std::size_t number_ = 0;
};

using Value = rapidjson::Value;

const Value* member(const Value& object, const char* key) {
  const auto found = object.FindMember(key);
  return found == object.MemberEnd() ? nullptr : &found->value;
}

std::optional<std::string> textOf(const Value& object, const char* key) {
  const Value* const value = member(object, key);
  if (value == nullptr || !value->IsString()) return std::nullopt;
  std::string text(value->GetString(), value->GetStringLength());
  if (!isValidUtf8(text)) return std::nullopt;  // half of a surrogate pair passes the parser
  return text;
}

/// One that may be missing, but is a text when it is there.
bool readIfAny(const Value& object, const char* key, std::optional<std::string>& text) {
  if (member(object, key) == nullptr) return true;
  text = textOf(object, key);
  return text.has_value();
}

bool readDate(const Value& object, const char* key, std::optional<Date>& date) {
  std::optional<std::string> text;
  if (!readIfAny(object, key, text)) return false;
  if (text) date = dateFromIso8601(*text);
  return date.has_value() == text.has_value();
}

std::optional<ExportedFile> fileOf(const Value& value) {
  if (!value.IsObject()) return std::nullopt;
  auto name = textOf(value, "name");
  auto sha256 = textOf(value, "sha256");
  const auto formName = textOf(value, "form");
  const auto* const form = std::find_if(forms.begin(), forms.end(),
                                        [&](const auto& each) { return formName == each.second; });
  if (!name || !isExportedFileName(*name) || !sha256 || form == forms.end()) return std::nullopt;
  return ExportedFile{std::move(*name), form->first, std::move(*sha256)};
}

std::optional<ExportedEntry> entryOf(const Value& value) {
  if (!value.IsObject()) return std::nullopt;
  ExportedEntry entry;
  const auto kind = clipKind(textOf(value, "kind").value_or(""));
  auto preview = textOf(value, "preview");
  const Value* const pinned = member(value, "isPinned");
  const Value* const files = member(value, "files");
  std::optional<Date> created;
  const bool isWhole = kind && preview && pinned != nullptr && pinned->IsBool() &&
                       files != nullptr && files->IsArray() &&
                       readIfAny(value, "customName", entry.customName) &&
                       readIfAny(value, "sourceAppName", entry.sourceAppName) &&
                       readIfAny(value, "sourceBundleIdentifier", entry.sourceBundleIdentifier) &&
                       readIfAny(value, "recognizedText", entry.recognizedText) &&
                       readDate(value, "createdAt", created) && created &&
                       readDate(value, "lastCopiedAt", entry.lastCopiedAt);
  if (!isWhole) return std::nullopt;
  entry.kind = *kind;
  entry.preview = std::move(*preview);
  entry.isPinned = pinned->GetBool();
  entry.createdAt = *created;
  for (const Value& each : files->GetArray()) {
    auto file = fileOf(each);
    if (!file) return std::nullopt;
    entry.files.push_back(std::move(*file));
  }
  return entry;
}

/// Parses within `json`, which ends with NUL, so that no other copy of it remains.
std::optional<std::vector<ExportedEntry>> entriesWithin(Bytes& json) {
  constexpr unsigned flags = rapidjson::kParseIterativeFlag | rapidjson::kParseValidateEncodingFlag;
  rapidjson::Document document;
  document.ParseInsitu<flags>(reinterpret_cast<char*>(json.data()));
  if (document.HasParseError() || !document.IsObject()) return std::nullopt;
  const Value* const number = member(document, "version");
  const Value* const entries = member(document, "entries");
  if (textOf(document, "format") != format || number == nullptr || !number->IsInt() ||
      number->GetInt() != version || entries == nullptr || !entries->IsArray()) {
    return std::nullopt;
  }
  std::vector<ExportedEntry> result;
  for (const Value& each : entries->GetArray()) {
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
  if (std::find(json.begin(), json.end(), std::byte{0}) == json.end()) {
    Bytes text;
    text.reserve(json.size() + 1);  // a piece that grows leaves a copy
    text = json;
    text.push_back({});
    entries = entriesWithin(text);
    wipe(text);
  }
  wipe(json);
  return entries;
}

}  // namespace vantorel
