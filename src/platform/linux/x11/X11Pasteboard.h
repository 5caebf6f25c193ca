// SPDX-License-Identifier: MIT
#pragma once

#include <atomic>
#include <chrono>
#include <functional>
#include <memory>
#include <string>
#include <utility>

#include "platform/linux/windows/SelectionPasteboard.h"
#include "platform/linux/x11/SelectionService.h"
#include "platform/linux/x11/X11Thread.h"

namespace vantorel {

/// The CLIPBOARD selection as the pasteboard, on a connection and a thread of its own: the
/// toolkit's clipboard would keep the main thread waiting for whoever owns the selection.
class X11Pasteboard : public SelectionPasteboard {
 public:
  struct Services {
    Dispatch& dispatch;
    const ImageDecoder& decoder;
    SelectionService::Bridge bridge = SelectionService::Bridge::none;
  };
  struct Limits {
    /// The largest image that the program keeps in its PNG form.
    std::size_t largestPngBytes = largestEncodedImage;
    /// How long another program may be silent while it is read.
    std::chrono::milliseconds patience = SelectionReader::usualPatience;
  };

  /// Null when `display` (empty: the environment's) cannot be reached or does not tell of owner
  /// changes. What `services` name outlives the pasteboard.
  [[nodiscard]] static std::unique_ptr<X11Pasteboard> open(Services services,
                                                           const std::string& display,
                                                           Limits limits);
  [[nodiscard]] static std::unique_ptr<X11Pasteboard> open(Services services,
                                                           const std::string& display = {}) {
    return open(services, display, Limits());
  }
  /// Hands over, unless that was done, and ends. Reads under way never complete then.
  ~X11Pasteboard() override;

  /// Gives what this process wrote to the clipboard manager, if one runs and takes it within 300
  /// ms. Once, before the end; nothing is written after it.
  void handOver();

  /// Owns PRIMARY too, with the present contents, for programs that paste only from there. True
  /// when both are ours; false when the clipboard holds nothing written by this process. Until
  /// another program takes PRIMARY.
  [[nodiscard]] bool alsoOfferPrimary();
  /// Whether the program that made that window has asked what is on the clipboard since this
  /// process wrote it. Any thread, at once.
  [[nodiscard]] bool isListedTo(std::uint32_t window) const { return service_->isListedTo(window); }

  [[nodiscard]] ChangeCount changeCount() const override;
  [[nodiscard]] bool wroteContents(ChangeCount change) const override;
  [[nodiscard]] std::optional<ProcessId> ownerProcess(ChangeCount change) const override;
  [[nodiscard]] bool isBridged(ChangeCount change) const override {
    return service_->isBridged(change);
  }
  [[nodiscard]] bool announcesEveryChange() const override { return announces_; }
  void setAnnouncingHandler(std::function<void()> handler) override {
    onAnnouncing_ = std::move(handler);
  }
  void setChangeHandler(std::function<void()> handler) override { onChange_ = std::move(handler); }
  void setOwnerExitHandler(std::function<void(ChangeCount)> handler) override {
    onOwnerExit_ = std::move(handler);
  }
  void setSaveHandler(SaveHandler handler) override;

  void clearContents() override;

 private:
  X11Pasteboard(Services services, std::unique_ptr<X11Connection> connection, Limits limits);
  [[nodiscard]] bool start();
  bool post(Work work) override { return thread_.post(std::move(work)); }
  [[nodiscard]] Contents contents(ChangeCount change) const override {
    return service_->contents(change);
  }
  [[nodiscard]] bool write(PasteboardContents contents) override;
  [[nodiscard]] SelectionService::Observer observer();
  void askToSave(ChangeCount change, const Work& done);

  const std::chrono::milliseconds patience_;
  const SelectionService::Bridge bridge_;
  bool announces_ = true;
  std::function<void()> onAnnouncing_;
  std::function<void()> onChange_;
  std::function<void(ChangeCount)> onOwnerExit_;
  SaveHandler onSave_;
  std::atomic<bool> changeIsQueued_ = false;
  X11Thread thread_;
  std::unique_ptr<SelectionService> service_;
  bool handedOver_ = false;
};

}  // namespace vantorel
