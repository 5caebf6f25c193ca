// SPDX-License-Identifier: MIT
#pragma once

#include <atomic>
#include <chrono>
#include <functional>
#include <map>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "platform/linux/wayland/PipeReader.h"
#include "platform/linux/wayland/PipeWriter.h"
#include "platform/linux/wayland/WaylandThread.h"
#include "platform/linux/windows/SelectionPasteboard.h"

struct ext_data_control_device_v1;
struct ext_data_control_manager_v1;
struct ext_data_control_offer_v1;
struct ext_data_control_source_v1;
struct wl_seat;

namespace vantorel {

/// The clipboard of a seat as this process sees it: counts its changes, knows who holds the
/// contents, takes it over and serves it. By the protocol "data control", of which there are two
/// that differ in their names alone. On the Wayland thread, except where said.
class DataControl {
 public:
  using ChangeCount = Pasteboard::ChangeCount;
  using Own = SelectionPasteboard::Own;
  /// How long the compositor may take to answer for a write.
  static constexpr std::chrono::seconds answerLimit{1};
  /// A compositor may take the clipboard's device away; another is asked for after this.
  static constexpr std::chrono::seconds deviceInterval{1};

  struct Services {
    std::function<void()> onForeignChange;                          // on the Wayland thread
    std::function<void(Work)> runElsewhere;                         // for what takes milliseconds
    std::chrono::milliseconds patience{PipeReader::usualPatience};  // with owners that say nothing
  };

  /// The protocol and its version that would be spoken there; absent where there is none, or no
  /// seat that has a clipboard.
  [[nodiscard]] static std::optional<std::string> protocol(const WaylandConnection& connection);

  /// Null without a protocol. Before the thread starts; `thread` outlives the result, and stops
  /// before it is destroyed. Waits for the compositor alone.
  [[nodiscard]] static std::unique_ptr<DataControl> create(WaylandThread& thread,
                                                           Services services);
  ~DataControl();
  DataControl(const DataControl&) = delete;
  DataControl& operator=(const DataControl&) = delete;

  /// The compositor has gone: everything under way ends, everything asked later finds nothing.
  void handleLoss();

  /// Any thread.
  [[nodiscard]] ChangeCount changeCount() const { return count_; }
  [[nodiscard]] bool wroteContents(ChangeCount change) const { return change == ownCount_; }

  [[nodiscard]] SelectionPasteboard::Contents contents(ChangeCount change) const;
  /// Becomes the owner with these contents. Waits for the compositor alone.
  [[nodiscard]] bool write(Own contents);
  /// Counts and shows the clipboard as empty in this process; other programs see it by
  /// `publishEmptiness()`, unless something was written before.
  void clear();
  void publishEmptiness();
  /// Owns PRIMARY too, with what was written last. False when nothing of ours is on the clipboard.
  [[nodiscard]] bool offerPrimary();

 private:
  class Offer;
  struct Source;
  struct Listeners;
  enum class Holder { nobody, self, other };

  DataControl(WaylandThread& thread, Services services);
  [[nodiscard]] bool bind();
  void openDevice();
  void openAgain();
  void closeDevice();
  void selected(ext_data_control_offer_v1* proxy);
  void changeHands(Holder holder);
  [[nodiscard]] std::unique_ptr<Source> sourceOf(const Own& contents);
  void send(const Source& source, const std::string& type, FileDescriptor pipe);
  void cancelled(const Source* source);

  WaylandThread& thread_;
  Services services_;
  const std::string marker_;  // a type that our contents alone have
  PipeReader reader_;
  PipeWriter writer_;
  wl_seat* seat_ = nullptr;
  ext_data_control_manager_v1* manager_ = nullptr;
  ext_data_control_device_v1* device_ = nullptr;
  /// Those that the compositor has begun to describe and not yet said what they are.
  std::map<ext_data_control_offer_v1*, std::shared_ptr<Offer>> described_;

  std::atomic<ChangeCount> count_{1};
  std::atomic<ChangeCount> ownCount_{0};  // of the last change that was made here
  enum class Hearing { whatWasThere, changes } hearing_ = Hearing::whatWasThere;
  Holder holder_ = Holder::nobody;
  Own own_;
  std::shared_ptr<Offer> offer_;  // of the other owner
  SelectionPasteboard::Foreign foreign_;
  std::unique_ptr<Source> source_;
  std::unique_ptr<Source> primary_;
  bool isTaking_ = false;  // asked of the compositor, not yet told by it
  /// Whether the clipboard was emptied here last, and whether others know.
  enum class Emptiness { none, pending, published } emptiness_ = Emptiness::none;
};

}  // namespace vantorel
