// SPDX-License-Identifier: MIT
#include "platform/linux/settings/JsonUserDefaults.h"

#include <algorithm>
#include <utility>

#include "base/Iso8601.h"

namespace vantorel {
namespace {

constexpr unsigned filePermissions = 0600;
constexpr unsigned directoryPermissions = 0700;

std::filesystem::path withSuffix(const std::filesystem::path& path, const std::string& suffix) {
  return path.parent_path() / (path.filename().string() + suffix);
}

}  // namespace

JsonUserDefaults::JsonUserDefaults(FileSystem& files, std::filesystem::path path)
    : files_(files), path_(std::move(path)), copy_(withSuffix(path_, ".last-good")) {
  const Reading reading = read(path_);
  if (reading == Reading::understood) takeOver();
  // Who takes the file away wants to begin anew.
  if (reading == Reading::damaged || reading == Reading::refused) recover(reading);
}

JsonUserDefaults::Reading JsonUserDefaults::read(const Path& path) {
  if (!files_.exists(path)) return Reading::absent;
  const auto size = files_.fileSize(path);
  if (!size) return Reading::refused;
  if (*size > maximumFileSize) return Reading::damaged;
  const auto bytes = files_.readFile(path, maximumFileSize);
  if (!bytes) return Reading::refused;
  auto members = parseJsonObject(textOf(*bytes));
  if (!members) return Reading::damaged;
  members_ = std::move(*members);
  changed_.clear();
  if (const JsonMember* changed = find(changedKey)) {
    for (auto& key : jsonStringArray(changed->text).value_or(std::vector<std::string>())) {
      changed_.insert(std::move(key));
    }
    removeMember(changedKey);
  }
  return Reading::understood;
}

/// What was set while the first file could not be read.
void JsonUserDefaults::takeOver() {
  auto members = std::exchange(members_, {});
  const Reading copy = read(copy_);
  members_.swap(members);
  const auto changed = std::exchange(changed_, {});
  isCopyOutOfReach_ = copy == Reading::refused;
  if (isCopyOutOfReach_) return;
  if (copy != Reading::understood || changed.empty()) return keepCopy();
  for (const std::string& key : changed) removeMember(key);
  for (JsonMember& member : members) {
    if (changed.contains(member.key)) members_.push_back(std::move(member));
  }
  write();
}

/// Nothing is written while nothing is known: what stands there tells the next start as well.
void JsonUserDefaults::recover(Reading instead) {
  const Reading copy = read(copy_);
  if (instead == Reading::damaged) changed_.clear();
  isOutOfReach_ = instead == Reading::refused;
  isDamaged_ = instead == Reading::damaged;
  areLost_ = copy != Reading::understood;
  if (!areLost_) write();
}

/// Of a file that others wrote, too: an older program, or the user.
void JsonUserDefaults::keepCopy() {
  const auto copy = files_.exists(copy_) ? files_.readFile(copy_, maximumFileSize) : std::nullopt;
  if (!copy || textOf(*copy) != jsonObjectText(members_)) (void)put(copy_);
}

bool JsonUserDefaults::setAside() {
  std::filesystem::path aside;
  int number = 0;
  do {
    aside = withSuffix(path_, ".damaged-" + std::to_string(++number));
  } while (files_.exists(aside) && number < 1000);
  if (files_.exists(aside)) return false;
  // A copy of it: were it renamed, whoever starts before the next one is in its place would find
  // none, and begin anew.
  const auto bytes = files_.readFile(path_, maximumFileSize);
  return bytes ? !files_.writeNewFile(aside, *bytes, filePermissions)
               : !files_.rename(path_, aside);
}

const JsonMember* JsonUserDefaults::find(std::string_view key) const {
  const auto found = std::find_if(members_.begin(), members_.end(),
                                  [&](const JsonMember& member) { return member.key == key; });
  return found == members_.end() ? nullptr : &*found;
}

bool JsonUserDefaults::contains(std::string_view key) const {
  const JsonMember* member = find(key);
  return member && member->text != "null";
}

std::optional<bool> JsonUserDefaults::boolean(std::string_view key) const {
  const JsonMember* member = find(key);
  return member ? jsonBoolean(member->text) : std::nullopt;
}

std::optional<std::int64_t> JsonUserDefaults::integer(std::string_view key) const {
  const JsonMember* member = find(key);
  return member ? jsonInteger(member->text) : std::nullopt;
}

std::optional<std::string> JsonUserDefaults::string(std::string_view key) const {
  const JsonMember* member = find(key);
  return member ? jsonString(member->text) : std::nullopt;
}

std::optional<Date> JsonUserDefaults::date(std::string_view key) const {
  const auto text = string(key);
  return text ? dateFromIso8601(*text, DateFraction::kept) : std::nullopt;
}

std::optional<std::vector<std::string>> JsonUserDefaults::stringArray(std::string_view key) const {
  const JsonMember* member = find(key);
  return member ? jsonStringArray(member->text) : std::nullopt;
}

void JsonUserDefaults::set(std::string_view key, DefaultsValue value) {
  auto text = jsonText(value);
  if (!text || !isJsonKey(key)) return;
  areLost_ = false;
  if (isOutOfReach_) changed_.emplace(key);
  const auto found = std::find_if(members_.begin(), members_.end(),
                                  [&](const JsonMember& member) { return member.key == key; });
  if (found == members_.end()) {
    members_.push_back({std::string(key), std::move(*text)});
  } else {
    found->text = std::move(*text);
  }
  write();
}

void JsonUserDefaults::remove(std::string_view key) {
  const bool isNews = isOutOfReach_ && changed_.emplace(key).second;
  if (removeMember(key) || isNews) write();
}

bool JsonUserDefaults::removeMember(std::string_view key) {
  return std::erase_if(members_, [&](const JsonMember& member) { return member.key == key; }) > 0;
}

void JsonUserDefaults::write() {
  const auto directory = path_.parent_path();
  if (files_.createDirectories(directory, directoryPermissions)) return;
  // A directory that others made with wider permissions is narrowed as far as we may; the file is
  // closed to others either way.
  static_cast<void>(files_.setPermissions(directory, directoryPermissions));
  // The copy last: it is never newer than what it is a copy of, which counts before it.
  const bool isWanted = isOutOfReach_ || put(path_) || isOutOfReach_;
  if (isWanted && !isCopyOutOfReach_) (void)put(copy_);
}

bool JsonUserDefaults::put(const Path& path) {
  const Path temporary = withSuffix(path, ".new");
  if (files_.exists(temporary) && files_.remove(temporary)) return false;
  auto members = members_;
  if (path == copy_ && !changed_.empty()) {
    const std::vector<std::string> keys(changed_.begin(), changed_.end());
    members.push_back({std::string(changedKey), jsonText(keys).value_or("[]")});
  }
  const std::string text = jsonObjectText(members);
  if (files_.writeNewFile(temporary, bytesOf(text), filePermissions) || !makePlace(path) ||
      files_.rename(temporary, path)) {
    static_cast<void>(files_.remove(temporary));
    return false;
  }
  static_cast<void>(files_.syncDirectory(path.parent_path()));
  return true;
}

bool JsonUserDefaults::makePlace(const Path& path) {
  if (path != path_ || !isDamaged_) return true;
  isOutOfReach_ = !setAside();
  isDamaged_ = isOutOfReach_;
  return !isOutOfReach_;
}

}  // namespace vantorel
