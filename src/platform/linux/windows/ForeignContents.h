// SPDX-License-Identifier: MIT
#pragma once

#include <filesystem>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "platform/Pasteboard.h"
#include "platform/linux/windows/OwnerForms.h"

namespace vantorel {

/// One change of the clipboard by another program: what its owner offers, asked for once, and its
/// forms, each read when asked for. An owner that stayed silent about a form that it offers, or
/// whose form is too large, is asked nothing more: a lesser form would pass for what was copied.
/// Every completion is called exactly once, on the window system's thread, where all of this lives.
class ForeignContents : public std::enable_shared_from_this<ForeignContents> {
 public:
  template <class Value>
  using Completion = std::function<void(Value)>;
  using Targets = std::vector<std::string>;

  explicit ForeignContents(std::unique_ptr<OwnerForms> owner) : owner_(std::move(owner)) {}

  /// Absent when the owner does not answer, or not with a list of targets.
  void readTargets(Completion<std::optional<Targets>> completion);
  void readString(Completion<std::optional<std::string>> completion);
  void readData(PasteboardDataType type, Completion<std::optional<Bytes>> completion);
  void readFiles(Completion<std::vector<std::filesystem::path>> completion);
  /// The encoded image in the best form after the first `skipped` ones; absent when there is no
  /// further one.
  struct EncodedImage {
    std::shared_ptr<const Bytes> bytes;
    std::size_t skipped = 0;  // to ask with for the next form
  };
  void readImage(std::size_t skipped, Completion<std::optional<EncodedImage>> completion);

 private:
  struct Form {
    std::string target;
    Bytes bytes;
    std::string type;
    std::size_t next = 0;
  };
  using Candidates = Targets (*)(const Targets& offered);

  void askTargets();
  void takeTargets(std::optional<Targets> offered);
  void readForm(Candidates candidates, std::size_t index,
                Completion<std::optional<Form>> completion);
  void readCandidates(Targets candidates, std::size_t index,
                      Completion<std::optional<Form>> completion);
  void readStringFrom(std::size_t index, Completion<std::optional<std::string>> completion);
  void readFilesInText(const Completion<std::vector<std::filesystem::path>>& completion);
  void readFilesFrom(std::size_t index, Completion<std::vector<std::filesystem::path>> completion);

  const std::unique_ptr<OwnerForms> owner_;
  enum class Stage { unknown, asked, known } stage_ = Stage::unknown;
  std::optional<Targets> targets_;
  /// Read when it was looked at for files, and given to whoever asks for it next.
  std::optional<std::string> textInAdvance_;
  enum class Trust { whole, lost } trust_ = Trust::whole;
  std::vector<Completion<std::optional<Targets>>> waiting_;
};

}  // namespace vantorel
