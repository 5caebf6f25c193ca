// SPDX-License-Identifier: MIT
#pragma once

#include <functional>
#include <memory>
#include <string>
#include <utility>
#include <variant>
#include <vector>

#include "base/Lifetime.h"
#include "platform/CaptureLimits.h"
#include "platform/Dispatch.h"
#include "platform/Pasteboard.h"
#include "platform/linux/windows/ForeignContents.h"
#include "platform/linux/windows/PasteboardContents.h"

namespace vantorel {

/// What the pasteboards of all window systems have in common: contents are read on the window
/// system's thread, images decoded on a queue of their own, and answers delivered on the main one.
/// Main thread, except where said.
class SelectionPasteboard : public Pasteboard {
 public:
  struct Superseded {};
  struct Empty {};
  using Own = std::shared_ptr<const PasteboardContents>;
  using Foreign = std::shared_ptr<ForeignContents>;
  using Contents = std::variant<Superseded, Empty, Own, Foreign>;

  void readTypes(ChangeCount change,
                 Completion<std::optional<std::vector<std::string>>> completion) final;
  void readString(ChangeCount change, Completion<std::optional<std::string>> completion) final;
  void readData(ChangeCount change, PasteboardDataType type,
                Completion<std::optional<Bytes>> completion) final;
  void readFileURLs(ChangeCount change,
                    Completion<std::vector<std::filesystem::path>> completion) final;
  void readImage(ChangeCount change, Completion<std::shared_ptr<const Image>> completion) final;

  [[nodiscard]] bool writeItem(PasteboardItem item) final;
  [[nodiscard]] bool writeString(std::string string) final;
  [[nodiscard]] bool writeImage(std::shared_ptr<const Image> image) final;
  [[nodiscard]] bool writeFileURLs(const std::vector<std::filesystem::path>& paths) final;

 protected:
  /// What these name outlives the pasteboard. `largestPng`: bytes of the largest image that the
  /// program keeps in its PNG form.
  SelectionPasteboard(Dispatch& dispatch, const ImageDecoder& decoder, std::size_t largestPng);

  /// Runs work on the window system's thread; any thread.
  virtual bool post(Work work) = 0;
  /// The contents of that change, as far as they are still the present ones. On that thread.
  [[nodiscard]] virtual Contents contents(ChangeCount change) const = 0;
  [[nodiscard]] virtual bool write(PasteboardContents contents) = 0;

  [[nodiscard]] Dispatch& dispatch() const { return dispatch_; }
  /// For what takes milliseconds; any thread.
  void runElsewhere(Work work) { imageQueue_->async(std::move(work)); }
  /// First of two steps of the end: nothing is answered any more.
  void endAnswers() { life_.end(); }
  /// The other, when the thread has stopped, for the queue posts to it.
  void endImages() { imageQueue_.reset(); }
  /// `function`, called only as long as answers are given.
  template <class Function>
  [[nodiscard]] auto guard(Function function) const {
    return life_.guard(std::move(function));
  }

 private:
  void readForeignImage(ChangeCount change, std::size_t skipped,
                        Completion<std::shared_ptr<const Image>> deliver);
  template <class Value>
  Completion<Value> delivery(Completion<Value> completion) const;

  Dispatch& dispatch_;
  const ImageDecoder& decoder_;
  std::size_t largestPng_;
  std::unique_ptr<SerialQueue> imageQueue_;
  Lifetime life_;
};

}  // namespace vantorel
