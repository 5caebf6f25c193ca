// SPDX-License-Identifier: MIT
#pragma once

#include <cstdint>
#include <filesystem>
#include <functional>
#include <memory>
#include <optional>

#include "base/Lifetime.h"
#include "platform/Dispatch.h"
#include "platform/Screens.h"
#include "platform/StatusItem.h"
#include "platform/linux/bus/SessionBus.h"
#include "platform/linux/bus/TrayHost.h"
#include "platform/linux/bus/TrayItem.h"
#include "platform/linux/bus/TrayMenu.h"

namespace vantorel {

/// An item in the trays that speak StatusNotifierItem, registered with every watcher that appears
/// on the session bus, and again when the bus itself was gone for a while. Without a bus, or a tray
/// on it, nothing is seen and nothing fails. The toolkit's own tray icon looks for a tray only
/// once.
class StatusNotifierTray : public StatusItem {
 public:
  struct Services {
    Dispatch& dispatch;
    const Screens& screens;
    SessionBus& bus;
  };

  /// `iconThemes` is where the program's own icons were installed, if they were. Needs the
  /// application object; the services outlive this.
  StatusNotifierTray(Services services, std::filesystem::path iconThemes);
  ~StatusNotifierTray() override;

  /// Whether there is a tray that shows the item. Called once that is known, which is not before
  /// `show()`, and whenever it changes.
  std::function<void(bool)> onHost;
  /// The colour (0xRRGGBB) of pictures that a tray cannot colour by itself.
  void setInk(std::uint32_t ink);

  void show(Handlers handlers) override;
  void hide() override;
  void setImage(StatusImage image) override;
  void setToolTip(std::string toolTip) override;
  void menuChanged() override;

 private:
  void join();
  void registerWithWatcher();
  void giveImage();
  /// Runs `work` with the handlers in a later turn, unless the item is hidden by then: the bar has
  /// its answer first.
  template <class Work>
  void later(Work work);

  Services services_;
  std::filesystem::path iconThemes_;
  std::optional<Handlers> handlers_;  // absent while hidden
  TrayItem item_;
  TrayMenu menu_;
  StatusImage image_;
  std::uint32_t ink_ = 0;
  std::unique_ptr<TrayHost> host_;  // null while there is no bus
  Lifetime showing_;
};

/// A template picture as trays want it, in that colour (0xRRGGBB).
[[nodiscard]] TrayPixmap trayPixmap(const Bitmap& picture, std::uint32_t ink);

/// A place in the screen's pixels, in points.
[[nodiscard]] Point pointOfPixel(const Screens& screens, int x, int y);

}  // namespace vantorel
