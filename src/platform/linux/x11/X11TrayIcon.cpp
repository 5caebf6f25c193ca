// SPDX-License-Identifier: MIT
#include "platform/linux/x11/X11TrayIcon.h"

#include <chrono>
#include <utility>

#include "platform/MainQueue.h"

namespace vantorel {

namespace {

// A tray that gives its icons back while it goes on may be turning into another one; one that does
// so at once, every time, gets no more windows than this.
constexpr std::chrono::seconds beforeDockingAgain{1};

}  // namespace

std::unique_ptr<X11TrayIcon> X11TrayIcon::open(Dispatch& dispatch, Handlers handlers,
                                               const std::string& display) {
  auto connection = X11Connection::open(display);
  if (!connection) return nullptr;
  std::unique_ptr<X11TrayIcon> icon(
      new X11TrayIcon(dispatch, std::move(handlers), std::move(connection)));
  if (!icon->painter_.knows(icon->thread_.connection().screen().root_visual)) return nullptr;
  icon->thread_.start(
      [icon = icon.get()](const xcb_generic_event_t& event) { icon->handle(event); }, [] {});
  return icon;
}

X11TrayIcon::X11TrayIcon(Dispatch& dispatch, Handlers handlers,
                         std::unique_ptr<X11Connection> connection)
    : handlers_(std::move(handlers)),
      ask_(onMainQueue(dispatch, life_.guard([this](int side) { deliver(side); }))),
      click_(onMainQueue(dispatch, life_.guard([this](const TrayClick& click) {
        if (handlers_.onClick) handlers_.onClick(click);
      }))),
      missing_(onMainQueue(dispatch, life_.guard([this] {
        if (handlers_.onMissing) handlers_.onMissing();
      }))),
      thread_(std::move(connection), "tray"),
      painter_(thread_.connection()),
      manager_(thread_.connection()) {}

X11TrayIcon::~X11TrayIcon() { thread_.stop(); }

void X11TrayIcon::show(int side) {
  thread_.post([this, side] {
    wishes_ = TrayWindow::Wishes{.side = side};
    update();
    if (!std::exchange(looked_, true) && manager_.facts().window == XCB_WINDOW_NONE) missing_();
  });
}

void X11TrayIcon::hide() {
  thread_.post([this] {
    wishes_.reset();
    update();
  });
}

void X11TrayIcon::pictureChanged() {
  if (delivered_ != 0) deliver(delivered_);
}

void X11TrayIcon::setTitle(std::string title) {
  thread_.post([this, title = std::move(title)] {
    title_ = title;
    if (window_) window_->setTitle(title_);
  });
}

bool X11TrayIcon::isUnderPointer() {
  bool isThere = false;
  const bool ran =
      thread_.runAndWait([&] { isThere = thread_.catchUp() && window_ && window_->hasPointer(); });
  return ran && isThere;
}

void X11TrayIcon::deliver(int side) {
  delivered_ = side;
  auto picture = handlers_.picture ? handlers_.picture(side) : nullptr;
  thread_.post([this, picture = std::move(picture)] { take(picture); });
}

void X11TrayIcon::handle(const xcb_generic_event_t& event) {
  const auto news = manager_.handle(event);
  // A tray that says twice that it is there still has what it took in.
  const bool knowsUs = news == TrayManager::News::announced && window_ && window_->isEmbedded();
  if (news != TrayManager::News::none && !knowsUs) {
    window_ = nullptr;
    thread_.cancel(std::exchange(retry_, 0));
  }
  if (window_) window_->handle(event);
  update();
}

void X11TrayIcon::update() {
  if (window_ && window_->isGone()) {
    window_ = nullptr;
    dockAgainLater();
  }
  if (!wishes_ || manager_.facts().window == XCB_WINDOW_NONE) {
    window_ = nullptr;
    return;
  }
  if (!window_ && retry_ == 0) {
    window_ = std::make_unique<TrayWindow>(
        thread_.connection(), painter_, manager_,
        TrayWindow::Wishes{.side = wishes_->side, .title = title_}, click_);
  }
  if (!window_ || !window_->isEmbedded()) return;
  const int side = window_->pictureSide();
  const bool fits = picture_ && picture_->pixelSize.width == side;
  if (side != 0 && !fits && question_ == Question::none) {
    question_ = Question::asked;
    ask_(side);
  }
  if (window_->takeDamage()) window_->paint(picture_);
}

void X11TrayIcon::dockAgainLater() {
  if (retry_ != 0) return;
  retry_ = thread_.after(beforeDockingAgain, [this] {
    retry_ = 0;
    update();
  });
}

void X11TrayIcon::take(SharedBitmap picture) {
  picture_ = std::move(picture);
  question_ = Question::none;
  if (!picture_ || !window_ || !window_->isEmbedded()) return;
  window_->paint(picture_);
  update();
}

}  // namespace vantorel
