#include "store/SealedHistory.h"

#include <exception>
#include <utility>

#include "base/AtomicFile.h"
#include "store/HistoryFile.h"
#include "store/SealedFile.h"

namespace vantorel {

SealedHistory::SealedHistory(FileSystem& files, HistoryDirectories directories,
                             std::filesystem::path path,
                             std::shared_ptr<const SecureStorage> storage)
    : files_(files),
      directories_(std::move(directories)),
      path_(std::move(path)),
      storage_(std::move(storage)) {}

bool SealedHistory::write(const std::vector<ClipItem>& items) const {
  if (!storage_ || directories_.restore()) return false;
  try {
    const Bytes json = encodeHistory(items);
    return json.size() <= maximumHistoryBytes && writeSealed(files_, path_, *storage_, json);
  } catch (const std::exception&) {  // no memory for it
    return false;
  }
}

void SealedHistory::removeUnfinishedWrites() const {
  const auto& directory = directories_.base();
  for (const auto& name : files_.list(directory).value_or(std::vector<FileSystem::Path>())) {
    if (isUnfinishedWrite(name.string(), path_.filename().string()))
      (void)files_.remove(directory / name);
  }
}

}  // namespace vantorel
