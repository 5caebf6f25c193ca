// SPDX-License-Identifier: MIT
#include "tool/ImportHere.h"

#include <algorithm>
#include <memory>
#include <optional>
#include <utility>

#include "platform/ApplicationId.h"
#include "platform/TextRecognition.h"
#include "platform/linux/start/HistoryLock.h"
#include "platform/linux/xdg/NoDump.h"
#include "platform/posix/PosixFileSystem.h"
#include "store/ClipStore.h"
#include "tool/HistoryOnDisk.h"
#include "tool/OpenKeyring.h"
#include "tool/ToolLine.h"

namespace vantorel {
namespace {

std::optional<ToolFailure> failureOf(ClipStore::Obstacle obstacle) {
  switch (obstacle) {
    case ClipStore::Obstacle::none:
      return std::nullopt;
    case ClipStore::Obstacle::noKey:
      return ToolFailure{ToolStatus::noKey, "the keyring did not give or take the key. Try again."};
    case ClipStore::Obstacle::keyMissing:
      return ToolFailure{ToolStatus::noKey, "the keyring does not have the key of this history."};
    case ClipStore::Obstacle::directory:
      return ToolFailure{ToolStatus::failed,
                         "the history cannot be used: another Vantorel that cannot be reached from "
                         "here has it, or its directory cannot be made."};
    case ClipStore::Obstacle::unreadable:
      break;
  }
  return ToolFailure{ToolStatus::failed,
                     "the history does not open with the key in the keyring, or is damaged. "
                     "'vantorel --new-history' puts it aside and begins another."};
}

bool areSame(const std::vector<ClipItem>& a, const std::vector<ClipItem>& b) {
  return std::equal(a.begin(), a.end(), b.begin(), b.end(),
                    [](const ClipItem& one, const ClipItem& other) { return one.id == other.id; });
}

}  // namespace

std::variant<std::size_t, ToolFailure> importHere(Dispatch& dispatch,
                                                  const std::filesystem::path& dataHome,
                                                  const std::vector<ImportedClip>& clips) {
  OpenKeyring keyring(dispatch);
  if (!keyring.trouble().empty()) return ToolFailure{ToolStatus::noKey, keyring.trouble()};
  HistoryLock lock;
  PosixFileSystem files(setNoDump,
                        [&lock](const auto& directory) { return lock.claim(directory); });
  std::optional<std::size_t> kept;
  std::vector<ClipItem> items;
  std::shared_ptr<SecureStorage> storage;
  {
    AbsentTextRecognition recognition;
    const auto queue = dispatch.serialQueue(std::string(ClipStore::recognitionQueueLabel));
    ClipStore store({dispatch, files, keyring.keychain(), dataHome, recognition, *queue},
                    std::nullopt, nullptr, {});
    if (auto failure = failureOf(store.obstacle())) return std::move(*failure);
    kept = store.takeIn(clips);
    if (!kept) {
      return ToolFailure{ToolStatus::failed, "the pictures could not be stored; is the disk full?"};
    }
    items = store.items();
    storage = store.secureStorage();
  }
  // A long history is written as the store ends, which can tell nobody.
  const HistoryOnDisk history(files, dataHome / applicationId::historyDirectory);
  const auto saved = history.read(storage, dispatch.now());
  if (saved && areSame(*saved, items)) return *kept;
  return ToolFailure{ToolStatus::failed, "the history could not be saved; is the disk full?"};
}

}  // namespace vantorel
