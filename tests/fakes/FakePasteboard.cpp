// SPDX-License-Identifier: MIT
#include "fakes/FakePasteboard.h"

#include <utility>

namespace vantorel {

FakePasteboard::~FakePasteboard() = default;

void FakePasteboard::setChangeHandler(std::function<void()> handler) {
  changeHandler_ = std::move(handler);
}

void FakePasteboard::setOwnerExitHandler(std::function<void(ChangeCount)> handler) {
  ownerExitHandler_ = std::move(handler);
}

void FakePasteboard::setSaveHandler(SaveHandler handler) { saveHandler_ = std::move(handler); }

std::shared_ptr<std::optional<bool>> FakePasteboard::askToSave() {
  const auto heard = std::make_shared<std::optional<bool>>();
  dispatch_.async([this, heard, handler = saveHandler_, change = changeCount_] {
    const auto done = [this, heard] { *heard = own_ && !isEmpty(); };
    if (handler) handler(change, done);
  });
  return heard;
}

template <class Value>
void FakePasteboard::answer(Form form, ChangeCount change, Completion<Value> completion,
                            Pick<Value> pick) {
  if (!own_) reads_.push_back(form);
  auto give = [this, change, completion, pick = std::move(pick)] {
    const bool there = change == changeCount_ && change != silentChange_ && !ownerEnded_;
    dispatch_.async([completion, value = there ? pick(*this) : Value{}] { completion(value); });
  };
  const auto special = contents_.answeringOf.find(form);
  switch (special != contents_.answeringOf.end() ? special->second : contents_.answering) {
    case Answering::atOnce:
      give();
      break;
    case Answering::whenReleased:
      held_.push_back(std::move(give));
      break;
    case Answering::never:
      silences_.push_back(dispatch_.after(timeLimit, [this, change, completion] {
        silentChange_ = change;
        completion(Value{});
      }));
      break;
  }
}

void FakePasteboard::readTypes(ChangeCount change,
                               Completion<std::optional<std::vector<std::string>>> completion) {
  answer<std::optional<std::vector<std::string>>>(
      Form::types, change, std::move(completion),
      [](const FakePasteboard& self) { return self.currentTypes(); });
}

void FakePasteboard::readString(ChangeCount change,
                                Completion<std::optional<std::string>> completion) {
  answer<std::optional<std::string>>(
      Form::string, change, std::move(completion),
      [](const FakePasteboard& self) { return self.contents_.string; });
}

void FakePasteboard::readData(ChangeCount change, PasteboardDataType type,
                              Completion<std::optional<Bytes>> completion) {
  const bool rtf = type == PasteboardDataType::rtf;
  answer<std::optional<Bytes>>(
      rtf ? Form::rtf : Form::html, change, std::move(completion),
      [rtf](const FakePasteboard& self) { return rtf ? self.contents_.rtf : self.contents_.html; });
}

void FakePasteboard::readFileURLs(ChangeCount change,
                                  Completion<std::vector<std::filesystem::path>> completion) {
  answer<std::vector<std::filesystem::path>>(
      Form::files, change, std::move(completion),
      [](const FakePasteboard& self) { return self.contents_.files; });
}

void FakePasteboard::readImage(ChangeCount change,
                               Completion<std::shared_ptr<const Image>> completion) {
  answer<std::shared_ptr<const Image>>(
      Form::image, change, std::move(completion),
      [](const FakePasteboard& self) { return self.contents_.image; });
}

bool FakePasteboard::write(Write write, Owner contents) {
  if (refusingWrites_) return false;
  ++changeCount_;
  ownerEnded_ = false;
  own_ = true;
  contents_ = std::move(contents);
  writes_.push_back(std::move(write));
  return true;
}

bool FakePasteboard::writeItem(PasteboardItem item) {
  Owner contents{.string = item.string, .rtf = item.rtf, .html = item.html};
  return write({.kind = Write::Kind::item, .item = std::move(item)}, std::move(contents));
}

bool FakePasteboard::writeString(std::string string) {
  Owner contents{.string = string};
  return write({.kind = Write::Kind::string, .item = PasteboardItem{std::move(string), {}, {}}},
               std::move(contents));
}

bool FakePasteboard::writeImage(std::shared_ptr<const Image> image) {
  if (!image) return false;
  Owner contents{.image = image};
  return write({.kind = Write::Kind::image, .image = std::move(image)}, std::move(contents));
}

bool FakePasteboard::writeFileURLs(const std::vector<std::filesystem::path>& paths) {
  if (paths.empty()) return false;
  // Named, since g++ 12 mistakes the temporaries for uninitialized when it optimises.
  Write files;
  files.kind = Write::Kind::files;
  files.files = paths;
  Owner contents;
  contents.files = paths;
  // As the platform's: beside the files their paths as text.
  std::string lines;
  for (const auto& path : paths) lines += (lines.empty() ? "" : "\n") + path.native();
  contents.string = lines;
  return write(std::move(files), std::move(contents));
}

void FakePasteboard::clearContents() {
  ++changeCount_;
  ownerEnded_ = false;
  own_ = true;
  contents_ = {};
  writes_.push_back({.kind = Write::Kind::clear});
}

void FakePasteboard::offer(Owner owner) {
  ++changeCount_;
  ownerEnded_ = false;
  own_ = false;
  contents_ = std::move(owner);
  if (announcing_ && changeHandler_) dispatch_.async(changeHandler_);
}

void FakePasteboard::offerText(std::string text) { offer({.string = std::move(text)}); }

void FakePasteboard::endOwner() {
  ownerEnded_ = true;
  contents_ = {};
  if (!ownerExitHandler_) return;
  dispatch_.async([handler = ownerExitHandler_, change = changeCount_] { handler(change); });
}

std::size_t FakePasteboard::release() {
  const auto waiting = std::exchange(held_, {});
  for (const auto& give : waiting) give();
  return waiting.size();
}

std::vector<std::string> FakePasteboard::currentTypes() const {
  auto types = contents_.types;
  if (contents_.string) types.emplace_back("text/plain;charset=utf-8");
  if (contents_.rtf) types.emplace_back("text/rtf");
  if (contents_.html) types.emplace_back("text/html");
  if (!contents_.files.empty()) types.emplace_back("text/uri-list");
  if (contents_.image) types.emplace_back("image/png");
  return types;
}

}  // namespace vantorel
