// SPDX-License-Identifier: MIT
#include "platform/linux/wayland/DataControl.h"

#include <data-control-client.h>
#include <wayland-client.h>

#include <algorithm>
#include <utility>

#include "base/Uuid.h"

namespace vantorel {

namespace {

// Real programs offer a few dozen types at most.
constexpr std::size_t maximumTypes = 1024;
constexpr auto newerName = "ext_data_control_manager_v1";
constexpr auto olderName = "zwlr_data_control_manager_v1";
// Of the older one, the version that has PRIMARY.
constexpr std::uint32_t olderVersion = 2;

/// The older protocol's manager; what it makes is the newer one's in all but name, and only the
/// manager's name is ever sent.
const wl_interface& olderInterface() {
  static const wl_interface older = [] {
    wl_interface interface = ext_data_control_manager_v1_interface;
    interface.name = olderName;
    interface.version = static_cast<int>(olderVersion);
    return interface;
  }();
  return older;
}

}  // namespace

/// What another program offers. Its forms can be had until the next change.
class DataControl::Offer {
 public:
  explicit Offer(ext_data_control_offer_v1* proxy) : proxy_(proxy) {}
  ~Offer() { close(); }
  Offer(const Offer&) = delete;
  Offer& operator=(const Offer&) = delete;

  void add(const char* type) {
    if (types_.size() == maximumTypes) {
      isOverfull_ = true;  // a mark that forbids reading may be among the rest
    } else {
      types_.emplace_back(type);
    }
  }
  void close() {
    if (proxy_ != nullptr) ext_data_control_offer_v1_destroy(std::exchange(proxy_, nullptr));
  }
  [[nodiscard]] const std::vector<std::string>& types() const { return types_; }
  [[nodiscard]] bool isOverfull() const { return isOverfull_; }
  [[nodiscard]] ext_data_control_offer_v1* proxy() const { return proxy_; }

  /// For whoever reads it; keeps it, not its forms, alive.
  class Forms : public OwnerForms {
   public:
    Forms(std::shared_ptr<Offer> offer, PipeReader& reader)
        : offer_(std::move(offer)), reader_(reader) {}
    void readTargets(
        std::function<void(std::optional<std::vector<std::string>>)> completion) override {
      if (offer_->isOverfull()) return completion(std::nullopt);
      completion(offer_->types());
    }
    void read(const std::string& target, std::function<void(Answer)> completion) override {
      if (offer_->proxy() == nullptr) {
        completion({Outcome::lost});
        return;
      }
      const auto end = reader_.read(std::move(completion));
      if (!end.isOpen()) return;
      ext_data_control_offer_v1_receive(offer_->proxy(), target.c_str(), end.get());
    }

   private:
    std::shared_ptr<Offer> offer_;
    PipeReader& reader_;
  };

 private:
  ext_data_control_offer_v1* proxy_;
  std::vector<std::string> types_;
  bool isOverfull_ = false;
};

/// What this process offers.
struct DataControl::Source {
  Source(DataControl& itsOwner, SelectionOffer offered, ext_data_control_source_v1* made)
      : owner(itsOwner), offer(std::move(offered)), proxy(made) {}
  ~Source() { ext_data_control_source_v1_destroy(proxy); }
  Source(const Source&) = delete;
  Source& operator=(const Source&) = delete;

  DataControl& owner;
  const SelectionOffer offer;
  ext_data_control_source_v1* const proxy;
};

/// What the compositor calls.
struct DataControl::Listeners {
  static constexpr wl_callback_listener toldWhatWasThere{
      [](void* self, wl_callback* callback, std::uint32_t /*serial*/) {
        wl_callback_destroy(callback);
        static_cast<DataControl*>(self)->hearing_ = Hearing::changes;
      }};
  static constexpr ext_data_control_offer_v1_listener offer{
      [](void* offer, ext_data_control_offer_v1* /*proxy*/, const char* type) {
        static_cast<Offer*>(offer)->add(type);
      }};
  static constexpr ext_data_control_source_v1_listener source{
      [](void* data, ext_data_control_source_v1* /*proxy*/, const char* type, std::int32_t pipe) {
        const auto& source = *static_cast<Source*>(data);
        source.owner.send(source, type, FileDescriptor(pipe));
      },
      [](void* data, ext_data_control_source_v1* /*proxy*/) {
        const auto* const source = static_cast<Source*>(data);
        source->owner.cancelled(source);
      }};
  static constexpr ext_data_control_device_v1_listener device{
      [](void* self, ext_data_control_device_v1* /*device*/, ext_data_control_offer_v1* proxy) {
        const auto offer = std::make_shared<Offer>(proxy);
        ext_data_control_offer_v1_add_listener(proxy, &Listeners::offer, offer.get());
        static_cast<DataControl*>(self)->described_.emplace(proxy, offer);
      },
      [](void* self, ext_data_control_device_v1* /*device*/, ext_data_control_offer_v1* proxy) {
        static_cast<DataControl*>(self)->selected(proxy);
      },
      [](void* self, ext_data_control_device_v1* /*device*/) {
        auto* const control = static_cast<DataControl*>(self);
        control->closeDevice();
        control->thread_.after(deviceInterval, [control] { control->openAgain(); });
      },
      // Nobody here wants PRIMARY.
      [](void* self, ext_data_control_device_v1* /*device*/, ext_data_control_offer_v1* proxy) {
        static_cast<DataControl*>(self)->described_.erase(proxy);
      }};
};

std::optional<std::string> DataControl::protocol(const WaylandConnection& connection) {
  if (connection.version(wl_seat_interface.name) == 0) return std::nullopt;
  if (connection.version(newerName) >= 1) return std::string(newerName) + " 1";
  if (connection.version(olderName) >= olderVersion) return std::string(olderName) + " 2";
  return std::nullopt;
}

std::unique_ptr<DataControl> DataControl::create(WaylandThread& thread, Services services) {
  std::unique_ptr<DataControl> made(new DataControl(thread, std::move(services)));
  return made->bind() ? std::move(made) : nullptr;
}

DataControl::DataControl(WaylandThread& thread, Services services)
    : thread_(thread),
      services_(std::move(services)),
      marker_("application/x-vantorel-" + Uuid::random().string()),
      reader_(thread, services_.patience),
      writer_(thread) {}

bool DataControl::bind() {
  auto& connection = thread_.connection();
  if (!protocol(connection)) return false;
  const bool newer = connection.version(newerName) >= 1;
  manager_ = static_cast<ext_data_control_manager_v1*>(
      newer ? connection.bind(ext_data_control_manager_v1_interface, 1)
            : connection.bind(olderInterface(), olderVersion));
  seat_ = static_cast<wl_seat*>(connection.bind(wl_seat_interface, 1));
  openDevice();
  const bool heard = connection.catchUp(WorkLine::Clock::now() + answerLimit);
  hearing_ = Hearing::changes;
  return heard;
}

void DataControl::openDevice() {
  device_ = ext_data_control_manager_v1_get_data_device(manager_, seat_);
  ext_data_control_device_v1_add_listener(device_, &Listeners::device, this);
}

/// On the thread. What the new device tells of at first was there before, and may be what nobody
/// was allowed to read.
void DataControl::openAgain() {
  auto& connection = thread_.connection();
  if (seat_ != nullptr) wl_seat_destroy(seat_);
  seat_ = static_cast<wl_seat*>(connection.bind(wl_seat_interface, 1));
  if (seat_ == nullptr) {
    thread_.after(deviceInterval, [this] { openAgain(); });
    return;
  }
  hearing_ = Hearing::whatWasThere;
  openDevice();
  wl_callback_add_listener(wl_display_sync(connection.display()), &Listeners::toldWhatWasThere,
                           this);
}

void DataControl::closeDevice() {
  if (device_ != nullptr) ext_data_control_device_v1_destroy(std::exchange(device_, nullptr));
}

// A read under way and its contents keep each other alive until the read has ended.
DataControl::~DataControl() {
  reader_.abortAll();
  writer_.drop();
  foreign_ = nullptr;
  offer_ = nullptr;
  described_.clear();
  source_ = nullptr;
  primary_ = nullptr;
  closeDevice();
  if (manager_ != nullptr) ext_data_control_manager_v1_destroy(manager_);
  if (seat_ != nullptr) wl_seat_destroy(seat_);
}

void DataControl::handleLoss() {
  changeHands(Holder::nobody);
  writer_.drop();
}

SelectionPasteboard::Contents DataControl::contents(ChangeCount change) const {
  if (change != count_) return SelectionPasteboard::Superseded{};
  if (holder_ == Holder::self) return own_;
  if (holder_ == Holder::other) return foreign_;
  return SelectionPasteboard::Empty{};
}

void DataControl::changeHands(Holder holder) {
  reader_.abortAll();
  holder_ = holder;
  own_ = nullptr;
  foreign_ = nullptr;
  // Its forms cannot be had any more, whoever still holds it.
  if (offer_) offer_->close();
  offer_ = nullptr;
  emptiness_ = Emptiness::none;
}

void DataControl::selected(ext_data_control_offer_v1* proxy) {
  const auto found = described_.find(proxy);
  const auto offer = found == described_.end() ? nullptr : found->second;
  if (offer) described_.erase(found);
  // Programs that keep the clipboard repeat all types of an owner that has ended.
  const bool mayBeOurs = isTaking_ || source_ != nullptr;
  const bool isOurs =
      mayBeOurs && offer &&
      std::find(offer->types().begin(), offer->types().end(), marker_) != offer->types().end();
  if (isOurs) {
    isTaking_ = false;
    return;
  }
  if (!offer && emptiness_ != Emptiness::none) return;  // as was made so here
  changeHands(offer ? Holder::other : Holder::nobody);
  if (offer) {
    offer_ = offer;
    foreign_ = std::make_shared<ForeignContents>(std::make_unique<Offer::Forms>(offer, reader_));
  }
  if (hearing_ == Hearing::whatWasThere) return;
  ++count_;
  services_.onForeignChange();
}

std::unique_ptr<DataControl::Source> DataControl::sourceOf(const Own& contents) {
  auto* const proxy = ext_data_control_manager_v1_create_data_source(manager_);
  auto source = std::make_unique<Source>(*this, offerOf(contents), proxy);
  ext_data_control_source_v1_add_listener(proxy, &Listeners::source, source.get());
  for (const auto& form : source->offer.forms) {
    ext_data_control_source_v1_offer(proxy, form.target.c_str());
  }
  ext_data_control_source_v1_offer(proxy, marker_.c_str());
  return source;
}

bool DataControl::write(Own contents) {
  if (device_ == nullptr || thread_.connection().isBroken()) return false;
  auto source = sourceOf(contents);
  ext_data_control_device_v1_set_selection(device_, source->proxy);
  // The one before ends when the compositor says so; until then it may still be asked.
  const auto before = std::exchange(source_, std::move(source));
  isTaking_ = true;
  const bool answered = thread_.connection().catchUp(WorkLine::Clock::now() + answerLimit);
  // Told by now in its place among other programs' changes; one that was quicker has been counted.
  const bool taken = answered && !std::exchange(isTaking_, false) && source_;
  if (!taken) return false;
  changeHands(Holder::self);
  own_ = std::move(contents);
  ownCount_ = ++count_;
  return true;
}

void DataControl::clear() {
  changeHands(Holder::self);
  own_ = std::make_shared<const PasteboardContents>();
  emptiness_ = Emptiness::pending;
  ownCount_ = ++count_;
}

void DataControl::publishEmptiness() {
  if (emptiness_ != Emptiness::pending || device_ == nullptr) return;
  emptiness_ = Emptiness::published;
  source_ = nullptr;
  ext_data_control_device_v1_set_selection(device_, nullptr);
}

bool DataControl::offerPrimary() {
  if (holder_ != Holder::self || device_ == nullptr || !source_ || source_->offer.forms.empty())
    return false;
  auto source = sourceOf(own_);
  ext_data_control_device_v1_set_primary_selection(device_, source->proxy);
  const auto before = std::exchange(primary_, std::move(source));
  return thread_.connection().catchUp(WorkLine::Clock::now() + answerLimit) && primary_;
}

void DataControl::send(const Source& source, const std::string& type, FileDescriptor pipe) {
  const auto& forms = source.offer.forms;
  const auto form = std::find_if(forms.begin(), forms.end(),
                                 [&](const OfferedForm& each) { return each.target == type; });
  if (form == forms.end()) return;
  if (form->cost == EncodingCost::instant) {
    writer_.write(std::move(pipe), form->encode());
    return;
  }
  const auto shared = std::make_shared<FileDescriptor>(std::move(pipe));
  services_.runElsewhere([this, shared, encode = form->encode] {
    thread_.post(
        [this, shared, contents = encode()] { writer_.write(std::move(*shared), contents); });
  });
}

void DataControl::cancelled(const Source* source) {
  if (source == source_.get()) {
    source_ = nullptr;
  } else if (source == primary_.get()) {
    primary_ = nullptr;
  }
}

}  // namespace vantorel
