// SPDX-License-Identifier: MIT
#include "store/StoredPicture.h"

#include "base/ContentFingerprint.h"
#include "store/SealedFile.h"

namespace vantorel {

std::optional<Bytes> storedPicture(const AssetFolder& assets, const SecureStorage* storage,
                                   const ClipItem& item) {
  if (!item.assetFilename) return std::nullopt;
  auto bytes = assets.read(*item.assetFilename);
  if (!bytes) return std::nullopt;
  const bool isSealed = SecureStorage::isSealed(*bytes);
  if (isSealed) bytes = storage != nullptr ? opened(*storage, *bytes) : std::nullopt;
  if (!bytes) return std::nullopt;
  // The seal says that a file is ours, not which of ours: two may have been exchanged.
  const bool isTheOne =
      item.contentHash ? ContentFingerprint::data(*bytes) == *item.contentHash : isSealed;
  if (!isTheOne) return std::nullopt;
  if (!isSealed && storage != nullptr) (void)assets.seal(*item.assetFilename, *storage, *bytes);
  return bytes;
}

}  // namespace vantorel
