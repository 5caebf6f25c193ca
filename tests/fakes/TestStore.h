// SPDX-License-Identifier: MIT
#pragma once

#include <chrono>
#include <filesystem>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "fakes/FakeKeychain.h"
#include "fakes/FakeTextRecognition.h"
#include "fakes/FaultyFileSystem.h"
#include "fakes/ManualDispatch.h"
#include "fakes/TemporaryDirectory.h"
#include "platform/posix/PosixFileSystem.h"
#include "store/ClipStore.h"

namespace vantorel {

/// A store on real files in a directory that goes with it, under a clock that stands still, with
/// what every test needs to look at it. It touches no keychain.
class TestStore {
 public:
  explicit TestStore(ClipStoreLimits limits = {});
  ~TestStore();

  ClipStore& operator*() { return *store_; }
  ClipStore* operator->() { return store_.get(); }
  ClipStore& store() { return *store_; }

  /// Ends the store, as quitting does, and starts another on the same files with the same key.
  void restart();
  [[nodiscard]] bool isOpen() const { return store_ != nullptr; }
  /// Ends the store, leaving its files.
  void quit() { store_.reset(); }
  /// The same with another key, as after losing the keychain.
  void restartWithAnotherKey();

  [[nodiscard]] ManualDispatch& dispatch() { return dispatch_; }
  [[nodiscard]] FaultyFileSystem& files() { return files_; }
  [[nodiscard]] PosixFileSystem& disk() { return disk_; }
  [[nodiscard]] FakeKeychain& keychain() { return keychain_; }
  [[nodiscard]] FakeTextRecognition& recognition() { return recognition_; }
  [[nodiscard]] const std::shared_ptr<SecureStorage>& storage() const { return storage_; }
  [[nodiscard]] std::filesystem::path base() const { return directory_.path() / "ClipHistory"; }
  [[nodiscard]] std::filesystem::path assets() const { return base() / "Assets"; }
  [[nodiscard]] ClipStoreServices services();

  /// How often `onChange` was called since the last (re)start.
  [[nodiscard]] int changes() const { return changes_; }

  /// Moves the clock a second on, so that the next entry is newer than the last.
  void tick() { dispatch_.setNow(dispatch_.now() + std::chrono::seconds(1)); }
  /// Inserts a text entry a second after whatever was there, and answers its identity.
  Uuid addText(std::string_view text);
  /// The entry's present value.
  [[nodiscard]] ClipItem item(Uuid id) const;
  [[nodiscard]] bool has(Uuid id) const;
  /// The texts of the list, in order; the preview of what is not text.
  [[nodiscard]] std::vector<std::string> texts() const;

  /// Names of the files in the assets directory, sorted.
  [[nodiscard]] std::vector<std::string> assetNames();
  /// What the history file says, opened and decoded; absent when it cannot be.
  [[nodiscard]] std::optional<std::vector<ClipItem>> savedItems();

 private:
  void start();

  TemporaryDirectory directory_;
  ManualDispatch dispatch_;
  PosixFileSystem disk_;
  FaultyFileSystem files_{disk_};
  FakeKeychain keychain_;
  FakeTextRecognition recognition_;
  std::unique_ptr<SerialQueue> recognitionQueue_ =
      dispatch_.serialQueue(std::string(ClipStore::recognitionQueueLabel));
  ClipStoreLimits limits_;
  std::shared_ptr<SecureStorage> storage_;
  std::unique_ptr<ClipStore> store_;
  int changes_ = 0;
};

/// 2025-03-14T09:26:53Z, where a `ManualDispatch` begins, and `seconds` later.
[[nodiscard]] Date testDate(double seconds = 0);

/// Entries as the capturing code builds them, each with an identity of its own.
[[nodiscard]] ClipItem textItem(std::string_view text, Date createdAt = testDate());
[[nodiscard]] ClipItem imageItem(std::string_view assetFilename, std::string_view contentHash,
                                 Date createdAt = testDate());
[[nodiscard]] ClipItem filesItem(std::vector<std::string> paths, Date createdAt = testDate());
/// `item` as pin number `order`.
[[nodiscard]] ClipItem pinnedItem(ClipItem item, std::int64_t order);

/// The bytes of an `EncodedHistory`.
[[nodiscard]] Bytes encodeHistory(const std::vector<ClipItem>& items);

[[nodiscard]] Bytes toBytes(std::string_view text);

}  // namespace vantorel
