// SPDX-License-Identifier: MIT
#pragma once

#include <atomic>
#include <chrono>
#include <functional>
#include <memory>
#include <utility>

#include "platform/linux/wayland/DataControl.h"
#include "platform/linux/windows/SelectionPasteboard.h"

namespace vantorel {

/// The clipboard of a Wayland compositor that lets programs keep it, on a connection and a thread
/// of its own. Who owns the contents is not told there, nor whether an owner that has gone ended or
/// cleared them.
class DataControlPasteboard : public SelectionPasteboard {
 public:
  struct Services {
    Dispatch& dispatch;
    const ImageDecoder& decoder;
  };
  struct Limits {
    /// The largest image that the program keeps in its PNG form.
    std::size_t largestPngBytes = largestEncodedImage;
    /// How long another program may be silent while it is read.
    std::chrono::milliseconds patience = PipeReader::usualPatience;
  };

  /// Null when that compositor does not offer it. What `services` name outlives the pasteboard.
  [[nodiscard]] static std::unique_ptr<DataControlPasteboard> open(
      Services services, std::unique_ptr<WaylandConnection> connection, Limits limits);
  [[nodiscard]] static std::unique_ptr<DataControlPasteboard> open(
      Services services, std::unique_ptr<WaylandConnection> connection) {
    return open(services, std::move(connection), Limits());
  }
  /// Reads under way never complete then; what this process wrote is gone.
  ~DataControlPasteboard() override;

  /// Owns PRIMARY too, with the present contents, for programs that paste only from there. True
  /// when both are ours; false when the clipboard holds nothing written by this process.
  [[nodiscard]] bool alsoOfferPrimary();

  [[nodiscard]] ChangeCount changeCount() const override { return control_->changeCount(); }
  [[nodiscard]] bool wroteContents(ChangeCount change) const override {
    return control_->wroteContents(change);
  }
  [[nodiscard]] std::optional<ProcessId> ownerProcess(ChangeCount /*change*/) const override {
    return std::nullopt;
  }
  [[nodiscard]] bool isBridged(ChangeCount /*change*/) const override { return false; }
  [[nodiscard]] bool announcesEveryChange() const override { return announces_; }
  void setAnnouncingHandler(std::function<void()> handler) override {
    onAnnouncing_ = std::move(handler);
  }
  void setChangeHandler(std::function<void()> handler) override { onChange_ = std::move(handler); }
  void setOwnerExitHandler(std::function<void(ChangeCount)> /*handler*/) override {}
  void setSaveHandler(SaveHandler /*handler*/) override {}
  void clearContents() override;

 private:
  DataControlPasteboard(Services services, std::unique_ptr<WaylandConnection> connection,
                        Limits limits);
  [[nodiscard]] bool start(std::chrono::milliseconds patience);
  bool post(Work work) override { return thread_.post(std::move(work)); }
  [[nodiscard]] Contents contents(ChangeCount change) const override {
    return control_->contents(change);
  }
  [[nodiscard]] bool write(PasteboardContents contents) override;

  bool announces_ = true;
  std::function<void()> onAnnouncing_;
  std::function<void()> onChange_;
  std::atomic<bool> changeIsQueued_ = false;
  WaylandThread thread_;
  std::unique_ptr<DataControl> control_;
};

}  // namespace vantorel
