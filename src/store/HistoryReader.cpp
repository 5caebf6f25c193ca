#include "store/HistoryReader.h"

#include <limits>

#include "base/Base64.h"
#include "base/Iso8601.h"
#include "text/Unicode.h"

namespace vantorel {
namespace {

constexpr std::array requiredKeys = {HistoryKey::id,    HistoryKey::kind,    HistoryKey::createdAt,
                                     HistoryKey::title, HistoryKey::preview, HistoryKey::filePaths};

constexpr bool isRequired(HistoryKey key) {
  for (const HistoryKey required : requiredKeys) {
    if (required == key) return true;
  }
  return false;
}

void clearOptional(ClipItem& item, HistoryKey key) {
  switch (key) {
    case HistoryKey::assetFilename:
      return item.assetFilename.reset();
    case HistoryKey::contentHash:
      return item.contentHash.reset();
    case HistoryKey::customName:
      return item.customName.reset();
    case HistoryKey::htmlData:
      return item.htmlData.reset();
    case HistoryKey::isPinned:
      return item.isPinned.reset();
    case HistoryKey::lastCopiedAt:
      return item.lastCopiedAt.reset();
    case HistoryKey::pinOrder:
      return item.pinOrder.reset();
    case HistoryKey::recognizedText:
      return item.recognizedText.reset();
    case HistoryKey::rtfData:
      return item.rtfData.reset();
    case HistoryKey::sourceAppName:
      return item.sourceAppName.reset();
    case HistoryKey::sourceBundleIdentifier:
      return item.sourceBundleIdentifier.reset();
    case HistoryKey::text:
      return item.text.reset();
    case HistoryKey::createdAt:
    case HistoryKey::filePaths:
    case HistoryKey::id:
    case HistoryKey::kind:
    case HistoryKey::preview:
    case HistoryKey::title:
      return;  // required: never absent
  }
}

}  // namespace

bool HistoryReader::done() {
  present_.set(static_cast<std::size_t>(key_));
  state_ = State::keys;
  return true;
}

bool HistoryReader::scalarWhileSkipping() {
  if (skippedDepth_ == 0) state_ = State::keys;
  return true;
}

bool HistoryReader::containerWhileSkipping() { return ++skippedDepth_ <= maximumSkippedDepth; }

bool HistoryReader::containerEndWhileSkipping() {
  if (--skippedDepth_ == 0) state_ = State::keys;
  return true;
}

bool HistoryReader::Null() {
  if (state_ == State::skipping) return scalarWhileSkipping();
  if (state_ != State::value || isRequired(key_)) return false;
  clearOptional(item_, key_);
  return done();
}

bool HistoryReader::Bool(bool value) {
  if (state_ == State::skipping) return scalarWhileSkipping();
  if (state_ != State::value || key_ != HistoryKey::isPinned) return false;
  item_.isPinned = value;
  return done();
}

bool HistoryReader::number(std::int64_t value) {
  if (state_ == State::skipping) return scalarWhileSkipping();
  if (state_ != State::value || key_ != HistoryKey::pinOrder) return false;
  item_.pinOrder = value;
  return done();
}

bool HistoryReader::Uint64(std::uint64_t value) {
  if (state_ == State::skipping) return scalarWhileSkipping();
  if (value > static_cast<std::uint64_t>(std::numeric_limits<std::int64_t>::max())) return false;
  return number(static_cast<std::int64_t>(value));
}

bool HistoryReader::Double(double value) {
  if (state_ == State::skipping) return scalarWhileSkipping();
  // 2^63: whole numbers that do not fit come as it, or its negative, too.
  constexpr double limit = 9223372036854775808.0;
  if (!(value > -limit && value < limit)) return false;
  const auto integer = static_cast<std::int64_t>(value);
  if (static_cast<double>(integer) != value) return false;
  return number(integer);
}

bool HistoryReader::RawNumber(const char* /*text*/, rapidjson::SizeType /*length*/, bool /*copy*/) {
  return false;  // numbers are asked for by value
}

bool HistoryReader::String(const char* text, rapidjson::SizeType length, bool /*copy*/) {
  const std::string_view view(text, length);
  // Checked here rather than by the parser, which lets half a surrogate pair through.
  return isValidUtf8(view) && string(view);
}

bool HistoryReader::string(std::string_view text) {
  if (state_ == State::skipping) return scalarWhileSkipping();
  if (state_ == State::paths) {
    item_.filePaths.emplace_back(text);
    return true;
  }
  if (state_ != State::value) return false;
  switch (key_) {
    case HistoryKey::assetFilename:
      item_.assetFilename.emplace(text);
      return done();
    case HistoryKey::contentHash:
      item_.contentHash.emplace(text);
      return done();
    case HistoryKey::createdAt: {
      const auto date = dateFromIso8601(text);
      if (!date) return false;
      item_.createdAt = *date;
      return done();
    }
    case HistoryKey::customName:
      item_.customName.emplace(text);
      return done();
    case HistoryKey::htmlData:
      return bytes(text, item_.htmlData);
    case HistoryKey::id: {
      const auto id = Uuid::parse(text);
      if (!id) return false;
      item_.id = *id;
      return done();
    }
    case HistoryKey::kind: {
      const auto kind = clipKind(text);
      if (!kind) return false;
      item_.kind = *kind;
      return done();
    }
    case HistoryKey::lastCopiedAt:
      return date(text, item_.lastCopiedAt);
    case HistoryKey::preview:
      item_.preview = text;
      return done();
    case HistoryKey::recognizedText:
      item_.recognizedText.emplace(text);
      return done();
    case HistoryKey::rtfData:
      return bytes(text, item_.rtfData);
    case HistoryKey::sourceAppName:
      item_.sourceAppName.emplace(text);
      return done();
    case HistoryKey::sourceBundleIdentifier:
      item_.sourceBundleIdentifier.emplace(text);
      return done();
    case HistoryKey::text:
      item_.text = std::string(text);
      return done();
    case HistoryKey::title:
      item_.title = text;
      return done();
    case HistoryKey::filePaths:
    case HistoryKey::isPinned:
    case HistoryKey::pinOrder:
      return false;
  }
  return false;
}

bool HistoryReader::date(std::string_view text, std::optional<Date>& field) {
  field = dateFromIso8601(text);
  return field && done();
}

bool HistoryReader::bytes(std::string_view text, std::optional<SharedBytes>& field) {
  auto bytes = bytesFromBase64(text);
  if (!bytes) return false;
  field = std::move(*bytes);
  return done();
}

bool HistoryReader::StartObject() {
  if (state_ == State::skipping) return containerWhileSkipping();
  if (state_ != State::entries) return false;
  item_ = ClipItem();
  present_.reset();
  state_ = State::keys;
  return true;
}

bool HistoryReader::Key(const char* text, rapidjson::SizeType length, bool /*copy*/) {
  const std::string_view view(text, length);
  if (!isValidUtf8(view)) return false;
  if (state_ == State::skipping) return true;
  const auto key = historyKey(view);
  state_ = key ? State::value : State::skipping;
  skippedDepth_ = 0;
  if (key) key_ = *key;
  return true;
}

bool HistoryReader::EndObject(rapidjson::SizeType /*members*/) {
  if (state_ == State::skipping) return containerEndWhileSkipping();
  for (const HistoryKey required : requiredKeys) {
    if (!present_.test(static_cast<std::size_t>(required))) return false;
  }
  items_.push_back(std::move(item_));
  state_ = State::entries;
  return true;
}

bool HistoryReader::StartArray() {
  if (state_ == State::skipping) return containerWhileSkipping();
  if (state_ == State::root) {
    state_ = State::entries;
    return true;
  }
  if (state_ != State::value || key_ != HistoryKey::filePaths) return false;
  item_.filePaths.clear();
  state_ = State::paths;
  return true;
}

bool HistoryReader::EndArray(rapidjson::SizeType /*elements*/) {
  if (state_ == State::skipping) return containerEndWhileSkipping();
  if (state_ == State::paths) return done();
  state_ = State::root;
  return true;
}

}  // namespace vantorel
