// SPDX-License-Identifier: MIT
#pragma once

#include <QObject>
#include <functional>
#include <list>
#include <memory>

#include "base/Deadline.h"

class QScreen;
class QWindow;
struct wl_buffer;
struct wl_callback;
struct wl_compositor;
struct wl_display;
struct wl_event_queue;
struct wl_output;
struct wl_registry;
struct wl_seat;
struct wl_shm;
struct wl_subcompositor;
struct wl_surface;
struct wp_viewporter;
struct zwlr_layer_shell_v1;
struct zwp_keyboard_shortcuts_inhibit_manager_v1;

namespace vantorel {

/// The toolkit's own connection to a Wayland compositor, with a queue of events beside the
/// toolkit's: what is made of these objects is answered on that queue, on the main thread, before
/// it falls asleep. Main thread; needs the application object.
class ToolkitCompositor {
 public:
  /// Owned by this. Null, but for the first three, where the compositor does not offer it.
  struct Offers {
    zwlr_layer_shell_v1* layers = nullptr;
    wl_compositor* surfaces = nullptr;
    wl_subcompositor* innerSurfaces = nullptr;
    wl_seat* seat = nullptr;
    wl_shm* memory = nullptr;
    wp_viewporter* viewports = nullptr;
    zwp_keyboard_shortcuts_inhibit_manager_v1* inhibition = nullptr;
  };

  /// Null where the toolkit speaks something else, or the compositor has no layers.
  [[nodiscard]] static std::unique_ptr<ToolkitCompositor> open();
  ~ToolkitCompositor();
  ToolkitCompositor(const ToolkitCompositor&) = delete;
  ToolkitCompositor& operator=(const ToolkitCompositor&) = delete;

  [[nodiscard]] const Offers& offers() const { return offers_; }
  /// Null while the window has none, as a hidden one may.
  [[nodiscard]] static wl_surface* surfaceOf(QWindow& window);
  [[nodiscard]] static wl_output* outputOf(QScreen& screen);
  /// A buffer of one pixel that nothing is seen of; null without memory to share.
  [[nodiscard]] wl_buffer* transparentPixel();

  /// The pointer passes through the surface from its next picture on.
  void letPointerPass(wl_surface* surface);
  /// Sends what has been asked for.
  void flush();
  /// Waits for what arrives on the queue until `isDone`. False when it is not by then, or the
  /// connection is lost.
  bool waitUntil(const std::function<bool()>& isDone, Deadline deadline);
  /// Calls `done` when the compositor has dealt with everything that was asked on this connection
  /// until now, the toolkit's wishes too; never when the connection is lost before.
  void whenProcessed(std::function<void()> done);

 private:
  struct Listeners;
  struct Awaited {
    ToolkitCompositor* owner = nullptr;
    wl_callback* callback = nullptr;
    std::function<void()> done;
  };

  explicit ToolkitCompositor(wl_display* display);
  [[nodiscard]] bool hear();

  wl_display* display_;
  wl_event_queue* queue_;
  wl_display* wrapped_;  // the connection, as one whose objects are on the queue
  wl_registry* registry_ = nullptr;
  Offers offers_;
  wl_buffer* pixel_ = nullptr;
  std::list<Awaited> awaited_;  // whose addresses the compositor has
  QObject whileThis_;
};

}  // namespace vantorel
