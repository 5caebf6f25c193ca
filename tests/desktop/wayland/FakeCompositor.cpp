// SPDX-License-Identifier: MIT
#include "desktop/wayland/FakeCompositor.h"

#include <data-control-server.h>
#include <fcntl.h>
#include <foreign-toplevel-server.h>
#include <sys/eventfd.h>
#include <unistd.h>
#include <wayland-server.h>

#include <algorithm>
#include <array>
#include <csignal>
#include <cstdlib>
#include <filesystem>
#include <future>
#include <memory>
#include <stdexcept>
#include <utility>

namespace vantorel {

namespace {

void writeAll(int pipe, ByteView bytes) {
  while (!bytes.empty()) {
    const auto count = ::write(pipe, bytes.data(), bytes.size());
    if (count <= 0) return;
    bytes = bytes.subspan(static_cast<std::size_t>(count));
  }
}

}  // namespace

/// What clients call.
struct FakeCompositor::Protocols {
  static FakeCompositor& of(wl_resource* resource) {
    return *static_cast<FakeCompositor*>(wl_resource_get_user_data(resource));
  }
  static void destroy(wl_client* /*client*/, wl_resource* resource) {
    wl_resource_destroy(resource);
  }

  static void offerType(wl_client* /*client*/, wl_resource* source, const char* type) {
    of(source).sources_[source].emplace_back(type);
  }
  static constexpr struct ext_data_control_source_v1_interface sourceCalls { offerType, destroy };
  static void sourceGone(wl_resource* source) {
    auto& self = of(source);
    self.sources_.erase(source);
    if (self.primary_ == source) self.primary_ = nullptr;
    if (self.selection_ != source) return;
    self.selection_ = nullptr;
    for (auto* device : self.devices_) self.announce(device);
  }

  static void receive(wl_client* /*client*/, wl_resource* offer, const char* type, int pipe) {
    auto& self = of(offer);
    FileDescriptor end(pipe);
    self.requests_.emplace_back(type);
    if (self.selection_ != nullptr) {
      ext_data_control_source_v1_send_send(self.selection_, type, end.get());
    } else {
      self.give(type, std::move(end));
    }
  }
  static constexpr struct ext_data_control_offer_v1_interface offerCalls { receive, destroy };

  static void setSelection(wl_client* /*client*/, wl_resource* device, wl_resource* source) {
    auto& self = of(device);
    self.forms_.reset();
    self.select(self.selection_, source);
    for (auto* each : self.devices_) self.announce(each);
  }
  static void setPrimary(wl_client* /*client*/, wl_resource* device, wl_resource* source) {
    auto& self = of(device);
    self.select(self.primary_, source);
  }
  static constexpr struct ext_data_control_device_v1_interface deviceCalls {
    setSelection, destroy, setPrimary
  };
  static void deviceGone(wl_resource* device) { std::erase(of(device).devices_, device); }

  static void makeSource(wl_client* client, wl_resource* manager, std::uint32_t id) {
    auto* made = wl_resource_create(client, &ext_data_control_source_v1_interface, 1, id);
    wl_resource_set_implementation(made, &sourceCalls, &of(manager), sourceGone);
    of(manager).sources_[made];
  }
  static void makeDevice(wl_client* client, wl_resource* manager, std::uint32_t id,
                         wl_resource* /*seat*/) {
    auto* made = wl_resource_create(client, &ext_data_control_device_v1_interface, 1, id);
    wl_resource_set_implementation(made, &deviceCalls, &of(manager), deviceGone);
    of(manager).devices_.push_back(made);
    of(manager).announce(made);
  }
  static constexpr struct ext_data_control_manager_v1_interface managerCalls {
    makeSource, makeDevice, destroy
  };

  static void bindManager(wl_client* client, void* self, std::uint32_t version, std::uint32_t id) {
    auto* made = wl_resource_create(client, &ext_data_control_manager_v1_interface,
                                    static_cast<int>(std::min(version, 1U)), id);
    wl_resource_set_implementation(made, &managerCalls, self, nullptr);
  }
  static void activate(wl_client* /*client*/, wl_resource* window, wl_resource* /*seat*/) {
    auto& self = of(window);
    self.activations_.push_back(self.windows_[window]);
  }
  static void nothing(wl_client* /*client*/, wl_resource* /*window*/) {}
  static void fullscreen(wl_client* /*client*/, wl_resource* /*window*/, wl_resource* /*output*/) {}
  static void rectangle(wl_client* /*client*/, wl_resource* /*window*/, wl_resource* /*surface*/,
                        std::int32_t /*x*/, std::int32_t /*y*/, std::int32_t /*width*/,
                        std::int32_t /*height*/) {}
  static constexpr struct zwlr_foreign_toplevel_handle_v1_interface windowCalls {
    nothing, nothing, nothing, nothing, activate, nothing, rectangle, destroy, fullscreen, nothing
  };
  static void windowGone(wl_resource* window) { of(window).windows_.erase(window); }
  static constexpr struct zwlr_foreign_toplevel_manager_v1_interface toplevelCalls { nothing };
  static void toplevelsGone(wl_resource* manager) { of(manager).toplevelManager_ = nullptr; }
  static void bindToplevels(wl_client* client, void* self, std::uint32_t version,
                            std::uint32_t id) {
    auto* made = wl_resource_create(client, &zwlr_foreign_toplevel_manager_v1_interface,
                                    static_cast<int>(version), id);
    wl_resource_set_implementation(made, &toplevelCalls, self, toplevelsGone);
    static_cast<FakeCompositor*>(self)->toplevelManager_ = made;
  }
};

FakeCompositor::FakeCompositor(Protocol protocol)
    : protocol_(protocol), display_(wl_display_create()), calls_(eventfd(0, EFD_CLOEXEC)) {
  auto pattern = (std::filesystem::temp_directory_path() / "vantorel-wayland-XXXXXX").string();
  if (mkdtemp(pattern.data()) == nullptr) throw std::runtime_error("no directory");
  path_ = pattern + "/socket";
  // The library takes a name in the runtime directory alone.
  setenv("XDG_RUNTIME_DIR", pattern.c_str(), 1);
  if (wl_display_add_socket(display_, "socket") != 0) throw std::runtime_error("no socket");
  seat_ = std::make_unique<FakeSeat>(display_);
  static const wl_interface older = [] {
    wl_interface interface = ext_data_control_manager_v1_interface;
    interface.name = "zwlr_data_control_manager_v1";
    interface.version = 2;
    return interface;
  }();
  if (protocol == Protocol::newer) {
    wl_global_create(display_, &ext_data_control_manager_v1_interface, 1, this,
                     Protocols::bindManager);
  } else if (protocol == Protocol::older) {
    wl_global_create(display_, &older, 2, this, Protocols::bindManager);
  }
  if (protocol != Protocol::none) {
    wl_global_create(display_, &zwlr_foreign_toplevel_manager_v1_interface, 3, this,
                     Protocols::bindToplevels);
  }
  thread_ = std::thread([this] { run(); });
}

FakeCompositor::~FakeCompositor() {
  die();
  for (auto& writer : writers_) writer.join();
  std::filesystem::remove_all(std::filesystem::path(path_).parent_path());
}

void FakeCompositor::run() {
  sigset_t all;
  sigfillset(&all);
  pthread_sigmask(SIG_SETMASK, &all, nullptr);
  auto* const loop = wl_display_get_event_loop(display_);
  auto* const calls = wl_event_loop_add_fd(
      loop, calls_.get(), WL_EVENT_READABLE,
      [](int descriptor, std::uint32_t /*mask*/, void* data) {
        auto& self = *static_cast<FakeCompositor*>(data);
        std::uint64_t count = 0;
        if (read(descriptor, &count, sizeof count) < 0) return 0;
        std::vector<std::function<void()>> work;
        {
          const std::lock_guard lock(self.mutex_);
          work.swap(self.waiting_);
        }
        for (const auto& each : work) each();
        return 0;
      },
      this);
  while (!ending_) {
    wl_display_flush_clients(display_);
    wl_event_loop_dispatch(loop, -1);
  }
  wl_event_source_remove(calls);
  wl_display_destroy_clients(display_);
  wl_display_destroy(display_);
}

void FakeCompositor::call(const std::function<void()>& work) {
  auto done = std::make_shared<std::promise<void>>();
  const auto settled = done->get_future();
  {
    const std::lock_guard lock(mutex_);
    waiting_.emplace_back([&work, done = std::move(done)] {
      work();
      done->set_value();
    });
  }
  const std::uint64_t one = 1;
  if (write(calls_.get(), &one, sizeof one) < 0) throw std::runtime_error("no call");
  settled.wait();
}

void FakeCompositor::announce(wl_resource* device) {
  std::vector<std::string> types;
  if (selection_ != nullptr) {
    types = sources_[selection_];
  } else if (forms_) {
    for (const auto& [type, form] : *forms_) types.push_back(type);
  } else {
    ext_data_control_device_v1_send_selection(device, nullptr);
    return;
  }
  auto* made = wl_resource_create(wl_resource_get_client(device),
                                  &ext_data_control_offer_v1_interface, 1, 0);
  wl_resource_set_implementation(made, &Protocols::offerCalls, this, nullptr);
  ext_data_control_device_v1_send_data_offer(device, made);
  for (const auto& type : types) ext_data_control_offer_v1_send_offer(made, type.c_str());
  ext_data_control_device_v1_send_selection(device, made);
}

void FakeCompositor::select(wl_resource*& selection, wl_resource* source) {
  auto* const before = std::exchange(selection, source);
  if (before != nullptr && before != source) ext_data_control_source_v1_send_cancelled(before);
}

void FakeCompositor::give(const std::string& type, FileDescriptor pipe) {
  const auto found = forms_ ? forms_->find(type) : Forms::iterator();
  if (!forms_ || found == forms_->end()) return;
  const Form form = found->second;
  if (form.manner == Manner::reluctant) return;
  if (form.manner == Manner::silent) {
    kept_.push_back(std::move(pipe));
    return;
  }
  if (form.manner == Manner::hesitant) {
    writeAll(pipe.get(), ByteView(form.bytes).first(form.bytes.size() / 2));
    kept_.push_back(std::move(pipe));
    return;
  }
  writers_.emplace_back([form, pipe = std::make_shared<FileDescriptor>(std::move(pipe))] {
    if (form.manner == Manner::polite) {
      writeAll(pipe->get(), form.bytes);
      return;
    }
    const Bytes piece(std::size_t{64} * 1024);
    while (::write(pipe->get(), piece.data(), piece.size()) > 0) {
    }
  });
}

void FakeCompositor::copy(Forms forms) {
  call([&] {
    select(selection_, nullptr);
    forms_ = std::move(forms);
    for (auto* device : devices_) announce(device);
  });
}

void FakeCompositor::empty() {
  call([&] {
    select(selection_, nullptr);
    forms_.reset();
    for (auto* device : devices_) announce(device);
  });
}

void FakeCompositor::finishDevices() {
  call([&] {
    for (auto* device : std::exchange(devices_, {})) {
      ext_data_control_device_v1_send_finished(device);
    }
  });
}

std::size_t FakeCompositor::devices() {
  std::size_t count = 0;
  call([&] { count = devices_.size(); });
  return count;
}

void FakeCompositor::tellState(wl_resource* window) {
  wl_array states;
  wl_array_init(&states);
  if (windows_[window] == front_) {
    *static_cast<std::uint32_t*>(wl_array_add(&states, sizeof(std::uint32_t))) =
        ZWLR_FOREIGN_TOPLEVEL_HANDLE_V1_STATE_ACTIVATED;
  }
  zwlr_foreign_toplevel_handle_v1_send_state(window, &states);
  zwlr_foreign_toplevel_handle_v1_send_done(window);
  wl_array_release(&states);
}

void FakeCompositor::open(const std::string& appId) {
  call([&] {
    auto* const window = wl_resource_create(wl_resource_get_client(toplevelManager_),
                                            &zwlr_foreign_toplevel_handle_v1_interface, 3, 0);
    wl_resource_set_implementation(window, &Protocols::windowCalls, this, Protocols::windowGone);
    windows_[window] = appId;
    zwlr_foreign_toplevel_manager_v1_send_toplevel(toplevelManager_, window);
    zwlr_foreign_toplevel_handle_v1_send_title(window, "a title");
    zwlr_foreign_toplevel_handle_v1_send_app_id(window, appId.c_str());
  });
  bringToFront(appId);
}

void FakeCompositor::bringToFront(const std::string& appId) {
  call([&] { tellFront(appId); });
}

void FakeCompositor::tellFront(const std::string& appId) {
  front_ = appId;
  for (const auto& [window, name] : windows_) tellState(window);
}

void FakeCompositor::close(const std::string& appId) {
  call([&] {
    for (const auto& [window, name] : windows_) {
      if (name == appId) zwlr_foreign_toplevel_handle_v1_send_closed(window);
    }
  });
}

std::vector<std::string> FakeCompositor::activations() {
  std::vector<std::string> found;
  call([&] { found = activations_; });
  return found;
}

void FakeCompositor::finishToplevels() {
  call([&] { zwlr_foreign_toplevel_manager_v1_send_finished(toplevelManager_); });
}

void FakeCompositor::die() {
  if (!thread_.joinable()) return;
  call([&] { ending_ = true; });
  thread_.join();
}

std::vector<std::string> FakeCompositor::types() {
  std::vector<std::string> found;
  call([&] {
    if (selection_ != nullptr) found = sources_[selection_];
    if (forms_) {
      for (const auto& [type, form] : *forms_) found.push_back(type);
    }
  });
  return found;
}

FileDescriptor FakeCompositor::paste(const std::string& type, bool primary) {
  std::array<int, 2> ends{-1, -1};
  if (pipe2(ends.data(), O_CLOEXEC) != 0) throw std::runtime_error("no pipe");
  const FileDescriptor into(ends[1]);
  call([&] {
    auto* const source = primary ? primary_ : selection_;
    if (source != nullptr) ext_data_control_source_v1_send_send(source, type.c_str(), into.get());
  });
  return FileDescriptor(ends[0]);
}

std::vector<std::string> FakeCompositor::requests() {
  std::vector<std::string> found;
  call([&] { found = requests_; });
  return found;
}

bool FakeCompositor::hasPrimary() {
  bool has = false;
  call([&] { has = primary_ != nullptr; });
  return has;
}

}  // namespace vantorel
