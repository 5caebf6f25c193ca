// SPDX-License-Identifier: MIT
#pragma once

#include <cstdint>
#include <filesystem>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "base/FileSystem.h"
#include "base/Lifetime.h"
#include "platform/Dispatch.h"
#include "platform/Image.h"
#include "platform/Keychain.h"
#include "platform/TextRecognition.h"
#include "security/SecureStorage.h"
#include "store/AssetFolder.h"
#include "store/ClipItem.h"
#include "store/ClipStoreLimits.h"
#include "store/HistoryDirectories.h"
#include "store/HistorySaver.h"
#include "store/ImportedClips.h"
#include "store/PictureReadings.h"
#include "store/PinResult.h"
#include "store/SealedHistory.h"
#include "store/SourceApp.h"

namespace vantorel {

/// What the store needs of its surroundings. All outlive the store.
struct ClipStoreServices {
  Dispatch& dispatch;
  FileSystem& files;
  Keychain& keychain;
  /// Where a store without a directory of its own keeps its "ClipHistory".
  std::filesystem::path applicationSupport;
  TextRecognition& recognition;
  /// Where the text in pictures is read, one picture after the other; all stores share it. It ends
  /// after the store, which gives up its own readings when it goes.
  SerialQueue& recognitionQueue;
};

/// The one owner of the history: an ordered list of entries, pinned ones first, and its sealed
/// files. Main thread. File-system failures are not reported: the list in memory stays usable, a
/// save that failed is tried again by itself, and a history that could not be read is never
/// overwritten. A history of some megabytes is written on a queue of its own, so that a long text
/// stops nothing; the store's end waits for it. The files of entries that leave the list are
/// deleted only once a list without them is saved, so that a history on the disk never names what a
/// sudden end has taken away.
class ClipStore {
 public:
  static constexpr std::size_t maxPinnedItems = 5;
  static constexpr std::string_view recognitionQueueLabel = "com.vantorel.image-text";

  /// Prepares the directories and loads the history. Without `baseUrl` the store lives in
  /// Application Support and takes its key from the keychain, which is given a new one only where
  /// no sealed history waits for its own; with one and without a storage it seals under a key that
  /// dies with the process. Ends the program when it is given neither a
  /// directory nor an Application Support.
  ClipStore(ClipStoreServices services, const std::optional<std::filesystem::path>& baseUrl,
            std::shared_ptr<SecureStorage> secureStorage, ClipStoreLimits limits);
  /// Gives up replacing the key if the keychain has not answered yet.
  ~ClipStore();
  ClipStore(const ClipStore&) = delete;
  ClipStore& operator=(const ClipStore&) = delete;

  /// Called after every change of the list, whether or not it could be saved.
  std::function<void()> onChange;
  /// Called when `lastSave` changes.
  std::function<void()> onSavingChange;
  /// Called when the recognised text of an image changes.
  std::function<void()> onSearchIndexChange;

  [[nodiscard]] const std::vector<ClipItem>& items() const { return items_; }
  [[nodiscard]] const ClipStoreLimits& limits() const { return limits_; }
  [[nodiscard]] const std::filesystem::path& baseUrl() const { return directories_.base(); }
  [[nodiscard]] const std::filesystem::path& assetsUrl() const { return directories_.assets(); }
  [[nodiscard]] const std::filesystem::path& indexUrl() const { return indexUrl_; }
  [[nodiscard]] const std::filesystem::path& legacyIndexUrl() const { return legacyIndexUrl_; }
  /// Absent when no key could be had: nothing is read or written then.
  [[nodiscard]] const std::shared_ptr<SecureStorage>& secureStorage() const {
    return secureStorage_;
  }
  /// What keeps the history from being read, and so from being written.
  enum class Obstacle {
    none,
    noKey,       // the keychain is locked, silent or absent
    keyMissing,  // the keychain that is there has none, and a sealed history stands on the disk
    directory,   // it cannot be made or used, or another program has it
    unreadable,  // what stands on the disk does not open
  };
  /// `clear` and `setAside` may take it away.
  [[nodiscard]] Obstacle obstacle() const { return obstacle_; }
  [[nodiscard]] bool persistenceIsReady() const { return obstacle_ == Obstacle::none; }

  /// Whether the list came to the disk the last time. One that `failed` is tried again by itself.
  [[nodiscard]] SealedHistory::Outcome lastSave() const { return saver_.lastSave(); }

  /// For a process that is ended from outside: returns when the list as it is stands on the disk,
  /// or cannot. Nobody is told of trouble any more.
  void finishSaving() { saver_.finish(); }
  /// Tells whether the list as it is came to the disk: at once, or when the save under way has
  /// ended; never when the store ends before.
  void whenSaved(std::function<void(bool)> tell) { saver_.whenSaved(std::move(tell)); }

  /// What was taken in. The entry may have had to go again at once.
  struct Capture {
    Uuid id;
    bool isNews = true;  // false when it repeats the entry that was copied last
  };
  /// Merges the entry with what it duplicates and puts it at the front.
  Capture insert(const ClipItem& item);
  /// Absent when the image is too large in every form or could not be stored.
  std::optional<Capture> captureImage(const Image& image, const SourceApp& source);
  /// Absent for an empty list.
  std::optional<Capture> captureFiles(const std::vector<std::filesystem::path>& urls,
                                      const SourceApp& source);

  /// Merges entries of another history with this one, by the times at which they were copied: see
  /// `merged`. The limits hold. Answers of how many the contents are in the history then; absent,
  /// and nothing has changed, when nothing can be saved here, or one of the pictures could not be
  /// stored.
  [[nodiscard]] std::optional<std::size_t> takeIn(const std::vector<ImportedClip>& clips);

  [[nodiscard]] bool canPinMore() const;
  PinResult togglePinned(Uuid id);
  /// True when a pinned entry got the name; a name of white space takes the name away.
  bool renamePinned(Uuid id, std::string_view name);
  /// True when both are pinned and differ.
  bool movePinned(Uuid id, Uuid relativeTo, bool before);
  /// Nothing happens, and nobody is told, when there is no such entry.
  void remove(Uuid id);
  /// A clear that leaves nothing also replaces the storage key, once the keychain has taken the new
  /// one; what is saved until then is sealed under the old one, and anew afterwards. A history that
  /// does not open with the key that is there is lost, pins and all, and goes too; the store begins
  /// anew then. The list is cleared either way. False when the history on the disk stays: without a
  /// key, and while it cannot be read at all and may hold pins that are to be kept; or for now,
  /// when the disk cannot be written, which is tried again by itself.
  [[nodiscard]] bool clear(bool includingPinned);

  enum class SetAside { done, notNeeded, failed };
  struct SetAsideResult {
    SetAside outcome = SetAside::failed;
    /// Where it is kept once it was moved, also when no new one could begin then.
    std::filesystem::path history;
  };
  /// Puts a history that cannot be opened beside itself, its pictures along with it, and begins
  /// anew; where its key is missing, the next store does, with a new key. Nothing is changed when
  /// the history is open, or can be by now, nor while the keychain cannot be asked, which is
  /// `failed`.
  [[nodiscard]] SetAsideResult setAside();

  /// The bytes of an entry's image; absent when they cannot be had (see `storedPicture`). May take
  /// the milliseconds that reading 12 MiB takes, and proving that they are the right ones.
  [[nodiscard]] std::optional<Bytes> assetData(const ClipItem& item) const;

 private:
  /// What is done to a changed list before it is saved. `numbers`: pins are numbered anew; `all`:
  /// it is put in order and cut to its limits first.
  enum class Upkeep { none, numbers, all };

  void commit(Upkeep upkeep);
  void prune();
  bool takeOut(const std::function<bool(const ClipItem&)>& goes);
  void discardAssetsOf(const std::vector<ClipItem>& dropped);

  void open();
  [[nodiscard]] bool load();
  [[nodiscard]] bool migrateLegacy();
  [[nodiscard]] bool encryptLegacyAssets();
  void tidyLoadedHistory();
  [[nodiscard]] bool doesNotOpen();
  void clearDisk();
  [[nodiscard]] bool isClearOnDisk();
  void replaceKey();
  void settleKey();
  [[nodiscard]] bool isRotatingKey() const {
    return secureStorage_ && secureStorage_->isRotating();
  }

  [[nodiscard]] const ClipItem* storedImage(const std::string& contentHash) const;
  void setRecognizedText(Uuid id, const std::optional<std::string>& contentHash,
                         const std::string& text);

  ClipStoreServices services_;
  ClipStoreLimits limits_;
  HistoryDirectories directories_;
  std::filesystem::path indexUrl_;
  std::filesystem::path legacyIndexUrl_;
  AssetFolder assets_;
  Obstacle obstacle_ = Obstacle::none;
  std::shared_ptr<SecureStorage> secureStorage_;
  std::vector<ClipItem> items_;
  SealedHistory file_;
  HistorySaver saver_;
  PictureReadings readings_;
  Lifetime life_;
};

}  // namespace vantorel
