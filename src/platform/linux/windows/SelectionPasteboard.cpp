// SPDX-License-Identifier: MIT
#include "platform/linux/windows/SelectionPasteboard.h"

#include <algorithm>
#include <utility>

#include "platform/MainQueue.h"
#include "platform/linux/windows/ImagePreparation.h"
#include "platform/linux/windows/PasteboardTargets.h"

namespace vantorel {

namespace {

using Own = SelectionPasteboard::Own;
using Foreign = SelectionPasteboard::Foreign;

std::vector<std::string> typesOf(const Own& own) {
  std::vector<std::string> types;
  for (const auto& form : offerOf(own).forms) types.push_back(form.target);
  return types;
}

}  // namespace

SelectionPasteboard::SelectionPasteboard(Dispatch& dispatch, const ImageDecoder& decoder,
                                         std::size_t largestPng)
    : dispatch_(dispatch),
      decoder_(decoder),
      largestPng_(largestPng),
      imageQueue_(dispatch.serialQueue("com.vantorel.pasteboard-images")) {}

/// `completion`, to be called on any thread and run on the main queue while the pasteboard lives.
template <class Value>
Pasteboard::Completion<Value> SelectionPasteboard::delivery(Completion<Value> completion) const {
  return onMainQueue(dispatch_, life_.guard(std::move(completion)));
}

void SelectionPasteboard::readTypes(
    ChangeCount change, Completion<std::optional<std::vector<std::string>>> completion) {
  using Types = std::optional<std::vector<std::string>>;
  post([this, change, deliver = delivery(std::move(completion))] {
    const auto found = contents(change);
    if (const auto* foreign = std::get_if<Foreign>(&found)) {
      (*foreign)->readTargets([deliver](const Types& offered) {
        deliver(offered ? Types(targets::types(*offered)) : std::nullopt);
      });
    } else if (const auto* own = std::get_if<Own>(&found)) {
      deliver(typesOf(*own));
    } else if (std::holds_alternative<Empty>(found)) {
      deliver(Types(std::in_place));
    } else {
      deliver(std::nullopt);
    }
  });
}

void SelectionPasteboard::readString(ChangeCount change,
                                     Completion<std::optional<std::string>> completion) {
  post([this, change, deliver = delivery(std::move(completion))] {
    const auto found = contents(change);
    if (const auto* foreign = std::get_if<Foreign>(&found)) {
      (*foreign)->readString(deliver);
    } else if (const auto* own = std::get_if<Own>(&found)) {
      deliver((*own)->string);
    } else {
      deliver(std::nullopt);
    }
  });
}

void SelectionPasteboard::readData(ChangeCount change, PasteboardDataType type,
                                   Completion<std::optional<Bytes>> completion) {
  post([this, change, type, deliver = delivery(std::move(completion))] {
    const auto found = contents(change);
    if (const auto* foreign = std::get_if<Foreign>(&found)) {
      (*foreign)->readData(type, deliver);
    } else if (const auto* own = std::get_if<Own>(&found)) {
      deliver(type == PasteboardDataType::rtf ? (*own)->rtf : (*own)->html);
    } else {
      deliver(std::nullopt);
    }
  });
}

void SelectionPasteboard::readFileURLs(ChangeCount change,
                                       Completion<std::vector<std::filesystem::path>> completion) {
  post([this, change, deliver = delivery(std::move(completion))] {
    const auto found = contents(change);
    if (const auto* foreign = std::get_if<Foreign>(&found)) {
      (*foreign)->readFiles(deliver);
    } else if (const auto* own = std::get_if<Own>(&found)) {
      deliver((*own)->files);
    } else {
      deliver({});
    }
  });
}

void SelectionPasteboard::readImage(ChangeCount change,
                                    Completion<std::shared_ptr<const Image>> completion) {
  post([this, change, deliver = delivery(std::move(completion))] {
    const auto found = contents(change);
    if (const auto* own = std::get_if<Own>(&found)) {
      deliver((*own)->image);
    } else {
      readForeignImage(change, 0, deliver);
    }
  });
}

void SelectionPasteboard::readForeignImage(ChangeCount change, std::size_t skipped,
                                           Completion<std::shared_ptr<const Image>> deliver) {
  const auto found = contents(change);
  const auto* foreign = std::get_if<Foreign>(&found);
  if (foreign == nullptr) {
    deliver(nullptr);
    return;
  }
  using Encoded = std::optional<ForeignContents::EncodedImage>;
  (*foreign)->readImage(skipped, [this, change, deliver = std::move(deliver)](Encoded encoded) {
    if (!encoded) {
      deliver(nullptr);
      return;
    }
    imageQueue_->async([this, change, deliver, encoded = std::move(*encoded)] {
      // Of several pictures copied in a row only the last is worth the work.
      auto image =
          change == changeCount() ? preparedImage(decoder_, encoded.bytes, largestPng_) : nullptr;
      if (image) {
        deliver(std::move(image));
        return;
      }
      post([this, change, deliver, next = encoded.skipped] {
        readForeignImage(change, next, deliver);
      });
    });
  });
}

bool SelectionPasteboard::writeItem(PasteboardItem item) {
  PasteboardContents contents;
  contents.string = std::move(item.string);
  contents.rtf = std::move(item.rtf);
  contents.html = std::move(item.html);
  return write(std::move(contents));
}

bool SelectionPasteboard::writeString(std::string string) {
  PasteboardContents contents;
  contents.string = std::move(string);
  return write(std::move(contents));
}

bool SelectionPasteboard::writeImage(std::shared_ptr<const Image> image) {
  if (!image) return false;
  PasteboardContents contents;
  contents.image = std::move(image);
  return write(std::move(contents));
}

bool SelectionPasteboard::writeFileURLs(const std::vector<std::filesystem::path>& paths) {
  const bool absolute =
      std::all_of(paths.begin(), paths.end(), [](const auto& path) { return path.is_absolute(); });
  if (paths.empty() || !absolute) return false;
  return write(contentsOf(paths));
}

}  // namespace vantorel
