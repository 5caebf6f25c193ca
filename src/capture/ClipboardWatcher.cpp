// SPDX-License-Identifier: MIT
#include "capture/ClipboardWatcher.h"

#include <algorithm>

#include "platform/OwnApplication.h"
#include "platform/RestingTimer.h"
#include "store/CapturedEntries.h"
#include "text/Unicode.h"

namespace vantorel {

/// One change on its way into the history.
struct ClipboardWatcher::Reading {
  Pasteboard::ChangeCount change = 0;
  SourceApp source;
  std::shared_ptr<const OwnWrite> ownWrite;  // what these contents may be, offered anew
  std::string text;
  std::optional<Bytes> rtf;
  std::optional<Bytes> html;
  int formsAwaited = 2;                      // RTF and HTML, asked for together
  std::vector<std::function<void()>> saves;  // asked for meanwhile
};

ClipboardWatcher::ClipboardWatcher(ClipStore& store, PrivacyPreferences& privacy,
                                   ClipboardServices services)
    : store_(store),
      privacy_(privacy),
      services_(services),
      lastChangeCount_(services.pasteboard.changeCount()) {}

ClipboardWatcher::~ClipboardWatcher() { stop(); }

void ClipboardWatcher::start() {
  timer_.reset();
  timer_ = std::make_unique<RestingTimer>(services_.dispatch, services_.pasteboard, pollInterval,
                                          [this] { poll(); });
  lock_ = services_.lock.observe([this] {
    if (!services_.lock.isLocked()) advanceLastChangeCount();
  });
  services_.pasteboard.setChangeHandler(life_.guard([this] { poll(); }));
  services_.pasteboard.setOwnerExitHandler(
      life_.guard([this](Pasteboard::ChangeCount change) { ownerExited(change); }));
  services_.pasteboard.setSaveHandler(
      life_.guard([this](Pasteboard::ChangeCount change, std::function<void()> done) {
        saveAsked(change, std::move(done));
      }));
}

void ClipboardWatcher::stop() {
  const bool wasStarted = std::exchange(timer_, nullptr) != nullptr;
  lock_.reset();
  endReading();
  if (!wasStarted) return;
  services_.pasteboard.setChangeHandler({});
  services_.pasteboard.setOwnerExitHandler({});
  services_.pasteboard.setSaveHandler({});
  life_.end();
}

template <class Value, class Next>
Pasteboard::Completion<Value> ClipboardWatcher::whileReading(Next next) {
  return [this, next, current = std::weak_ptr(reading_)](Value value) {
    // The watcher owns the reading: while there is one, there is a watcher.
    if (const auto reading = current.lock()) (this->*next)(*reading, std::move(value));
  };
}

void ClipboardWatcher::poll() {
  const auto change = services_.pasteboard.changeCount();
  if (change == lastChangeCount_) return;
  lastChangeCount_ = change;
  supersedeReading();

  const auto front = services_.pasteboard.isBridged(change)
                         ? std::nullopt
                         : services_.workspace.frontmostApplication();
  auto source = sourceAppOf(front);
  // What the lock, the pause or the source alone rules out is not even asked about.
  if (services_.lock.isLocked() || privacy_.shouldIgnore({}, source)) {
    ownWrite_.reset();
    return;
  }
  reading_ = std::make_shared<Reading>();
  reading_->change = change;
  reading_->source = std::move(source);
  reading_->ownWrite = ownWriteTakenOver(change, front);
  services_.pasteboard.readTypes(
      change, whileReading<std::optional<std::vector<std::string>>>(&ClipboardWatcher::typesRead));
}

void ClipboardWatcher::typesRead(Reading& reading,
                                 const std::optional<std::vector<std::string>>& types) {
  if (!types || types->empty() || privacy_.shouldIgnore(*types, reading.source)) {
    endUncaptured();
    return;
  }
  services_.pasteboard.readFileURLs(
      reading.change,
      whileReading<std::vector<std::filesystem::path>>(&ClipboardWatcher::filesRead));
}

void ClipboardWatcher::filesRead(Reading& reading,
                                 const std::vector<std::filesystem::path>& paths) {
  if (reading.ownWrite && reading.ownWrite->equals(paths)) {
    endTakenOver([&](const ClipItem& item) {
      return item.kind == ClipKind::files &&
             std::equal(paths.begin(), paths.end(), item.filePaths.begin(), item.filePaths.end());
    });
    return;
  }
  if (!paths.empty()) {
    finish([&] { return store_.captureFiles(paths, reading.source); });
    return;
  }
  services_.pasteboard.readString(
      reading.change, whileReading<std::optional<std::string>>(&ClipboardWatcher::stringRead));
}

void ClipboardWatcher::stringRead(Reading& reading, std::optional<std::string> string) {
  if (!string) {
    services_.pasteboard.readImage(
        reading.change, whileReading<std::shared_ptr<const Image>>(&ClipboardWatcher::imageRead));
    return;
  }
  if (trimmed(*string).empty()) {
    endUncaptured();  // blank text stands for itself: an image beside it is not wanted
    return;
  }
  if (reading.ownWrite && reading.ownWrite->equals(*string)) {
    endTakenOver([&](const ClipItem& item) {
      return item.kind == ClipKind::text && item.text && item.text->get() == *string;
    });
    return;
  }
  reading.text = std::move(*string);
  for (const auto type : {PasteboardDataType::rtf, PasteboardDataType::html}) {
    services_.pasteboard.readData(
        reading.change, type,
        [this, type, current = std::weak_ptr(reading_)](std::optional<Bytes> data) {
          if (const auto living = current.lock()) dataRead(*living, type, std::move(data));
        });
  }
}

void ClipboardWatcher::dataRead(Reading& reading, PasteboardDataType type,
                                std::optional<Bytes> data) {
  (type == PasteboardDataType::rtf ? reading.rtf : reading.html) = std::move(data);
  if (--reading.formsAwaited > 0) return;
  finish([&] { return insertText(reading); });
}

ClipStore::Capture ClipboardWatcher::insertText(Reading& reading) {
  ClipItem item = textEntry(std::move(reading.text), reading.source, services_.dispatch.now());
  if (reading.rtf) item.rtfData = std::move(*reading.rtf);
  if (reading.html) item.htmlData = std::move(*reading.html);
  return store_.insert(item);
}

void ClipboardWatcher::imageRead(Reading& reading, const std::shared_ptr<const Image>& image) {
  const auto own = image && reading.ownWrite ? reading.ownWrite->candidateFor(*image) : nullptr;
  if (!own) {
    compared(reading, image, false);
    return;
  }
  if (!pictures_) pictures_ = services_.dispatch.serialQueue("com.vantorel.own-pictures");
  pictures_->async(
      [this, &dispatch = services_.dispatch, current = std::weak_ptr(reading_), own, image] {
        dispatch.async([this, current, image, same = samePicture(*own, *image)] {
          if (const auto living = current.lock()) compared(*living, image, same);
        });
      });
}

void ClipboardWatcher::compared(Reading& reading, const std::shared_ptr<const Image>& image,
                                bool same) {
  if (same) {
    endReading();
    return;
  }
  finish([&] { return image ? store_.captureImage(*image, reading.source) : std::nullopt; });
}

void ClipboardWatcher::finish(const std::function<std::optional<ClipStore::Capture>()>& capture) {
  const auto reading = std::exchange(reading_, nullptr);
  ownWrite_.reset();
  if (const auto captured = capture()) newestCapture_ = {reading->change, captured->id};
  answerSaves(*reading);
}

/// The contents are those of an entry that this program wrote: who offers them now may end, too.
void ClipboardWatcher::endTakenOver(const std::function<bool(const ClipItem&)>& isTheEntry) {
  const auto& items = store_.items();
  const auto entry = std::find_if(items.begin(), items.end(), isTheEntry);
  if (entry != items.end()) newestCapture_ = {reading_->change, entry->id};
  endReading();
}

void ClipboardWatcher::endUncaptured() {
  ownWrite_.reset();
  endReading();
}

void ClipboardWatcher::endReading() {
  if (const auto reading = std::exchange(reading_, nullptr)) answerSaves(*reading);
}

void ClipboardWatcher::supersedeReading() {
  const auto reading = reading_;
  // Its text is here, and only a richer form is late: nothing is lost over that.
  if (reading && !reading->text.empty() && !privacy_.shouldIgnore({}, reading->source)) {
    finish([&] { return insertText(*reading); });
  } else {
    endReading();
  }
}

void ClipboardWatcher::answerSaves(const Reading& reading) {
  for (const auto& done : reading.saves) save(reading.change, done);
}

std::optional<ClipItem> ClipboardWatcher::entryOf(Pasteboard::ChangeCount change) const {
  // Anything newer, whoever wrote it and whether or not it was kept, has the higher number.
  if (!newestCapture_ || newestCapture_->first != change) return std::nullopt;
  if (services_.pasteboard.changeCount() != change) return std::nullopt;
  const ClipItem* const found = findById(store_.items(), newestCapture_->second);
  if (found == nullptr) return std::nullopt;
  return *found;  // a copy: the history may change meanwhile
}

void ClipboardWatcher::ownerExited(Pasteboard::ChangeCount change) {
  const auto entry = entryOf(change);
  if (!entry || !onContentsLost) return;
  newestCapture_.reset();
  onContentsLost(*entry, [] {});
}

void ClipboardWatcher::saveAsked(Pasteboard::ChangeCount change, std::function<void()> done) {
  poll();  // the announcement of that change may still be on its way
  if (reading_ && reading_->change == change) {
    reading_->saves.push_back(std::move(done));
  } else {
    save(change, done);
  }
}

void ClipboardWatcher::save(Pasteboard::ChangeCount change, const std::function<void()>& done) {
  const auto entry = entryOf(change);
  if (entry && onContentsLost) {
    onContentsLost(*entry, done);
  } else {
    done();
  }
}

void ClipboardWatcher::advanceLastChangeCount() {
  lastChangeCount_ = services_.pasteboard.changeCount();
  endReading();
}

void ClipboardWatcher::noteOwnWrite() {
  ownWrite_.reset();
  const auto change = services_.pasteboard.changeCount();
  // Where another program was quicker, its copy is looked at like any other.
  if (!services_.pasteboard.wroteContents(change)) return;
  supersedeReading();
  advanceLastChangeCount();
  ownWrite_ = OwnWrite::readBack(services_.pasteboard, change);
}

std::shared_ptr<const OwnWrite> ClipboardWatcher::ownWriteTakenOver(
    Pasteboard::ChangeCount change, const std::optional<RunningApplication>& front) const {
  const auto owner = services_.pasteboard.ownerProcess(change);
  // A user's copy is not to be missed: where it cannot be told who owns it, or whose the window in
  // front is (one of another machine has a number that no process here has), it counts as one.
  const bool isForeign = front && front->processIdentifier <= 0;
  if (!ownWrite_ || !owner || isForeign) return nullptr;
  return front && *owner == front->processIdentifier ? nullptr : ownWrite_;
}

SourceApp ClipboardWatcher::sourceAppOf(const std::optional<RunningApplication>& front) const {
  if (!front || isOwnApplication(services_.workspace, *front)) return {};
  return {front->localizedName, front->bundleIdentifier};
}

SourceApp ClipboardWatcher::currentSourceApp() const {
  return sourceAppOf(services_.workspace.frontmostApplication());
}

}  // namespace vantorel
