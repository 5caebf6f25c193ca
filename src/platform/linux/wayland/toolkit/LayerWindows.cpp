// SPDX-License-Identifier: MIT
#include "platform/linux/wayland/toolkit/LayerWindows.h"

#include <QApplication>
#include <QPointer>
#include <QScreen>
#include <QWidget>
#include <QWindow>
#include <chrono>
#include <iterator>
#include <utility>

#include "platform/linux/wayland/toolkit/InnerRole.h"
#include "platform/linux/wayland/toolkit/LayerRole.h"

namespace vantorel {
namespace {

/// Of a compositor that answers at once, or not at all.
constexpr std::chrono::seconds patience{1};

bool isSmall(const QWindow& window) {
  return window.type() == Qt::Popup || window.type() == Qt::ToolTip;
}

bool takesKeys(const QWindow& window) {
  return window.type() != Qt::ToolTip && !window.flags().testFlag(Qt::WindowDoesNotAcceptFocus);
}

/// The toolkit makes surfaces of its own kind for what is inside of a window or hangs at the
/// pointer.
bool isOurs(const QWindow& window) {
  return window.isTopLevel() && !window.inherits("QShapedPixmapWindow");
}

QScreen& screenOf(const QWindow& window) {
  auto* const under = QGuiApplication::screenAt(window.geometry().center());
  return under != nullptr ? *under : *window.screen();
}

/// Of a compositor that does not want it, or has no time for it. In a later turn: it may be what
/// is being shown. Not as a call of the window itself, since the toolkit's windows hand the calls
/// that are queued for them on to their widgets.
void closeLater(QWindow& window) {
  const auto close = [closing = QPointer<QWindow>(&window)] {
    if (closing) closing->close();
  };
  QMetaObject::invokeMethod(QCoreApplication::instance(), close, Qt::QueuedConnection);
}

QWindow* openMenu() {
  auto* const menu = QApplication::activePopupWidget();
  return menu != nullptr ? menu->windowHandle() : nullptr;
}

}  // namespace

void LayerWindows::prepareEnvironment() {
  qputenv("QT_WAYLAND_USE_BYPASSWINDOWMANAGERHINT", "1");
  qputenv("QT_WAYLAND_DISABLE_FIXED_POSITIONS", "1");
  // A toolkit that joined the next compositor by itself would leave our own connections behind.
  qunsetenv("QT_WAYLAND_RECONNECT");
}

LayerWindows::LayerWindows(ToolkitCompositor& compositor, LayerScrim& scrim)
    : compositor_(compositor), scrim_(scrim) {
  scrim_.onPress = [this](QPoint at) { return pressed(at); };
  scrim_.afterPress = [this] { shareKeyboard(); };
  QCoreApplication::instance()->installEventFilter(this);
}

LayerWindows::~LayerWindows() = default;

bool LayerWindows::eventFilter(QObject* watched, QEvent* event) {
  if (!watched->isWindowType()) {
    auto* const widget =
        event->type() == QEvent::ZOrderChange ? qobject_cast<QWidget*>(watched) : nullptr;
    if (widget != nullptr && widget->isWindow() && widget->windowHandle() != nullptr) {
      take(*widget->windowHandle());  // it has been raised
    }
    return false;
  }
  auto& window = static_cast<QWindow&>(*watched);
  switch (event->type()) {
    case QEvent::Show:
      aboutToShow(window);
      break;
    case QEvent::Expose:
      return !stand(window);
    case QEvent::Move:
    case QEvent::Resize:
      follow(window);
      break;
    case QEvent::MouseButtonPress:
      take(window);
      break;
    case QEvent::KeyPress:
    case QEvent::KeyRelease:
      // A menu belongs to a window that has the keyboard in its place.
      if (auto* const menu = openMenu(); menu != nullptr && menu != &window) {
        QCoreApplication::sendEvent(menu, event);
        return true;
      }
      break;
    default:
      break;
  }
  return false;
}

void LayerWindows::aboutToShow(QWindow& window) {
  if (!isOurs(window)) return;
  window.setFlag(Qt::BypassWindowManagerHint);
  connect(&window, &QWindow::visibleChanged, this, &LayerWindows::visibilityChanged,
          Qt::UniqueConnection);
}

/// Comes before the toolkit takes the surface away, which may only follow its role.
void LayerWindows::visibilityChanged(bool isVisible) {
  if (!isVisible) vanish(static_cast<QWindow*>(sender()));
}

/// The last moment before the window is drawn, which it may be only when this answers true.
bool LayerWindows::stand(QWindow& window) {
  if (!isOurs(window) || !window.isVisible() || standing_.contains(&window)) return true;
  auto* const surface = ToolkitCompositor::surfaceOf(window);
  if (surface == nullptr) return true;
  // The toolkit forgets to say so of a window without a mask.
  if (window.flags().testFlag(Qt::WindowTransparentForInput)) compositor_.letPointerPass(surface);
  if (auto* const outer = window.transientParent();
      isSmall(window) && outer != nullptr && standing_.contains(outer)) {
    auto role = std::make_unique<InnerRole>(compositor_, surface, *outer, window.geometry());
    standing_.emplace(&window, Standing{std::move(role), outer, nullptr});
    clearScrim();
    return true;
  }
  LayerRole::Stand how;
  if (takesKeys(window)) {
    order_.take(&window);
    shareKeyboard();
    how.keyboard = LayerRole::Keyboard::whileItStands;
  }
  auto role =
      std::make_unique<LayerRole>(compositor_, surface, screenOf(window), window.geometry(), how);
  role->onClosed = [&window] { closeLater(window); };
  const bool isReady = role->waitUntilReady(std::chrono::steady_clock::now() + patience);
  if (!isReady) closeLater(window);
  auto* const keyed = takesKeys(window) ? role.get() : nullptr;
  standing_.emplace(&window, Standing{std::move(role), nullptr, keyed});
  clearScrim();
  return isReady;
}

void LayerWindows::vanish(QWindow* window) {
  bool takenKeys = false;
  for (auto it = standing_.begin(); it != standing_.end();) {
    if (it->second.outer == window) closeLater(*it->first);
    const bool goes = it->first == window || it->second.outer == window;
    if (goes && it->second.keyed != nullptr) takenKeys = true;
    it = goes ? standing_.erase(it) : std::next(it);
  }
  order_.drop(window);
  shareKeyboard();
  if (!takenKeys) return;
  ++leaving_;
  compositor_.whenProcessed([this] { --leaving_; });
}

void LayerWindows::follow(QWindow& window) {
  const auto found = standing_.find(&window);
  if (found == standing_.end()) return;
  found->second.role->follow(window.geometry());
  for (const auto& [inner, standing] : standing_) {
    if (standing.outer == &window) standing.role->follow(inner->geometry());
  }
  clearScrim();
}

/// Nothing for a window that takes no keys. One that is kept from them by a question gives them to
/// that.
void LayerWindows::take(QWindow& window) {
  auto* const modal = QGuiApplication::modalWindow();
  auto& meant = modal != nullptr && modal->transientParent() == &window ? *modal : window;
  const auto found = standing_.find(&meant);
  if (found == standing_.end() || found->second.keyed == nullptr) return;
  order_.take(&meant);
  shareKeyboard();
}

/// While one window has the keyboard the others stand below it: compositors differ in which of two
/// on one layer is above.
void LayerWindows::shareKeyboard() {
  const auto* const holder = order_.holder();
  for (const auto& [window, standing] : standing_) {
    if (standing.keyed == nullptr) continue;
    const bool has = window == holder;
    standing.keyed->setStand(
        {has || holder == nullptr ? LayerRole::Height::overlay : LayerRole::Height::top,
         has ? LayerRole::Keyboard::whileItStands : LayerRole::Keyboard::none});
  }
  if (holder != nullptr) {
    scrim_.spread();
  } else {
    scrim_.fold();
  }
  clearScrim();
}

/// The scrim may lie over windows of ours that are on its layer: it leaves them their presses.
void LayerWindows::clearScrim() {
  std::vector<QRect> frames;
  for (const auto& [window, standing] : standing_) {
    if (isLow(window) || window->flags().testFlag(Qt::WindowTransparentForInput)) continue;
    frames.push_back(window->geometry());
  }
  scrim_.leaveOut(frames);
}

/// On the layer below the scrim's, as those are that might have the keyboard while another one has,
/// with what belongs to them.
bool LayerWindows::isLow(QWindow* window) const {
  auto found = standing_.find(window);
  while (found != standing_.end() && found->second.outer != nullptr) {
    found = standing_.find(found->second.outer);
  }
  const auto* const holder = order_.holder();
  return holder != nullptr && found != standing_.end() && found->second.keyed != nullptr &&
         found->first != holder;
}

/// A press beside a menu is the menu's alone. One on a window of ours that is below the scrim is
/// that window's. Else somebody else's window was meant.
bool LayerWindows::pressed(QPoint at) {
  if (openMenu() != nullptr) {
    while (auto* const menu = QApplication::activePopupWidget()) {
      menu->close();
      if (menu->isVisible()) break;
    }
    return true;
  }
  for (const auto& [window, standing] : standing_) {
    if (standing.keyed == nullptr || !window->geometry().contains(at)) continue;
    take(*window);
    return true;
  }
  order_.release();
  return false;
}

void LayerWindows::bringForward(WindowNumber window) const {
  for (const auto& [each, standing] : standing_) {
    if (each->winId() == window) return const_cast<LayerWindows*>(this)->take(*each);
  }
}

void LayerWindows::releaseKeyboard() {
  order_.release();
  shareKeyboard();
}

}  // namespace vantorel
