// SPDX-License-Identifier: MIT
#pragma once

#include <QObject>
#include <map>
#include <memory>

#include "platform/WindowSpaces.h"
#include "platform/linux/wayland/toolkit/KeyboardOrder.h"
#include "platform/linux/wayland/toolkit/LayerScrim.h"
#include "platform/linux/wayland/toolkit/SurfaceRole.h"

class QWindow;

namespace vantorel {

class LayerRole;

/// Has every window of this program stand where it was put, above those of other programs, and
/// gives one of them the keyboard: the toolkit would leave all that to the compositor. A window
/// needs to know nothing of it. Menus, tool tips and shadows belong to the window that they are
/// transient for; the others stand for themselves. Main thread; needs the application object.
class LayerWindows : public QObject, public WindowSpaces {
  Q_OBJECT

 public:
  /// To be called before the application object is made: has the toolkit leave windows alone.
  static void prepareEnvironment();

  /// Both outlive this, and every window is gone before.
  LayerWindows(ToolkitCompositor& compositor, LayerScrim& scrim);
  ~LayerWindows() override;
  LayerWindows(const LayerWindows&) = delete;
  LayerWindows& operator=(const LayerWindows&) = delete;

  /// These windows are on every workspace by their kind.
  void joinAll(WindowNumber /*window*/) const override {}
  void bringForward(WindowNumber window) const override;

  /// Whether the compositor has dealt with the end of every window that took keys and is hidden.
  [[nodiscard]] bool haveLeft() const { return leaving_ == 0; }
  /// Another program is about to get the keyboard: none of ours may hold it.
  void releaseKeyboard();

 protected:
  bool eventFilter(QObject* watched, QEvent* event) override;

 private slots:
  void visibilityChanged(bool isVisible);

 private:
  struct Standing {
    std::unique_ptr<SurfaceRole> role;
    QWindow* outer = nullptr;    // the window that it belongs to; null: it stands for itself
    LayerRole* keyed = nullptr;  // the role, of a window that takes keys
  };

  void aboutToShow(QWindow& window);
  [[nodiscard]] bool stand(QWindow& window);
  void vanish(QWindow* window);
  void follow(QWindow& window);
  void take(QWindow& window);
  void shareKeyboard();
  void clearScrim();
  [[nodiscard]] bool isLow(QWindow* window) const;
  [[nodiscard]] bool pressed(QPoint at);

  ToolkitCompositor& compositor_;
  LayerScrim& scrim_;
  std::map<QWindow*, Standing> standing_;  // the windows that are seen
  KeyboardOrder order_;                    // of those that take keys
  int leaving_ = 0;                        // of those, hidden and not yet dealt with
};

}  // namespace vantorel
