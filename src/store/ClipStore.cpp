#include "store/ClipStore.h"

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <exception>
#include <utility>

#include "base/AtomicFile.h"
#include "store/ClipDuplicates.h"
#include "store/ClipOrder.h"
#include "store/HistoryFile.h"
#include "store/SealedFile.h"

namespace vantorel {
namespace {

constexpr unsigned directoryPermissions = 0700;
constexpr std::string_view historyName = "history.vntl";
constexpr std::string_view legacyHistoryName = "history.json";
constexpr std::uint64_t mostEnvelopeOverhead = 4096;

std::filesystem::path baseDirectory(const ClipStoreServices& services,
                                    const std::optional<std::filesystem::path>& baseUrl) {
  if (baseUrl) return *baseUrl;
  if (services.applicationSupport.empty()) {
    std::fputs("vantorel: there is no directory to keep the history in\n", stderr);
    std::abort();
  }
  return services.applicationSupport / "ClipHistory";
}

std::shared_ptr<SecureStorage> storageFor(Keychain& keychain, bool isProduction) {
  if (!isProduction) return SecureStorage::ephemeral();
  try {
    return SecureStorage::production(keychain);
  } catch (const std::exception&) {
    return nullptr;
  }
}

}  // namespace

ClipStore::ClipStore(ClipStoreServices services,
                     const std::optional<std::filesystem::path>& baseUrl,
                     std::shared_ptr<SecureStorage> secureStorage, ClipStoreLimits limits)
    : services_(std::move(services)),
      limits_(limits),
      baseUrl_(baseDirectory(services_, baseUrl)),
      indexUrl_(baseUrl_ / historyName),
      legacyIndexUrl_(baseUrl_ / legacyHistoryName),
      assets_(services_.files, baseUrl_ / "Assets"),
      secureStorage_(secureStorage ? std::move(secureStorage)
                                   : storageFor(services_.keychain, !baseUrl.has_value())) {
  prepareStorageDirectories();
  if (persistenceIsReady_) persistenceIsReady_ = load();
  if (persistenceIsReady_) tidyLoadedHistory();
}

void ClipStore::prepareStorageDirectories() {
  FileSystem& files = services_.files;
  // The permissions may be another's, if the directories stood there before.
  persistenceIsReady_ = !files.createDirectories(assetsUrl(), directoryPermissions) &&
                        !files.setPermissions(baseUrl_, directoryPermissions) &&
                        !files.setPermissions(assetsUrl(), directoryPermissions) &&
                        !files.excludeFromBackup(baseUrl_);
}

bool ClipStore::load() {
  return services_.files.exists(indexUrl_) ? loadSealed() : migrateLegacy();
}

bool ClipStore::loadSealed() {
  if (!secureStorage_) return false;
  auto envelope = services_.files.readFile(indexUrl_, maximumHistoryBytes + mostEnvelopeOverhead);
  if (!envelope || !SecureStorage::isSealed(*envelope)) return false;
  auto json = opened(*secureStorage_, *envelope);
  envelope.reset();  // it is as large as what is read from it
  if (!json) return false;
  auto items = decodeHistory(std::move(*json));
  if (!items) return false;
  items_ = std::move(*items);
  return true;
}

bool ClipStore::migrateLegacy() {
  auto json = services_.files.readFile(legacyIndexUrl_, maximumHistoryBytes);
  if (!json) return secureStorage_ != nullptr;
  auto items = decodeHistory(std::move(*json));
  if (!items || !secureStorage_) return false;
  items_ = std::move(*items);
  if (!encryptLegacyAssets() || !save()) return false;
  (void)services_.files.remove(legacyIndexUrl_);
  return true;
}

bool ClipStore::encryptLegacyAssets() {
  if (!secureStorage_) return false;
  for (const ClipItem& item : items_) {
    if (item.kind != ClipKind::image || !item.assetFilename) continue;
    const auto bytes = assets_.read(*item.assetFilename);
    if (!bytes || SecureStorage::isSealed(*bytes)) continue;
    const auto path = assets_.pathOf(*item.assetFilename);
    if (!path || !writeSealed(services_.files, *path, *secureStorage_, *bytes)) return false;
  }
  return true;
}

void ClipStore::tidyLoadedHistory() {
  separateIdentities(items_);
  items_ = coalesced(std::move(items_));
  prune();
  numberPins(items_);
  saveNowOrLater();
  removeDiscardedAssets();
  removeOrphanedAssets();
  removeUnfinishedWrites();
  for (const ClipItem& item : items_) scheduleRecognition(item);
}

void ClipStore::removeUnfinishedWrites() {
  for (const auto& name :
       services_.files.list(baseUrl_).value_or(std::vector<FileSystem::Path>())) {
    if (isUnfinishedWrite(name.string(), historyName))
      (void)services_.files.remove(baseUrl_ / name);
  }
}

std::optional<Bytes> ClipStore::assetData(const ClipItem& item) const {
  if (!item.assetFilename) return std::nullopt;
  auto bytes = assets_.read(*item.assetFilename);
  if (!bytes) return std::nullopt;
  return openedIfSealed(secureStorage_.get(), std::move(*bytes));
}

}  // namespace vantorel
