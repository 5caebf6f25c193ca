#include "platform/linux/x11/X11Pasteboard.h"

#include <algorithm>
#include <future>
#include <utility>

#include "platform/MainQueue.h"
#include "platform/linux/windows/ImagePreparation.h"
#include "platform/linux/windows/PasteboardTargets.h"

namespace vantorel {

namespace {

using Own = SelectionService::Own;
using Foreign = SelectionService::Foreign;

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

std::vector<std::string> typesOf(const Own& own) {
  std::vector<std::string> types;
  for (const auto& form : offerOf(own).forms) types.push_back(form.target);
  return types;
}

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
    : services_(services), limits_(limits), thread_(std::move(connection), "clipboard") {}

bool X11Pasteboard::start() {
  service_ = SelectionService::create(
      thread_, observer(), [this](Work work) { imageQueue_->async(std::move(work)); },
      limits_.patience, services_.bridge);
  if (!service_) return false;
  imageQueue_ = services_.dispatch.serialQueue("com.vantorel.pasteboard-images");
  thread_.start([this](const xcb_generic_event_t& event) { service_->handle(event); },
                [this, tell = onMainQueue(services_.dispatch, life_.guard([this] {
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
  life_.end();
  handOver();
  // In this order: the queue posts to the thread, and the thread queues on it.
  thread_.stop();
  imageQueue_.reset();
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
  auto& dispatch = services_.dispatch;
  SelectionService::Observer observer;
  observer.onForeignChange = [this, tell = onMainQueue(dispatch, life_.guard([this] {
                                      // First, so that a change from now on is announced again.
                                      changeIsQueued_ = false;
                                      const auto handler = onChange_;
                                      if (handler) handler();
                                    }))] {
    if (!changeIsQueued_.exchange(true)) tell();
  };
  observer.onOwnerExit = onMainQueue(dispatch, life_.guard([this](ChangeCount change) {
    const auto handler = onOwnerExit_;
    if (handler) handler(change);
  }));
  observer.onSave = onMainQueue(dispatch, life_.guard([this](ChangeCount change, const Work& done) {
    askToSave(change, done);
  }));
  return observer;
}

void X11Pasteboard::askToSave(ChangeCount change, const Work& done) {
  const auto once = std::make_shared<Once>(life_.guard([this, done] { thread_.post(done); }));
  const auto handler = onSave_;
  if (handler) handler(change, [once] { once->run(); });
}

/// `completion`, to be called on any thread and run on the main queue while the pasteboard lives.
template <class Value>
Pasteboard::Completion<Value> X11Pasteboard::delivery(Completion<Value> completion) const {
  return onMainQueue(services_.dispatch, life_.guard(std::move(completion)));
}

void X11Pasteboard::readTypes(ChangeCount change,
                              Completion<std::optional<std::vector<std::string>>> completion) {
  using Types = std::optional<std::vector<std::string>>;
  thread_.post([this, change, deliver = delivery(std::move(completion))] {
    const auto contents = service_->contents(change);
    if (const auto* foreign = std::get_if<Foreign>(&contents)) {
      (*foreign)->readTargets([deliver](const Types& offered) {
        deliver(offered ? Types(targets::types(*offered)) : std::nullopt);
      });
    } else if (const auto* own = std::get_if<Own>(&contents)) {
      deliver(typesOf(*own));
    } else if (std::holds_alternative<SelectionService::Empty>(contents)) {
      deliver(Types(std::in_place));
    } else {
      deliver(std::nullopt);
    }
  });
}

void X11Pasteboard::readString(ChangeCount change,
                               Completion<std::optional<std::string>> completion) {
  thread_.post([this, change, deliver = delivery(std::move(completion))] {
    const auto contents = service_->contents(change);
    if (const auto* foreign = std::get_if<Foreign>(&contents)) {
      (*foreign)->readString(deliver);
    } else if (const auto* own = std::get_if<Own>(&contents)) {
      deliver((*own)->string);
    } else {
      deliver(std::nullopt);
    }
  });
}

void X11Pasteboard::readData(ChangeCount change, PasteboardDataType type,
                             Completion<std::optional<Bytes>> completion) {
  thread_.post([this, change, type, deliver = delivery(std::move(completion))] {
    const auto contents = service_->contents(change);
    if (const auto* foreign = std::get_if<Foreign>(&contents)) {
      (*foreign)->readData(type, deliver);
    } else if (const auto* own = std::get_if<Own>(&contents)) {
      deliver(type == PasteboardDataType::rtf ? (*own)->rtf : (*own)->html);
    } else {
      deliver(std::nullopt);
    }
  });
}

void X11Pasteboard::readFileURLs(ChangeCount change,
                                 Completion<std::vector<std::filesystem::path>> completion) {
  thread_.post([this, change, deliver = delivery(std::move(completion))] {
    const auto contents = service_->contents(change);
    if (const auto* foreign = std::get_if<Foreign>(&contents)) {
      (*foreign)->readFiles(deliver);
    } else if (const auto* own = std::get_if<Own>(&contents)) {
      deliver((*own)->files);
    } else {
      deliver({});
    }
  });
}

void X11Pasteboard::readImage(ChangeCount change,
                              Completion<std::shared_ptr<const Image>> completion) {
  thread_.post([this, change, deliver = delivery(std::move(completion))] {
    const auto contents = service_->contents(change);
    if (const auto* own = std::get_if<Own>(&contents)) {
      deliver((*own)->image);
    } else {
      readForeignImage(change, 0, deliver);
    }
  });
}

void X11Pasteboard::readForeignImage(ChangeCount change, std::size_t skipped,
                                     Completion<std::shared_ptr<const Image>> deliver) {
  const auto contents = service_->contents(change);
  const auto* foreign = std::get_if<Foreign>(&contents);
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
      auto image = change == service_->changeCount()
                       ? preparedImage(services_.decoder, encoded.bytes, limits_.largestPngBytes)
                       : nullptr;
      if (image) {
        deliver(std::move(image));
        return;
      }
      thread_.post([this, change, deliver, next = encoded.skipped] {
        readForeignImage(change, next, deliver);
      });
    });
  });
}

bool X11Pasteboard::write(PasteboardContents contents) {
  bool written = false;
  const auto shared = std::make_shared<const PasteboardContents>(std::move(contents));
  const bool ran = thread_.runAndWait([&] { written = service_->write(shared); });
  return ran && written;
}

bool X11Pasteboard::writeItem(PasteboardItem item) {
  PasteboardContents contents;
  contents.string = std::move(item.string);
  contents.rtf = std::move(item.rtf);
  contents.html = std::move(item.html);
  return write(std::move(contents));
}

bool X11Pasteboard::writeString(std::string string) {
  PasteboardContents contents;
  contents.string = std::move(string);
  return write(std::move(contents));
}

bool X11Pasteboard::writeImage(std::shared_ptr<const Image> image) {
  if (!image) return false;
  PasteboardContents contents;
  contents.image = std::move(image);
  return write(std::move(contents));
}

bool X11Pasteboard::writeFileURLs(const std::vector<std::filesystem::path>& paths) {
  const bool absolute =
      std::all_of(paths.begin(), paths.end(), [](const auto& path) { return path.is_absolute(); });
  if (paths.empty() || !absolute) return false;
  return write(contentsOf(paths));
}

void X11Pasteboard::clearContents() {
  if (!thread_.runAndWait([this] { service_->clear(); })) return;
  // In a later turn: what is written in this one replaces the contents in a single change.
  services_.dispatch.async(
      life_.guard([this] { thread_.post([this] { service_->publishEmptiness(); }); }));
}

bool X11Pasteboard::alsoOfferPrimary() {
  bool offered = false;
  return thread_.runAndWait([&] { offered = service_->offerPrimary(); }) && offered;
}

}  // namespace vantorel
