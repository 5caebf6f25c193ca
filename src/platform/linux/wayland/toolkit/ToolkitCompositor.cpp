// SPDX-License-Identifier: MIT
#include "platform/linux/wayland/toolkit/ToolkitCompositor.h"

#include <layer-shell-client.h>
#include <poll.h>
#include <qpa/qplatformnativeinterface.h>
#include <shortcuts-inhibit-client.h>
#include <sys/mman.h>
#include <unistd.h>
#include <viewporter-client.h>
#include <wayland-client.h>

#include <QAbstractEventDispatcher>
#include <QGuiApplication>
#include <QScreen>
#include <QWindow>
#include <algorithm>
#include <cerrno>
#include <cstdint>
#include <cstring>
#include <utility>

#include "base/FileDescriptor.h"

namespace vantorel {
namespace {

constexpr std::uint32_t layerVersion = 4;
constexpr std::uint32_t oldestLayerVersion = 3;
constexpr std::uint32_t surfaceVersion = 4;  // from which damage is counted in pixels
constexpr std::chrono::seconds patience{2};

}  // namespace

/// What the compositor calls.
struct ToolkitCompositor::Listeners {
  template <class Object>
  static void take(Object*& object, wl_registry* registry, std::uint32_t name,
                   const wl_interface& interface, std::uint32_t version) {
    if (object != nullptr) return;
    object = static_cast<Object*>(wl_registry_bind(registry, name, &interface, version));
  }

  static void offered(void* self, wl_registry* registry, std::uint32_t name, const char* interface,
                      std::uint32_t version) {
    auto& offers = static_cast<ToolkitCompositor*>(self)->offers_;
    const auto is = [interface](const wl_interface& one) {
      return std::strcmp(interface, one.name) == 0;
    };
    if (is(zwlr_layer_shell_v1_interface) && version >= oldestLayerVersion) {
      take(offers.layers, registry, name, zwlr_layer_shell_v1_interface,
           std::min(version, layerVersion));
    } else if (is(wl_compositor_interface)) {
      take(offers.surfaces, registry, name, wl_compositor_interface,
           std::min(version, surfaceVersion));
    } else if (is(wl_subcompositor_interface)) {
      take(offers.innerSurfaces, registry, name, wl_subcompositor_interface, 1);
    } else if (is(wl_seat_interface)) {
      take(offers.seat, registry, name, wl_seat_interface, 1);
    } else if (is(wl_shm_interface)) {
      take(offers.memory, registry, name, wl_shm_interface, 1);
    } else if (is(wp_viewporter_interface)) {
      take(offers.viewports, registry, name, wp_viewporter_interface, 1);
    } else if (is(zwp_keyboard_shortcuts_inhibit_manager_v1_interface)) {
      take(offers.inhibition, registry, name, zwp_keyboard_shortcuts_inhibit_manager_v1_interface,
           1);
    }
  }
  static void withdrawn(void* /*self*/, wl_registry* /*registry*/, std::uint32_t /*name*/) {}
  static constexpr wl_registry_listener registry{offered, withdrawn};

  static constexpr wl_callback_listener processed{
      [](void* data, wl_callback* callback, std::uint32_t /*serial*/) {
        auto& owner = *static_cast<Awaited*>(data)->owner;
        wl_callback_destroy(callback);
        const auto place =
            std::find_if(owner.awaited_.begin(), owner.awaited_.end(),
                         [callback](const auto& each) { return each.callback == callback; });
        const auto done = std::move(place->done);
        owner.awaited_.erase(place);
        done();
      }};
};

std::unique_ptr<ToolkitCompositor> ToolkitCompositor::open() {
  auto* const native = QGuiApplication::platformNativeInterface();
  auto* const display = static_cast<wl_display*>(
      native != nullptr ? native->nativeResourceForIntegration("wl_display") : nullptr);
  if (display == nullptr) return nullptr;
  std::unique_ptr<ToolkitCompositor> made(new ToolkitCompositor(display));
  return made->hear() ? std::move(made) : nullptr;
}

ToolkitCompositor::ToolkitCompositor(wl_display* display)
    : display_(display),
      queue_(wl_display_create_queue(display)),
      wrapped_(static_cast<wl_display*>(wl_proxy_create_wrapper(display))) {
  // What is made of an object is on that object's queue.
  wl_proxy_set_queue(reinterpret_cast<wl_proxy*>(wrapped_), queue_);
  registry_ = wl_display_get_registry(wrapped_);
  wl_registry_add_listener(registry_, &Listeners::registry, this);
}

bool ToolkitCompositor::hear() {
  bool isTold = false;
  whenProcessed([&isTold] { isTold = true; });
  const auto deadline = std::chrono::steady_clock::now() + patience;
  if (!waitUntil([&isTold] { return isTold; }, deadline)) return false;
  auto* const dispatcher = QAbstractEventDispatcher::instance();
  QObject::connect(dispatcher, &QAbstractEventDispatcher::aboutToBlock, &whileThis_,
                   [this] { wl_display_dispatch_queue_pending(display_, queue_); });
  return offers_.layers != nullptr && offers_.surfaces != nullptr &&
         offers_.innerSurfaces != nullptr;
}

ToolkitCompositor::~ToolkitCompositor() {
  for (const auto& each : awaited_) wl_callback_destroy(each.callback);
  if (pixel_ != nullptr) wl_buffer_destroy(pixel_);
  const auto end = [](auto* object, auto destroy) {
    if (object != nullptr) destroy(object);
  };
  end(offers_.inhibition, zwp_keyboard_shortcuts_inhibit_manager_v1_destroy);
  end(offers_.viewports, wp_viewporter_destroy);
  end(offers_.memory, wl_shm_destroy);
  end(offers_.seat, wl_seat_destroy);
  end(offers_.innerSurfaces, wl_subcompositor_destroy);
  end(offers_.surfaces, wl_compositor_destroy);
  end(offers_.layers, zwlr_layer_shell_v1_destroy);
  wl_registry_destroy(registry_);
  wl_proxy_wrapper_destroy(wrapped_);
  wl_event_queue_destroy(queue_);
}

wl_surface* ToolkitCompositor::surfaceOf(QWindow& window) {
  if (window.handle() == nullptr) return nullptr;
  return static_cast<wl_surface*>(
      QGuiApplication::platformNativeInterface()->nativeResourceForWindow("surface", &window));
}

wl_output* ToolkitCompositor::outputOf(QScreen& screen) {
  return static_cast<wl_output*>(
      QGuiApplication::platformNativeInterface()->nativeResourceForScreen("output", &screen));
}

wl_buffer* ToolkitCompositor::transparentPixel() {
  if (pixel_ != nullptr || offers_.memory == nullptr) return pixel_;
  constexpr int size = 4;  // bytes, all zero
  const FileDescriptor file(memfd_create("pixel", MFD_CLOEXEC));
  if (!file.isOpen() || ftruncate(file.get(), size) != 0) return nullptr;
  auto* const pool = wl_shm_create_pool(offers_.memory, file.get(), size);
  pixel_ = wl_shm_pool_create_buffer(pool, 0, 1, 1, size, WL_SHM_FORMAT_ARGB8888);
  wl_shm_pool_destroy(pool);
  return pixel_;
}

void ToolkitCompositor::letPointerPass(wl_surface* surface) {
  auto* const nowhere = wl_compositor_create_region(offers_.surfaces);
  wl_surface_set_input_region(surface, nowhere);
  wl_region_destroy(nowhere);
}

void ToolkitCompositor::flush() { wl_display_flush(display_); }

bool ToolkitCompositor::waitUntil(const std::function<bool()>& isDone, Deadline deadline) {
  while (!isDone()) {
    if (wl_display_prepare_read_queue(display_, queue_) != 0) {
      if (wl_display_dispatch_queue_pending(display_, queue_) < 0) return false;
      continue;
    }
    wl_display_flush(display_);
    const auto left =
        std::chrono::ceil<std::chrono::milliseconds>(deadline - std::chrono::steady_clock::now())
            .count();
    pollfd readable{wl_display_get_fd(display_), POLLIN, 0};
    const bool isReadable = left > 0 && poll(&readable, 1, static_cast<int>(left)) > 0;
    if (!isReadable) wl_display_cancel_read(display_);
    if (left <= 0) return false;
    if (isReadable && wl_display_read_events(display_) < 0) return false;
    if (wl_display_dispatch_queue_pending(display_, queue_) < 0) return false;
  }
  return true;
}

void ToolkitCompositor::whenProcessed(std::function<void()> done) {
  auto* const callback = wl_display_sync(wrapped_);
  auto& awaited = awaited_.emplace_back(Awaited{this, callback, std::move(done)});
  wl_callback_add_listener(callback, &Listeners::processed, &awaited);
  wl_display_flush(display_);
}

}  // namespace vantorel
