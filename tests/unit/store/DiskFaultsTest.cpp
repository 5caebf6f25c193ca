// SPDX-License-Identifier: MIT
// The disk's faults over whole lives of a history: its power fails at every step, and every step
// fails once. VANTOREL_LIVES says how many lives are lived; what was tried is told at the end.
#include <gtest/gtest.h>

#include <array>
#include <cstdlib>
#include <functional>
#include <string>

#include "fakes/FakeImage.h"
#include "fakes/FakeTextRecognition.h"
#include "fakes/FaultyFileSystem.h"
#include "fakes/ManualDispatch.h"
#include "fakes/MemoryDisk.h"
#include "fakes/TestStore.h"

namespace vantorel {
namespace {

using List = std::vector<std::string>;
using Key = std::shared_ptr<SecretBytes>;

constexpr auto support = "/support";
constexpr int stepsOfALife = 14;

unsigned livesToLive() {
  const char* const said = std::getenv("VANTOREL_LIVES");
  return said != nullptr ? static_cast<unsigned>(std::atoi(said)) : 1;
}

/// The list as the user knows it.
List described(const ClipStore& store) {
  List list;
  for (const ClipItem& item : store.items()) {
    list.push_back((item.pinned() ? "pinned " : "") + item.preview + item.contentHash.value_or(""));
  }
  return list;
}

ClipStoreLimits smallLimits() {
  ClipStoreLimits limits;
  limits.maxItems = 6;
  return limits;
}

/// A store and its user, who does the same with the same seed.
class Life {
 public:
  Life(FileSystem& files, unsigned seed)
      : files_(files), chance_(seed), key_(std::make_shared<SecretBytes>(newKey())) {
    start();
  }

  /// The key has been replaced in the keyring.
  std::function<void()> onNewKey;

  ClipStore& store() { return *store_; }
  ManualDispatch& dispatch() { return dispatch_; }
  [[nodiscard]] const Key& key() const { return key_; }
  /// The user sees in the list what the disk has.
  [[nodiscard]] bool isSaved() const {
    return store_->persistenceIsReady() && store_->lastSave() == SealedHistory::Outcome::saved;
  }

  void restart() {
    store_.reset();
    start();
  }

  void step() {
    dispatch_.setNow(advanced(dispatch_.now(), Seconds(1)));
    const auto number = std::to_string(++steps_);
    const auto any = [&] { return store_->items()[chance_() % store_->items().size()].id; };
    const auto act = store_->items().empty() ? chance_() % 2 : chance_() % 12;
    switch (act) {
      case 0:
      case 2:
      case 3:
        store_->insert(textItem("text " + number, dispatch_.now()));
        break;
      case 1:
      case 4:
      case 5:
        (void)store_->captureImage(FakeImage({1, 1}, "picture " + number), {});
        break;
      case 6:
      case 7:
        (void)store_->togglePinned(any());
        break;
      case 8:
        store_->remove(any());
        break;
      case 9:
        (void)store_->clear(false);
        break;
      case 10:
        (void)store_->clear(true);
        break;
      default:
        restart();
    }
    dispatch_.runQueued();
  }

  /// Whether a start on that disk, with that key in the keyring, finds one of these lists and every
  /// picture of it; else what it finds.
  std::string strangeStart(const MemoryDisk::State& state, const Key& key,
                           const std::vector<List>& expected) {
    MemoryDisk disk(state);
    const ClipStore found(services(disk), base(), storageUnder(key), smallLimits());
    if (!found.persistenceIsReady()) return "a history that does not open";
    for (const ClipItem& item : found.items()) {
      if (item.kind == ClipKind::image && !found.assetData(item)) return "a picture that is gone";
    }
    const List list = described(found);
    const bool isExpected = std::find(expected.begin(), expected.end(), list) != expected.end();
    return isExpected ? "" : "another list: " + testing::PrintToString(list);
  }

 private:
  static SecretBytes newKey() {
    SecretBytes key(SecureStorage::keySize);
    key.bytes()[0] = std::byte{1};
    return key;
  }
  static std::filesystem::path base() { return std::filesystem::path(support) / "ClipHistory"; }

  ClipStoreServices services(FileSystem& files) {
    return {dispatch_, files, keychain_, support, recognition_, *queue_};
  }
  std::shared_ptr<SecureStorage> storageUnder(const Key& key) {
    return std::make_shared<SecureStorage>(
        key->duplicate(), [this](const SecretBytes& fresh, const std::function<void()>&) {
          key_ = std::make_shared<SecretBytes>(fresh.duplicate());
          if (onNewKey) onNewKey();
          return FakeKeychain::endedUpdate(keychainStatus::success);
        });
  }
  void start() {
    store_ =
        std::make_unique<ClipStore>(services(files_), base(), storageUnder(key_), smallLimits());
  }

  FileSystem& files_;
  std::mt19937 chance_;
  Key key_;
  int steps_ = 0;
  ManualDispatch dispatch_;
  FakeKeychain keychain_;
  AbsentTextRecognition recognition_;
  std::unique_ptr<SerialQueue> queue_ = dispatch_.serialQueue("test.recognition");
  std::unique_ptr<ClipStore> store_;
};

MemoryDisk::State emptyHome() { return {.directories = {support}, .files = {}}; }

/// A life on a disk that is recorded, and all that a power failure can have left of it.
class PowerLoss {
 public:
  PowerLoss(unsigned seed, bool forgetsDirectories)
      : disk_(emptyHome()), life_(disk_, seed), chance_(seed) {
    if (forgetsDirectories) disk_.forgetDirectories();
    keys_.push_back({0, life_.key()});
    life_.onNewKey = [this] { keys_.push_back({disk_.changeCount(), life_.key()}); };
    acknowledge();
    for (int i = 0; i < stepsOfALife; ++i) {
      life_.step();
      acknowledge();
    }
  }

  /// Loses the power after each change. What was found that may not be, at most a few.
  List strangeStarts() {
    List strange;
    for (std::size_t count = lists_.front().first; count <= disk_.changeCount(); ++count) {
      const auto states = disk_.afterPowerLoss(count, chance_);
      for (const Key& key : keysAt(count)) {
        for (const auto& state : states) {
          ++starts_;
          const auto found = life_.strangeStart(state, key, listsAround(count));
          if (!found.empty()) strange.push_back(std::to_string(count) + ": " + found);
          if (strange.size() > 3) return strange;
        }
      }
    }
    return strange;
  }
  [[nodiscard]] std::size_t starts() const { return starts_; }

 private:
  void acknowledge() {
    if (life_.isSaved()) lists_.emplace_back(disk_.changeCount(), described(life_.store()));
  }

  /// The keyring's key, and the one before if that was replaced just there.
  [[nodiscard]] std::vector<Key> keysAt(std::size_t count) const {
    std::vector<Key> keys;
    for (const auto& [since, key] : keys_) {
      if (since < count || since == 0) keys = {key};
      if (since == count && since != 0) keys.push_back(key);
    }
    return keys;
  }

  /// The last list that was known to be saved by then, and the next one.
  [[nodiscard]] std::vector<List> listsAround(std::size_t count) const {
    std::vector<List> around;
    for (const auto& [at, list] : lists_) {
      if (at <= count) around.clear();
      around.push_back(list);
      if (at > count) break;
    }
    return around;
  }

  MemoryDisk disk_;
  Life life_;
  std::mt19937 chance_;
  std::vector<std::pair<std::size_t, Key>> keys_;
  std::vector<std::pair<std::size_t, List>> lists_;
  std::size_t starts_ = 0;
};

TEST(DiskFaults, APowerFailureAtAnyStepLeavesTheListBeforeOrAfter) {
  std::size_t starts = 0;
  for (unsigned seed = 1; seed <= livesToLive(); ++seed) {
    PowerLoss loss(seed, false);
    EXPECT_EQ(loss.strangeStarts(), List()) << "seed " << seed;
    starts += loss.starts();
  }
  RecordProperty("starts", std::to_string(starts));
}

TEST(DiskFaults, APowerFailureIsNoticedWhereDirectoriesDoNotComeToTheDisk) {
  EXPECT_NE(PowerLoss(1, true).strangeStarts(), List());
}

constexpr std::array everyError = {std::errc::no_space_on_device, std::errc::io_error,
                                   std::errc::read_only_file_system,
                                   static_cast<std::errc>(EDQUOT)};

/// Lives with one step of the disk failing; the number of steps that were taken.
int liveWithFailure(unsigned seed, int step, std::errc error) {
  MemoryDisk disk(emptyHome());
  FaultyFileSystem files(disk);
  Life life(files, seed);
  files.failAt(step, error);
  const std::size_t before = files.calls().size();
  List acknowledged = described(life.store());
  for (int i = 0; i < stepsOfALife; ++i) {
    life.step();
    if (!life.store().persistenceIsReady()) life.restart();  // a start that failed is made again
    const List list = described(life.store());
    if (life.isSaved()) acknowledged = list;
    const auto found = life.strangeStart(disk.state(), life.key(), {acknowledged, list});
    EXPECT_EQ(found, "") << "seed " << seed << ", step " << step << ", error " << int(error);
    if (!found.empty()) break;
  }
  const int steps = static_cast<int>(files.calls().size() - before);
  life.dispatch().advance(Seconds(600));
  EXPECT_TRUE(life.isSaved());
  EXPECT_EQ(life.dispatch().timerCount(), 0U);
  EXPECT_EQ(life.strangeStart(disk.state(), life.key(), {described(life.store())}), "");
  return steps;
}

TEST(DiskFaults, AnyStepMayFailOnceAndNothingSavedIsLost) {
  int failures = 0;
  for (unsigned seed = 1; seed <= livesToLive(); ++seed) {
    // One life tries every step with an error, more of them every step with every error.
    const bool isThorough = livesToLive() > 1;
    int steps = 1;
    for (int step = 0; step < steps && !testing::Test::HasFailure(); ++step) {
      for (std::size_t i = 0; i < (isThorough ? everyError.size() : 1); ++i) {
        const auto error = everyError.at((static_cast<std::size_t>(step) + i) % everyError.size());
        steps = std::max(steps, liveWithFailure(seed, step, error));
        ++failures;
      }
    }
  }
  RecordProperty("failures", std::to_string(failures));
}

}  // namespace
}  // namespace vantorel
