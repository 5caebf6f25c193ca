// SPDX-License-Identifier: MIT
#include "platform/linux/x11/SelectionReader.h"

#include <algorithm>
#include <utility>

namespace vantorel {

namespace {

// A window that may still be answered to stays for a while: an owner that writes to a window which
// is gone gets an error, and simple programs die of it.
constexpr std::chrono::seconds abandonedFor{10};
constexpr std::size_t maximumAbandoned = 64;

}  // namespace

SelectionReader::SelectionReader(X11Thread& thread, std::chrono::milliseconds patience)
    : thread_(thread),
      connection_(thread.connection()),
      patience_(patience),
      property_(connection_.atom("VANTOREL_SELECTION")),
      incr_(connection_.atom("INCR")) {}

xcb_window_t SelectionReader::freshWindow() {
  if (!idle_.empty()) {
    const xcb_window_t window = idle_.front();
    idle_.pop_front();
    return window;
  }
  return connection_.createHiddenWindow();
}

void SelectionReader::read(const SelectionQuery& query, Completion completion) {
  if (connection_.broken()) {
    completion({SelectionOutcome::aborted, {}});
    return;
  }
  const xcb_window_t window = freshWindow();
  Transfer& transfer = transfers_[window];
  transfer.query = query;
  transfer.completion = std::move(completion);
  xcb_convert_selection(connection_.xcb(), window, query.selection, query.target, property_,
                        query.time);
  startSilenceTimer(window, transfer);
}

void SelectionReader::startSilenceTimer(xcb_window_t window, Transfer& transfer) {
  thread_.cancel(transfer.silenceTimer);
  transfer.silenceTimer = thread_.after(
      patience_, [this, window] { finish(transfers_.find(window), SelectionOutcome::silent); });
}

void SelectionReader::abortAll() {
  Transfers aborted;
  aborted.swap(transfers_);
  while (!aborted.empty()) {
    // One at a time by way of the member, since a completion may ask the next question.
    auto moved = transfers_.insert(aborted.extract(aborted.begin()));
    finish(moved.position, SelectionOutcome::aborted);
  }
}

void SelectionReader::handle(const xcb_selection_notify_event_t& event) {
  const auto found = transfers_.find(event.requestor);
  if (found == transfers_.end()) return;
  Transfer& transfer = found->second;
  if (transfer.stage != Stage::asked || event.selection != transfer.query.selection ||
      event.target != transfer.query.target) {
    return;
  }
  if (event.property != property_) {
    finish(found, SelectionOutcome::refused);
    return;
  }
  auto reading = readProperty(connection_, event.requestor, property_, transfer.query.maximumBytes,
                              AfterReading::remove);
  if (reading.outcome != PropertyOutcome::read) {
    finish(found, reading.outcome == PropertyOutcome::tooLarge ? SelectionOutcome::tooLarge
                                                               : SelectionOutcome::refused);
    return;
  }
  if (reading.property.type != incr_) {
    transfer.received = std::move(reading.property);
    finish(found, SelectionOutcome::received);
    return;
  }
  // Removing the property was the sign to begin.
  transfer.stage = Stage::incremental;
  startSilenceTimer(event.requestor, transfer);
}

void SelectionReader::handle(const xcb_property_notify_event_t& event) {
  const auto found = transfers_.find(event.window);
  if (found == transfers_.end() || event.atom != property_ ||
      event.state != XCB_PROPERTY_NEW_VALUE || found->second.stage != Stage::incremental) {
    return;
  }
  Transfer& transfer = found->second;
  Bytes& bytes = transfer.received.bytes;
  const auto reading =
      readProperty(connection_, event.window, property_, transfer.query.maximumBytes - bytes.size(),
                   AfterReading::remove);
  // Read already with an earlier step.
  if (reading.outcome == PropertyOutcome::absent) return;
  if (reading.outcome == PropertyOutcome::tooLarge) {
    finish(found, SelectionOutcome::tooLarge);
    return;
  }
  if (transfer.received.type == XCB_ATOM_NONE) {
    transfer.received.type = reading.property.type;
    transfer.received.format = reading.property.format;
  }
  if (reading.property.bytes.empty()) {
    finish(found, SelectionOutcome::received);
    return;
  }
  bytes.insert(bytes.end(), reading.property.bytes.begin(), reading.property.bytes.end());
  startSilenceTimer(event.window, transfer);
}

void SelectionReader::finish(Transfers::iterator transfer, SelectionOutcome outcome) {
  if (transfer == transfers_.end()) return;
  const auto node = transfers_.extract(transfer);
  Transfer& finished = node.mapped();
  thread_.cancel(finished.silenceTimer);
  retire(node.key(), outcome);
  SelectionAnswer answer;
  answer.outcome = outcome;
  if (outcome == SelectionOutcome::received) answer.property = std::move(finished.received);
  finished.completion(std::move(answer));
}

void SelectionReader::retire(xcb_window_t window, SelectionOutcome outcome) {
  if (outcome == SelectionOutcome::received || outcome == SelectionOutcome::refused) {
    idle_.push_back(window);
    return;
  }
  abandoned_.push_back(window);
  if (abandoned_.size() > maximumAbandoned) destroyOldestAbandoned();
  thread_.after(abandonedFor, [this, window] {
    const auto found = std::find(abandoned_.begin(), abandoned_.end(), window);
    if (found == abandoned_.end()) return;
    xcb_destroy_window(connection_.xcb(), window);
    abandoned_.erase(found);
  });
}

void SelectionReader::destroyOldestAbandoned() {
  xcb_destroy_window(connection_.xcb(), abandoned_.front());
  abandoned_.pop_front();
}

}  // namespace vantorel
