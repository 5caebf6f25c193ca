// SPDX-License-Identifier: MIT
#include "program/wayland/SelectionOwner.h"

#include <data-control-client.h>
#include <unistd.h>
#include <wayland-client.h>

#include <utility>

namespace vantorel::bench {

namespace {

/// The name of the protocol as it was before; only the manager's is ever sent.
const wl_interface& olderInterface() {
  static const wl_interface older = [] {
    wl_interface interface = ext_data_control_manager_v1_interface;
    interface.name = "zwlr_data_control_manager_v1";
    return interface;
  }();
  return older;
}

}  // namespace

/// What the compositor calls.
struct SelectionOwner::Listeners {
  static constexpr ext_data_control_source_v1_listener source{
      [](void* self, ext_data_control_source_v1* source, const char* /*type*/, int pipe) {
        static_cast<SelectionOwner*>(self)->serve(source, pipe);
      },
      [](void* self, ext_data_control_source_v1* source) {
        static_cast<SelectionOwner*>(self)->sources_.erase(source);
        ext_data_control_source_v1_destroy(source);
      }};
  /// What others offer is not asked for.
  static constexpr ext_data_control_device_v1_listener device{
      [](void* /*self*/, ext_data_control_device_v1* /*device*/, ext_data_control_offer_v1* offer) {
        ext_data_control_offer_v1_destroy(offer);
      },
      [](void* /*self*/, ext_data_control_device_v1* /*device*/,
         ext_data_control_offer_v1* /*offer*/) {},
      [](void* /*self*/, ext_data_control_device_v1* /*device*/) {},
      [](void* /*self*/, ext_data_control_device_v1* /*device*/,
         ext_data_control_offer_v1* /*offer*/) {}};
};

SelectionOwner::SelectionOwner(Compositor& compositor)
    : compositor_(compositor),
      manager_(compositor.bind<ext_data_control_manager_v1>(
          compositor.offers(ext_data_control_manager_v1_interface.name)
              ? ext_data_control_manager_v1_interface
              : olderInterface(),
          1)),
      device_(ext_data_control_manager_v1_get_data_device(manager_, compositor.seat())) {
  ext_data_control_device_v1_add_listener(device_, &Listeners::device, this);
}

SelectionOwner::~SelectionOwner() {
  for (const auto& [source, contents] : sources_) ext_data_control_source_v1_destroy(source);
  ext_data_control_device_v1_destroy(device_);
  ext_data_control_manager_v1_destroy(manager_);
  compositor_.settle();
}

Clock::time_point SelectionOwner::own(const char* type, std::string contents) {
  auto* const source = ext_data_control_manager_v1_create_data_source(manager_);
  ext_data_control_source_v1_add_listener(source, &Listeners::source, this);
  ext_data_control_source_v1_offer(source, type);
  sources_[source] = std::move(contents);
  asked_.reset();
  served_.reset();
  const auto moment = Clock::now();
  ext_data_control_device_v1_set_selection(device_, source);
  compositor_.listen(moment);
  return moment;
}

void SelectionOwner::serve(ext_data_control_source_v1* source, int pipe) {
  if (!asked_) asked_ = Clock::now();
  std::string_view left = sources_[source];
  while (!left.empty()) {
    const auto written = write(pipe, left.data(), left.size());
    if (written <= 0) break;
    left.remove_prefix(static_cast<std::size_t>(written));
  }
  close(pipe);
  if (!served_) served_ = Clock::now();
}

}  // namespace vantorel::bench
