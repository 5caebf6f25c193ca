// SPDX-License-Identifier: MIT
#include "tool/UnfinishedExports.h"

#include <fcntl.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <utility>
#include <vector>

#include "base/FileDescriptor.h"
#include "platform/posix/PosixFileSystem.h"
#include "transfer/ExportManifest.h"
#include "transfer/HistoryExport.h"

namespace vantorel {
namespace {

using Path = std::filesystem::path;

/// Open, and nobody else's, by either meaning; closed otherwise.
FileDescriptor taken(const Path& path) {
  FileDescriptor directory(::open(path.c_str(), O_RDONLY | O_DIRECTORY | O_NOFOLLOW | O_CLOEXEC));
  struct stat status {};
  const bool isOurs = directory.isOpen() && ::fstat(directory.get(), &status) == 0 &&
                      status.st_uid == ::geteuid() &&
                      ::flock(directory.get(), LOCK_EX | LOCK_NB) == 0;
  return isOurs ? std::move(directory) : FileDescriptor(-1);
}

bool isOurs(const Path& name) { return name == manifestName || isExportedFileName(name.native()); }

}  // namespace

void removeUnfinishedExports(const Path& directory) {
  PosixFileSystem files;
  for (const Path& name : files.list(directory).value_or(std::vector<Path>())) {
    if (!isUnfinishedExport(name.native())) continue;
    const FileDescriptor unfinished = taken(directory / name);
    const auto within = files.list(directory / name);
    if (!unfinished.isOpen() || !within || !std::all_of(within->begin(), within->end(), isOurs)) {
      continue;
    }
    // By the descriptor: whatever takes its place meanwhile is another's.
    for (const Path& each : *within) (void)::unlinkat(unfinished.get(), each.c_str(), 0);
    (void)files.remove(directory / name);
  }
}

}  // namespace vantorel
