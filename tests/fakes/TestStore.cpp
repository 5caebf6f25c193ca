// SPDX-License-Identifier: MIT
#include "fakes/TestStore.h"

#include <algorithm>
#include <stdexcept>

#include "base/ContentFingerprint.h"
#include "base/RandomBytes.h"
#include "store/CapturedEntries.h"
#include "store/HistoryFile.h"
#include "store/SealedFile.h"

namespace vantorel {

TestStore::TestStore(ClipStoreLimits limits)
    : limits_(limits),
      storage_(std::make_shared<SecureStorage>(
          randomSecret(SecureStorage::keySize),
          [this](const SecretBytes& /*key*/, const std::function<void()>& /*ended*/) {
            // A dead process replaces no key.
            return FakeKeychain::endedUpdate(files_.isDead() ? keychainStatus::notAvailable
                                                             : keychainStatus::success);
          })) {
  start();
}

TestStore::~TestStore() = default;

ClipStoreServices TestStore::services() {
  return {dispatch_, files_, keychain_, directory_.path(), recognition_, *recognitionQueue_};
}

void TestStore::start() {
  changes_ = 0;
  store_ = std::make_unique<ClipStore>(services(), base(), storage_, limits_);
  store_->onChange = [this] { ++changes_; };
}

void TestStore::restart() {
  quit();
  start();
}

void TestStore::restartWithAnotherKey() {
  storage_ = SecureStorage::ephemeral();
  restart();
}

Uuid TestStore::addText(std::string_view text) {
  tick();
  const Uuid id = store_->insert(textItem(text, dispatch_.now())).id;
  if (!has(id)) throw std::logic_error("the text did not stay in the history");
  return id;
}

ClipItem TestStore::item(Uuid id) const {
  const ClipItem* const found = findById(store_->items(), id);
  if (found == nullptr) throw std::out_of_range("no such entry");
  return *found;
}

bool TestStore::has(Uuid id) const { return findById(store_->items(), id) != nullptr; }

std::vector<std::string> TestStore::texts() const {
  std::vector<std::string> texts;
  for (const ClipItem& item : store_->items()) {
    texts.push_back(item.text ? item.text->get() : item.preview);
  }
  return texts;
}

std::vector<std::string> TestStore::assetNames() {
  std::vector<std::string> names;
  const auto listed = disk_.list(assets()).value();
  names.reserve(listed.size());
  for (const auto& name : listed) names.push_back(name.string());
  std::sort(names.begin(), names.end());
  return names;
}

std::optional<std::vector<ClipItem>> TestStore::savedItems() {
  const auto envelope = disk_.readFile(base() / "history.vntl", maximumHistoryBytes);
  if (!envelope) return std::nullopt;
  auto json = opened(*storage_, *envelope);
  if (!json) return std::nullopt;
  return decodeHistory(std::move(*json));
}

Date testDate(double seconds) {
  using namespace std::chrono;
  constexpr auto start = sys_days(year(2025) / 3 / 14) + hours(9) + minutes(26) + 53s;
  return advanced(start, Seconds(seconds));
}

ClipItem textItem(std::string_view text, Date createdAt) {
  ClipItem item;
  item.id = Uuid::random();
  item.kind = ClipKind::text;
  item.createdAt = createdAt;
  item.title = "Text";
  item.preview = text;
  item.text = std::string(text);
  item.contentHash = ContentFingerprint::data(bytesOf(text));
  item.isPinned = false;
  return item;
}

ClipItem imageItem(std::string_view assetFilename, std::string_view contentHash, Date createdAt) {
  return imageEntry({640, 480}, std::string(assetFilename), std::string(contentHash), {},
                    createdAt);
}

ClipItem filesItem(std::vector<std::string> paths, Date createdAt) {
  return filesEntry(std::move(paths), {}, createdAt);
}

ClipItem pinnedItem(ClipItem item, std::int64_t order) {
  item.isPinned = true;
  item.pinOrder = order;
  return item;
}

Bytes encodeHistory(const std::vector<ClipItem>& items) {
  const EncodedHistory history(items);
  return {history.view().begin(), history.view().end()};
}

Bytes toBytes(std::string_view text) {
  const ByteView view = bytesOf(text);
  return {view.begin(), view.end()};
}

}  // namespace vantorel
