// SPDX-License-Identifier: MIT
#include "store/SealedHistory.h"

#include <exception>
#include <utility>

#include "base/AtomicFile.h"
#include "store/HistoryFile.h"
#include "store/HistorySize.h"
#include "store/SealedFile.h"

namespace vantorel {

using Outcome = SealedHistory::Outcome;

bool SealedHistory::mayBeSealed(FileSystem& files, const std::filesystem::path& path) {
  if (!files.exists(path)) return false;
  const auto bytes = files.readFile(path, maximumHistoryBytes + maximumOverhead);
  return !bytes || SecureStorage::isSealed(*bytes);
}

SealedHistory::SealedHistory(Services services, HistoryDirectories directories,
                             std::filesystem::path path, std::uint64_t maximumBytes)
    : services_(std::move(services)),
      directories_(std::move(directories)),
      path_(std::move(path)),
      maximumBytes_(maximumBytes) {}

std::optional<std::vector<ClipItem>> SealedHistory::read() const {
  auto envelope = services_.files.readFile(path_, maximumHistoryBytes + maximumOverhead);
  if (!services_.storage || !envelope || !SecureStorage::isSealed(*envelope)) return std::nullopt;
  auto json = opened(*services_.storage, *envelope);
  envelope.reset();  // it is as large as what is read from it
  return json ? decodeHistory(std::move(*json)) : std::nullopt;
}

Outcome SealedHistory::write(const std::vector<ClipItem>& items) const {
  if (!services_.storage || directories_.restore()) return Outcome::failed;
  try {
    const auto fitting = withinHistorySize(items, maximumBytes_);
    if (!fitting) return Outcome::tooLarge;
    const EncodedHistory json(*fitting);
    if (json.view().size() > maximumBytes_) return Outcome::tooLarge;
    const bool isWritten = writeSealed(services_.files, path_, *services_.storage, json.view());
    return isWritten ? Outcome::saved : Outcome::failed;
  } catch (const std::exception&) {  // no memory for it
    return Outcome::failed;
  }
}

void SealedHistory::removeUnfinishedWrites() const {
  const auto& directory = directories_.base();
  for (const auto& name :
       services_.files.list(directory).value_or(std::vector<FileSystem::Path>())) {
    if (isUnfinishedWrite(name.string(), path_.filename().string()))
      (void)services_.files.remove(directory / name);
  }
}

}  // namespace vantorel
