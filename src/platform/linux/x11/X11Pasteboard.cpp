// SPDX-License-Identifier: MIT
#include "platform/linux/x11/X11Pasteboard.h"

#include <future>
#include <utility>

#include "platform/MainQueue.h"

namespace vantorel {

namespace {

/// Does its work once: when told to, or else when nobody is left to tell it.
class Once {
 public:
  explicit Once(Work work) : work_(std::move(work)) {}
  ~Once() { run(); }
  Once(const Once&) = delete;
  Once& operator=(const Once&) = delete;
  void run() {
    if (const auto work = std::exchange(work_, nullptr)) work();
  }

 private:
  Work work_;
};

}  // namespace

std::unique_ptr<X11Pasteboard> X11Pasteboard::open(Services services, const std::string& display,
                                                   Limits limits) {
  auto connection = X11Connection::open(display);
  if (!connection) return nullptr;
  std::unique_ptr<X11Pasteboard> pasteboard(
      new X11Pasteboard(services, std::move(connection), limits));
  return pasteboard->start() ? std::move(pasteboard) : nullptr;
}

X11Pasteboard::X11Pasteboard(Services services, std::unique_ptr<X11Connection> connection,
                             Limits limits)
    : SelectionPasteboard(services.dispatch, services.decoder, limits.largestPngBytes),
      patience_(limits.patience),
      bridge_(services.bridge),
      thread_(std::move(connection), "clipboard") {}

bool X11Pasteboard::start() {
  service_ = SelectionService::create(
      thread_, observer(), [this](Work work) { runElsewhere(std::move(work)); }, patience_,
      bridge_);
  if (!service_) return false;
  thread_.start([this](const xcb_generic_event_t& event) { service_->handle(event); },
                [this, tell = onMainQueue(dispatch(), guard([this] {
                                            announces_ = false;
                                            const auto handler = onAnnouncing_;
                                            if (handler) handler();
                                          }))] {
                  service_->handleLoss();
                  tell();
                });
  return true;
}

X11Pasteboard::~X11Pasteboard() {
  endAnswers();
  handOver();
  // In this order: the queue posts to the thread, and the thread queues on it.
  thread_.stop();
  endImages();
}

void X11Pasteboard::handOver() {
  if (!service_ || std::exchange(handedOver_, true)) return;
  const auto done = std::make_shared<std::promise<void>>();
  thread_.post([this, done] { service_->handOver([done] { done->set_value(); }); });
  (void)done->get_future().wait_for(SelectionService::handOverLimit * 2);
}

Pasteboard::ChangeCount X11Pasteboard::changeCount() const { return service_->changeCount(); }

bool X11Pasteboard::wroteContents(ChangeCount change) const {
  return service_->wroteContents(change);
}

std::optional<ProcessId> X11Pasteboard::ownerProcess(ChangeCount change) const {
  return service_->ownerProcess(change);
}

void X11Pasteboard::setSaveHandler(SaveHandler handler) {
  onSave_ = std::move(handler);
  const bool keeping = onSave_ != nullptr;
  // A toolkit in this process that ends asks the manager too, and would wait in vain for itself.
  (void)thread_.runAndWait([this, keeping] {
    if (keeping) {
      service_->keepForOthers();
    } else {
      service_->stopKeepingForOthers();
    }
  });
}

SelectionService::Observer X11Pasteboard::observer() {
  SelectionService::Observer observer;
  observer.onForeignChange = [this, tell = onMainQueue(dispatch(), guard([this] {
                                                         // First, so that a change from now on is
                                                         // announced again.
                                                         changeIsQueued_ = false;
                                                         const auto handler = onChange_;
                                                         if (handler) handler();
                                                       }))] {
    if (!changeIsQueued_.exchange(true)) tell();
  };
  observer.onOwnerExit = onMainQueue(dispatch(), guard([this](ChangeCount change) {
                                       const auto handler = onOwnerExit_;
                                       if (handler) handler(change);
                                     }));
  observer.onSave = onMainQueue(
      dispatch(), guard([this](ChangeCount change, const Work& done) { askToSave(change, done); }));
  return observer;
}

void X11Pasteboard::askToSave(ChangeCount change, const Work& done) {
  const auto once = std::make_shared<Once>(guard([this, done] { thread_.post(done); }));
  const auto handler = onSave_;
  if (handler) handler(change, [once] { once->run(); });
}

bool X11Pasteboard::write(PasteboardContents contents) {
  bool written = false;
  const auto shared = std::make_shared<const PasteboardContents>(std::move(contents));
  const bool ran = thread_.runAndWait([&] { written = service_->write(shared); });
  return ran && written;
}

void X11Pasteboard::clearContents() {
  if (!thread_.runAndWait([this] { service_->clear(); })) return;
  // In a later turn: what is written in this one replaces the contents in a single change.
  dispatch().async(guard([this] { thread_.post([this] { service_->publishEmptiness(); }); }));
}

bool X11Pasteboard::alsoOfferPrimary() {
  bool offered = false;
  return thread_.runAndWait([&] { offered = service_->offerPrimary(); }) && offered;
}

}  // namespace vantorel
