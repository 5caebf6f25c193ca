// SPDX-License-Identifier: MIT
#pragma once

#include <deque>
#include <map>
#include <memory>
#include <string>
#include <vector>

#include "platform/Dispatch.h"
#include "platform/Pasteboard.h"

namespace vantorel {

/// A pasteboard whose other programs are played by the test. What it announces and answers goes
/// through the main queue, so nothing arrives before the test runs that queue.
class FakePasteboard : public Pasteboard {
 public:
  enum class Form { types, string, rtf, html, files, image };
  /// atOnce: the answer is queued when it is asked for. whenReleased: when the test says so.
  /// never: the owner is silent, "nothing there" comes when the time limit runs out, and for all
  /// that is asked of that change from then on.
  enum class Answering { atOnce, whenReleased, never };

  /// Another program and what it offers.
  struct Owner {
    std::vector<std::string> types = {};  // beside those that the forms below bring with them
    std::optional<std::string> string = std::nullopt;
    std::optional<Bytes> rtf = std::nullopt;
    std::optional<Bytes> html = std::nullopt;
    std::vector<std::filesystem::path> files = {};
    std::shared_ptr<const Image> image = nullptr;
    Answering answering = Answering::atOnce;
    std::map<Form, Answering> answeringOf = {};  // where a form is answered otherwise
    std::optional<ProcessId> process = std::nullopt;
    bool isBridge = false;
  };

  /// What this process put on the pasteboard; `clear` is an entry of its own.
  struct Write {
    enum class Kind { clear, item, string, image, files };
    Kind kind = Kind::clear;
    PasteboardItem item = {};  // a string alone stands in `item.string`
    std::shared_ptr<const Image> image = nullptr;
    std::vector<std::filesystem::path> files = {};
  };

  static constexpr Seconds timeLimit{5};

  explicit FakePasteboard(Dispatch& dispatch) : dispatch_(dispatch) {}
  ~FakePasteboard() override;

  [[nodiscard]] ChangeCount changeCount() const override { return changeCount_; }
  [[nodiscard]] bool wroteContents(ChangeCount change) const override {
    return own_ && change == changeCount_;
  }
  [[nodiscard]] std::optional<ProcessId> ownerProcess(ChangeCount change) const override {
    return change == changeCount_ ? contents_.process : std::nullopt;
  }
  [[nodiscard]] bool isBridged(ChangeCount change) const override {
    return change == changeCount_ && contents_.isBridge;
  }
  [[nodiscard]] bool announcesEveryChange() const override { return announces_; }
  void setAnnouncingHandler(std::function<void()> handler) override {
    onAnnouncing_ = std::move(handler);
  }
  void setChangeHandler(std::function<void()> handler) override;
  void setOwnerExitHandler(std::function<void(ChangeCount)> handler) override;
  void setSaveHandler(SaveHandler handler) override;
  void readTypes(ChangeCount change,
                 Completion<std::optional<std::vector<std::string>>> completion) override;
  void readString(ChangeCount change, Completion<std::optional<std::string>> completion) override;
  void readData(ChangeCount change, PasteboardDataType type,
                Completion<std::optional<Bytes>> completion) override;
  void readFileURLs(ChangeCount change,
                    Completion<std::vector<std::filesystem::path>> completion) override;
  void readImage(ChangeCount change, Completion<std::shared_ptr<const Image>> completion) override;
  [[nodiscard]] bool writeItem(PasteboardItem item) override;
  [[nodiscard]] bool writeString(std::string string) override;
  [[nodiscard]] bool writeImage(std::shared_ptr<const Image> image) override;
  [[nodiscard]] bool writeFileURLs(const std::vector<std::filesystem::path>& paths) override;
  void clearContents() override;

  // The test's side.

  /// Another program takes the pasteboard. Whoever listens now hears of it in a later turn, even
  /// if it has stopped listening by then.
  void offer(Owner owner);
  void offerText(std::string text);
  /// The owner ends without a successor; only meaningful after `offer`.
  void endOwner();
  /// The owner asks for its contents to be kept. What it hears is set once it has been answered.
  [[nodiscard]] std::shared_ptr<std::optional<bool>> askToSave();
  /// Lets every read that waits be answered now, as the pasteboard stands. Answers their number.
  std::size_t release();
  /// Says of itself from now on that it announces every change, or that it does not.
  void setAnnouncesEveryChange(bool announces) {
    announces_ = announces;
    if (onAnnouncing_) onAnnouncing_();
  }
  /// Without announcements a change shows in the change count alone.
  void setAnnouncing(bool announcing) { announcing_ = announcing; }
  /// Every later write fails and changes nothing.
  void setRefusingWrites(bool refusing) { refusingWrites_ = refusing; }

  [[nodiscard]] bool hasChangeHandler() const { return static_cast<bool>(changeHandler_); }
  [[nodiscard]] bool hasOwnerExitHandler() const { return static_cast<bool>(ownerExitHandler_); }
  [[nodiscard]] bool hasSaveHandler() const { return static_cast<bool>(saveHandler_); }
  [[nodiscard]] std::size_t heldCount() const { return held_.size(); }
  /// What was asked of other programs, in order.
  [[nodiscard]] const std::vector<Form>& reads() const { return reads_; }
  void forgetReads() { reads_.clear(); }
  [[nodiscard]] const std::vector<Write>& writes() const { return writes_; }
  /// What stands on the pasteboard, whoever put it there.
  [[nodiscard]] const Owner& contents() const { return contents_; }
  [[nodiscard]] std::vector<std::string> currentTypes() const;
  [[nodiscard]] bool isEmpty() const { return currentTypes().empty(); }

 private:
  template <class Value>
  using Pick = std::function<Value(const FakePasteboard&)>;
  template <class Value>
  void answer(Form form, ChangeCount change, Completion<Value> completion, Pick<Value> pick);
  bool write(Write write, Owner contents);

  Dispatch& dispatch_;
  ChangeCount changeCount_ = 1;
  Owner contents_;
  bool ownerEnded_ = false;
  ChangeCount silentChange_ = 0;
  bool announcing_ = true;
  bool announces_ = false;
  std::function<void()> onAnnouncing_;
  bool refusingWrites_ = false;
  std::function<void()> changeHandler_;
  std::function<void(ChangeCount)> ownerExitHandler_;
  SaveHandler saveHandler_;
  bool own_ = false;  // this process wrote the contents
  std::deque<std::function<void()>> held_;
  std::vector<std::unique_ptr<Timer>> silences_;
  std::vector<Form> reads_;
  std::vector<Write> writes_;
};

}  // namespace vantorel
