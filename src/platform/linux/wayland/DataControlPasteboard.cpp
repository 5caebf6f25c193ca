// SPDX-License-Identifier: MIT
#include "platform/linux/wayland/DataControlPasteboard.h"

#include "platform/MainQueue.h"

namespace vantorel {

std::unique_ptr<DataControlPasteboard> DataControlPasteboard::open(
    Services services, std::unique_ptr<WaylandConnection> connection, Limits limits) {
  if (!connection) return nullptr;
  std::unique_ptr<DataControlPasteboard> pasteboard(
      new DataControlPasteboard(services, std::move(connection), limits));
  return pasteboard->start(limits.patience) ? std::move(pasteboard) : nullptr;
}

DataControlPasteboard::DataControlPasteboard(Services services,
                                             std::unique_ptr<WaylandConnection> connection,
                                             Limits limits)
    : SelectionPasteboard(services.dispatch, services.decoder, limits.largestPngBytes),
      thread_(std::move(connection), "clipboard") {}

bool DataControlPasteboard::start(std::chrono::milliseconds patience) {
  const auto tellOfChange = onMainQueue(dispatch(), guard([this] {
                                          // First, so that a change from now on is announced again.
                                          changeIsQueued_ = false;
                                          const auto handler = onChange_;
                                          if (handler) handler();
                                        }));
  control_ = DataControl::create(
      thread_, {.onForeignChange =
                    [this, tellOfChange] {
                      if (!changeIsQueued_.exchange(true)) tellOfChange();
                    },
                .runElsewhere = [this](Work work) { runElsewhere(std::move(work)); },
                .patience = patience});
  if (!control_) return false;
  thread_.start([this, tell = onMainQueue(dispatch(), guard([this] {
                                            announces_ = false;
                                            const auto handler = onAnnouncing_;
                                            if (handler) handler();
                                          }))] {
    control_->handleLoss();
    tell();
  });
  return true;
}

DataControlPasteboard::~DataControlPasteboard() {
  endAnswers();
  // In this order: the queue posts to the thread, and the thread queues on it.
  thread_.stop();
  endImages();
}

bool DataControlPasteboard::write(PasteboardContents contents) {
  bool written = false;
  auto shared = std::make_shared<const PasteboardContents>(std::move(contents));
  const bool ran = thread_.runAndWait([&] { written = control_->write(std::move(shared)); });
  return ran && written;
}

void DataControlPasteboard::clearContents() {
  if (!thread_.runAndWait([this] { control_->clear(); })) return;
  // In a later turn: what is written in this one replaces the contents in a single change.
  dispatch().async(guard([this] { thread_.post([this] { control_->publishEmptiness(); }); }));
}

bool DataControlPasteboard::alsoOfferPrimary() {
  bool offered = false;
  return thread_.runAndWait([&] { offered = control_->offerPrimary(); }) && offered;
}

}  // namespace vantorel
