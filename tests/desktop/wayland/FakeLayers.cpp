// SPDX-License-Identifier: MIT
#include "desktop/wayland/FakeLayers.h"

#include <layer-shell-server.h>
#include <viewporter-server.h>
#include <wayland-server.h>

#include <stdexcept>

namespace vantorel {

namespace {

constexpr int outputWidth = 800;
constexpr int outputHeight = 600;

}  // namespace

/// What clients call.
struct FakeLayers::Protocols {
  static FakeLayers& of(wl_resource* resource) {
    return *static_cast<FakeLayers*>(wl_resource_get_user_data(resource));
  }
  static wl_resource* make(wl_client* client, const wl_interface& interface, int version,
                           std::uint32_t id, const void* calls, FakeLayers& self,
                           wl_resource_destroy_func_t gone) {
    auto* const made = wl_resource_create(client, &interface, version, id);
    wl_resource_set_implementation(made, calls, &self, gone);
    return made;
  }
  static void destroy(wl_client* /*client*/, wl_resource* resource) {
    wl_resource_destroy(resource);
  }
  static void ignoreNumber(wl_client* /*client*/, wl_resource* /*resource*/,
                           std::uint32_t /*number*/) {}
  static void ignoreSignedNumber(wl_client* /*client*/, wl_resource* /*resource*/,
                                 std::int32_t /*number*/) {}
  static void ignoreRectangle(wl_client* /*client*/, wl_resource* /*resource*/, std::int32_t /*x*/,
                              std::int32_t /*y*/, std::int32_t /*width*/, std::int32_t /*height*/) {
  }
  static void ignoreObject(wl_client* /*client*/, wl_resource* /*resource*/,
                           wl_resource* /*object*/) {}

  static void change(wl_resource* region, bool isAdded, int x, int y, int width, int height) {
    of(region).regions_[region].push_back({isAdded, x, y, x + width, y + height});
  }
  static constexpr struct wl_region_interface regionCalls {
    destroy,
        [](wl_client* /*client*/, wl_resource* region, std::int32_t x, std::int32_t y,
           std::int32_t width, std::int32_t height) { change(region, true, x, y, width, height); },
        [](wl_client* /*client*/, wl_resource* region, std::int32_t x, std::int32_t y,
           std::int32_t width, std::int32_t height) { change(region, false, x, y, width, height); }
  };
  static void regionGone(wl_resource* region) { of(region).regions_.erase(region); }

  static void attach(wl_client* /*client*/, wl_resource* surface, wl_resource* buffer,
                     std::int32_t /*x*/, std::int32_t /*y*/) {
    const auto& known = of(surface).surfaces_[surface];
    if (buffer != nullptr && known.role != nullptr && !known.isTold) {
      wl_resource_post_error(surface, 0, "a picture before the size was told");
    }
  }
  static void frame(wl_client* client, wl_resource* surface, std::uint32_t id) {
    make(client, wl_callback_interface, 1, id, nullptr, of(surface), nullptr);
  }
  static void setInputRegion(wl_client* /*client*/, wl_resource* surface, wl_resource* region) {
    auto& self = of(surface);
    self.surfaces_[surface].takenNext = region != nullptr ? self.regions_[region] : Surface().taken;
  }
  static void commit(wl_client* /*client*/, wl_resource* surface) { of(surface).commit(surface); }
  static constexpr struct wl_surface_interface surfaceCalls {
    destroy, attach, ignoreRectangle, frame, ignoreObject, setInputRegion, commit,
        ignoreSignedNumber, ignoreSignedNumber, ignoreRectangle, nullptr
  };
  static void surfaceGone(wl_resource* surface) {
    of(surface).surfaces_.erase(surface);
    std::erase(of(surface).layered_, surface);
  }
  static constexpr struct wl_compositor_interface compositorCalls {
    [](wl_client* client, wl_resource* compositor, std::uint32_t id) {
      auto* const made = make(client, wl_surface_interface, wl_resource_get_version(compositor), id,
                              &surfaceCalls, of(compositor), surfaceGone);
      of(compositor).surfaces_[made];
    },
        [](wl_client* client, wl_resource* compositor, std::uint32_t id) {
          auto* const made =
              make(client, wl_region_interface, 1, id, &regionCalls, of(compositor), regionGone);
          of(compositor).regions_[made];
        }
  };
  static void setPlace(wl_client* /*client*/, wl_resource* /*inner*/, std::int32_t /*x*/,
                       std::int32_t /*y*/) {}
  static void nothing(wl_client* /*client*/, wl_resource* /*inner*/) {}
  static constexpr struct wl_subsurface_interface innerCalls {
    destroy, setPlace, ignoreObject, ignoreObject, nothing, nothing
  };
  static constexpr struct wl_subcompositor_interface subcompositorCalls {
    destroy, [](wl_client* client, wl_resource* subcompositor, std::uint32_t id,
                wl_resource* /*surface*/, wl_resource* /*outer*/) {
      make(client, wl_subsurface_interface, 1, id, &innerCalls, of(subcompositor), nullptr);
    }
  };

  static constexpr struct wp_viewport_interface viewportCalls {
    destroy, nullptr,
        [](wl_client* /*client*/, wl_resource* /*viewport*/, std::int32_t /*width*/,
           std::int32_t /*height*/) {}
  };
  static constexpr struct wp_viewporter_interface viewporterCalls {
    destroy,
        [](wl_client* client, wl_resource* viewporter, std::uint32_t id, wl_resource* /*surface*/) {
          make(client, wp_viewport_interface, 1, id, &viewportCalls, of(viewporter), nullptr);
        }
  };

  static constexpr struct zwlr_layer_surface_v1_interface roleCalls {
    [](wl_client* /*client*/, wl_resource* /*role*/, std::uint32_t /*width*/,
       std::uint32_t /*height*/) {},
        ignoreNumber, ignoreSignedNumber, ignoreRectangle, ignoreNumber, ignoreObject,
        ignoreNumber, destroy, ignoreNumber
  };
  static void roleGone(wl_resource* role) {
    for (auto& [surface, known] : of(role).surfaces_) {
      if (known.role != role) continue;
      known.role = nullptr;
      std::erase(of(role).layered_, surface);
    }
  }
  static constexpr struct zwlr_layer_shell_v1_interface shellCalls {
    [](wl_client* client, wl_resource* shell, std::uint32_t id, wl_resource* surface,
       wl_resource* /*output*/, std::uint32_t /*layer*/, const char* /*name*/) {
      auto& self = of(shell);
      self.surfaces_[surface].role =
          make(client, zwlr_layer_surface_v1_interface, 4, id, &roleCalls, self, roleGone);
      self.layered_.push_back(surface);
    },
        destroy
  };

  static void bindOutput(wl_client* client, void* self, std::uint32_t version, std::uint32_t id) {
    auto* const made = make(client, wl_output_interface, static_cast<int>(version), id, nullptr,
                            *static_cast<FakeLayers*>(self), nullptr);
    wl_output_send_geometry(made, 0, 0, 200, 150, WL_OUTPUT_SUBPIXEL_NONE, "made", "up",
                            WL_OUTPUT_TRANSFORM_NORMAL);
    wl_output_send_mode(made, WL_OUTPUT_MODE_CURRENT, outputWidth, outputHeight, 60000);
    wl_output_send_scale(made, 1);
    wl_output_send_done(made);
  }
  template <const wl_interface* Interface, const auto* Calls>
  static void bind(wl_client* client, void* self, std::uint32_t version, std::uint32_t id) {
    make(client, *Interface, static_cast<int>(version), id, Calls, *static_cast<FakeLayers*>(self),
         nullptr);
  }
};

FakeLayers::FakeLayers(FakeCompositor& compositor) : compositor_(compositor) {
  compositor_.call([this] {
    auto* const display = compositor_.display();
    constexpr int outputVersion = 2;
    constexpr int surfaceVersion = 4;
    constexpr int shellVersion = 4;
    wl_display_init_shm(display);
    wl_global_create(display, &wl_compositor_interface, surfaceVersion, this,
                     Protocols::bind<&wl_compositor_interface, &Protocols::compositorCalls>);
    wl_global_create(display, &wl_subcompositor_interface, 1, this,
                     Protocols::bind<&wl_subcompositor_interface, &Protocols::subcompositorCalls>);
    wl_global_create(display, &wl_output_interface, outputVersion, this, Protocols::bindOutput);
    wl_global_create(display, &wp_viewporter_interface, 1, this,
                     Protocols::bind<&wp_viewporter_interface, &Protocols::viewporterCalls>);
    wl_global_create(display, &zwlr_layer_shell_v1_interface, shellVersion, this,
                     Protocols::bind<&zwlr_layer_shell_v1_interface, &Protocols::shellCalls>);
    compositor_.seat().plugInMouseAndTouch();
  });
}

void FakeLayers::commit(wl_resource* surface) {
  auto& known = surfaces_[surface];
  known.taken = known.takenNext;
  if (known.role == nullptr || known.isTold) return;
  known.isTold = true;
  if (manner_ == Manner::closing) {
    zwlr_layer_surface_v1_send_closed(known.role);
  } else {
    zwlr_layer_surface_v1_send_configure(known.role, 1, outputWidth, outputHeight);
  }
}

void FakeLayers::behave(Manner manner) {
  compositor_.call([&] { manner_ = manner; });
}

void FakeLayers::closeAll() {
  compositor_.call([&] {
    for (auto* surface : layered_) zwlr_layer_surface_v1_send_closed(surfaces_[surface].role);
  });
}

std::size_t FakeLayers::count() {
  std::size_t found = 0;
  compositor_.call([&] { found = layered_.size(); });
  return found;
}

wl_resource* FakeLayers::first() const {
  if (layered_.empty()) throw std::runtime_error("no surface is on a layer");
  return layered_.front();
}

bool FakeLayers::takesPressesAt(int x, int y) {
  bool takes = false;
  compositor_.call([&] {
    for (const auto& each : surfaces_[first()].taken) {
      const bool isInside = x >= each.left && x < each.right && y >= each.top && y < each.bottom;
      if (isInside) takes = each.isAdded;
    }
  });
  return takes;
}

void FakeLayers::point(int x, int y) {
  compositor_.call([&] { compositor_.seat().point(first(), x, y); });
}

void FakeLayers::press(std::uint32_t button, bool isDown) {
  compositor_.call([&] { compositor_.seat().press(button, isDown); });
}

void FakeLayers::touch(int x, int y) {
  compositor_.call([&] { compositor_.seat().touch(first(), x, y); });
}

}  // namespace vantorel
