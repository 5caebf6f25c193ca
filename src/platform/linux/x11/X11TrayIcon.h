// SPDX-License-Identifier: MIT
#pragma once

#include <functional>
#include <memory>
#include <optional>
#include <string>

#include "base/Lifetime.h"
#include "platform/Dispatch.h"
#include "platform/linux/x11/TrayManager.h"
#include "platform/linux/x11/TrayPainter.h"
#include "platform/linux/x11/TrayWindow.h"
#include "platform/linux/x11/X11Thread.h"

namespace vantorel {

/// An icon in the trays that take a window of each program in: in the one that is there, and in
/// each that comes later.
///
/// On a connection and a thread of its own: a tray draws again and asks for new sizes at any time,
/// and an icon that answers only when the main thread has nothing else to do is a hole in somebody
/// else's panel. A tray may also do to a window that it was given whatever it likes, the end of the
/// client that made it included; that is then this connection, and no window of the program.
class X11TrayIcon {
 public:
  /// Called on the main queue.
  struct Handlers {
    /// The template's shape, as a square of so many pixels. May be null.
    std::function<SharedBitmap(int side)> picture;
    std::function<void(const TrayClick&)> onClick;
    /// There is no such tray. Told once, after the first `show`; one may still come.
    std::function<void()> onMissing = {};
  };

  /// `dispatch` outlives the result. Null without an X server that can draw it. Main thread, as is
  /// all below.
  [[nodiscard]] static std::unique_ptr<X11TrayIcon> open(Dispatch& dispatch, Handlers handlers,
                                                         const std::string& display = {});
  ~X11TrayIcon();
  X11TrayIcon(const X11TrayIcon&) = delete;
  X11TrayIcon& operator=(const X11TrayIcon&) = delete;

  /// `side`, in pixels, is what the icon measures where the tray leaves that to it.
  void show(int side);
  void hide();
  /// `Handlers::picture` answers another one now.
  void pictureChanged();
  void setTitle(std::string title);
  /// Whether the pointer is on the icon. Waits for the server.
  [[nodiscard]] bool isUnderPointer();

 private:
  X11TrayIcon(Dispatch& dispatch, Handlers handlers, std::unique_ptr<X11Connection> connection);
  void deliver(int side);

  // On the thread.
  void handle(const xcb_generic_event_t& event);
  /// Has a window in the tray that is there, as far as one is wanted, with the picture in it.
  void update();
  void dockAgainLater();
  void take(SharedBitmap picture);

  Handlers handlers_;
  int delivered_ = 0;  // the side that was asked for last; 0 for none yet
  Lifetime life_;      // before the thread, which gets guarded callbacks
  std::function<void(int)> ask_;
  std::function<void(TrayClick)> click_;
  std::function<void()> missing_;
  X11Thread thread_;
  TrayPainter painter_;

  // On the thread.
  TrayManager manager_;
  std::optional<TrayWindow::Wishes> wishes_;  // absent while hidden
  bool looked_ = false;                       // for a tray, since something was shown
  std::string title_;
  std::unique_ptr<TrayWindow> window_;
  SharedBitmap picture_;
  enum class Question { none, asked } question_ = Question::none;  // to the main thread
  X11Thread::TimerId retry_ = 0;
};

}  // namespace vantorel
