// SPDX-License-Identifier: MIT
#include "tool/HistoryOnDisk.h"

#include <utility>

#include "store/AssetFolder.h"
#include "store/ClipDuplicates.h"
#include "store/ClipRetention.h"
#include "store/ClipStore.h"
#include "store/SealedHistory.h"
#include "store/StoredPicture.h"

namespace vantorel {

HistoryOnDisk::HistoryOnDisk(FileSystem& files, const std::filesystem::path& base)
    : files_(files), directories_(files, base) {}

HistoryOnDisk::State HistoryOnDisk::state() const {
  if (files_.exists(directories_.base() / SealedHistory::fileName)) return State::sealed;
  return files_.exists(directories_.base() / SealedHistory::legacyFileName) ? State::old
                                                                            : State::absent;
}

std::optional<std::vector<ClipItem>> HistoryOnDisk::read(
    const std::shared_ptr<const SecureStorage>& storage, Date now) const {
  const SealedHistory file({files_, storage}, directories_,
                           directories_.base() / SealedHistory::fileName, maximumHistoryBytes);
  auto items = file.read();
  if (!items) return std::nullopt;
  separateIdentities(*items);
  const ClipStoreLimits limits;
  return pruned(coalesced(std::move(*items)), now, limits.maxAge, limits.maxItems).kept;
}

std::optional<Bytes> HistoryOnDisk::picture(const SecureStorage& storage,
                                            const ClipItem& item) const {
  const AssetFolder assets(files_, directories_.assets());
  // With a key at hand, a picture that lies there unsealed would be sealed.
  if (auto unsealed = storedPicture(assets, nullptr, item)) return unsealed;
  return storedPicture(assets, &storage, item);
}

}  // namespace vantorel
