// SPDX-License-Identifier: MIT
#include "platform/linux/bus/StatusNotifierTray.h"

#include <QDBusConnection>
#include <QDBusMessage>
#include <QDBusPendingCall>
#include <array>
#include <string>
#include <system_error>
#include <utility>

namespace vantorel {
namespace {

// The sizes that bars have, in pixels.
constexpr std::array pictureSides{16, 22, 24, 32, 44, 64};

bool isInstalled(const std::filesystem::path& iconThemes, const std::string& name) {
  if (iconThemes.empty() || name.empty()) return false;
  std::error_code unreadable;
  return std::filesystem::exists(iconThemes / "hicolor" / "symbolic" / "apps" / (name + ".svg"),
                                 unreadable);
}

}  // namespace

StatusNotifierTray::StatusNotifierTray(Services services, std::filesystem::path iconThemes)
    : services_(services), iconThemes_(std::move(iconThemes)) {
  registerTrayTypes();
  QObject::connect(&services_.bus, &SessionBus::rejoined, &item_, [this] {
    // Else with the next time that it is shown.
    if (handlers_) join();
  });
  QObject::connect(&services_.bus, &SessionBus::left, &item_, [this] {
    host_.reset();
    if (onHost) onHost(false);
  });
  item_.onActivate = [this] {
    later([](const Handlers& handlers) {
      if (handlers.onClick) handlers.onClick();
    });
  };
  item_.onSecondaryActivate = [this] {
    later([](const Handlers& handlers) {
      if (handlers.onMiddleClick) handlers.onMiddleClick();
    });
  };
  item_.onContextMenu = [this](int x, int y) {
    later([at = pointOfPixel(services_.screens, x, y)](const Handlers& handlers) {
      if (handlers.onMenuWanted) handlers.onMenuWanted(at);
    });
  };
  menu_.rows = [this] {
    return handlers_ && handlers_->menuRows ? handlers_->menuRows() : std::vector<MenuRow>();
  };
  menu_.onChosen = [this](const MenuRow& row) {
    later([row](const Handlers& handlers) {
      if (handlers.onChosen) handlers.onChosen(row);
    });
  };
}

StatusNotifierTray::~StatusNotifierTray() {
  if (!host_) return;
  auto bus = services_.bus.connection();
  if (!bus) return;
  bus->unregisterObject(TrayItem::menuPath);
  bus->unregisterObject(TrayItem::path);
}

template <class Work>
void StatusNotifierTray::later(Work work) {
  if (!handlers_) return;
  // Each handler may hide the item, and so end the others while it runs.
  services_.dispatch.async(showing_.guard([this, work] { work(Handlers(*handlers_)); }));
}

void StatusNotifierTray::show(Handlers handlers) {
  showing_.end();
  handlers_ = std::move(handlers);
  item_.setActive(true);
  menu_.refresh();
  if (!host_) join();
}

// The objects stay: a watcher forgets an item only when its program leaves the bus.
void StatusNotifierTray::hide() {
  showing_.end();
  handlers_.reset();
  item_.setActive(false);
}

void StatusNotifierTray::join() {
  auto bus = services_.bus.connection();
  constexpr auto everything = QDBusConnection::ExportAllContents;
  if (!bus || !bus->registerObject(TrayItem::path, &item_, everything)) {
    if (onHost) onHost(false);
    return;
  }
  if (!bus->registerObject(TrayItem::menuPath, &menu_, everything)) {
    bus->unregisterObject(TrayItem::path);
    if (onHost) onHost(false);
    return;
  }
  host_ = std::make_unique<TrayHost>(*bus);
  host_->onWatcher = [this] { registerWithWatcher(); };
  host_->onChange = [this](bool isThere) {
    if (onHost) onHost(isThere);
  };
  registerWithWatcher();
}

// Nobody waits for the answer: without a watcher it is an error, and one that comes is noticed.
void StatusNotifierTray::registerWithWatcher() {
  const auto bus = services_.bus.connection();
  if (!bus) return;
  auto call = QDBusMessage::createMethodCall(TrayHost::watcher, TrayHost::watcherPath,
                                             TrayHost::watcher, "RegisterStatusNotifierItem");
  call.setAutoStartService(false);
  call << bus->baseService();
  bus->asyncCall(call);
}

void StatusNotifierTray::setImage(StatusImage image) {
  image_ = std::move(image);
  giveImage();
}

void StatusNotifierTray::setInk(std::uint32_t ink) {
  if (std::exchange(ink_, ink) != ink) giveImage();
}

void StatusNotifierTray::giveImage() {
  QList<TrayPixmap> pictures;
  for (const int side : pictureSides) {
    const auto picture = image_.drawn ? image_.drawn(side) : nullptr;
    if (picture) pictures << trayPixmap(*picture, ink_);
  }
  const bool named = isInstalled(iconThemes_, image_.name);
  item_.setIcon(named ? QString::fromStdString(image_.name) : QString(),
                named ? QString::fromStdString(iconThemes_.native()) : QString(),
                std::move(pictures));
}

void StatusNotifierTray::setToolTip(std::string toolTip) {
  item_.setToolTip(QString::fromStdString(toolTip));
}

void StatusNotifierTray::menuChanged() { menu_.refresh(); }

TrayPixmap trayPixmap(const Bitmap& picture, std::uint32_t ink) {
  QByteArray pixels;
  pixels.reserve(static_cast<qsizetype>(picture.pixels.size()) * 4);
  for (const std::uint32_t pixel : picture.pixels) {
    pixels.append(static_cast<char>(pixel >> 24U));
    for (const unsigned shift : {16U, 8U, 0U}) pixels.append(static_cast<char>(ink >> shift));
  }
  return {picture.pixelSize.width, picture.pixelSize.height, std::move(pixels)};
}

Point pointOfPixel(const Screens& screens, int x, int y) {
  for (const Screen& screen : screens.screens()) {
    const Rect& frame = screen.frame;
    const Rect pixels{frame.x, frame.y, frame.width * screen.scale, frame.height * screen.scale};
    if (!pixels.contains({double(x), double(y)})) continue;
    return {frame.x + (x - frame.x) / screen.scale, frame.y + (y - frame.y) / screen.scale};
  }
  return {double(x), double(y)};
}

}  // namespace vantorel
