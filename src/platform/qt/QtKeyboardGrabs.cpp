#include "platform/qt/QtKeyboardGrabs.h"

#include <QGuiApplication>
#include <QPointer>
#include <QWindow>

namespace vantorel {
namespace {

/// The grab itself ends with the window; a window that is still there has to be told.
class QtKeyboardGrab : public Observation {
 public:
  explicit QtKeyboardGrab(QWindow& window) : window_(&window) {}
  ~QtKeyboardGrab() override {
    if (window_ && window_->handle() != nullptr) window_->setKeyboardGrabEnabled(false);
  }
  QtKeyboardGrab(const QtKeyboardGrab&) = delete;
  QtKeyboardGrab& operator=(const QtKeyboardGrab&) = delete;

 private:
  QPointer<QWindow> window_;
};

}  // namespace

std::unique_ptr<Observation> QtKeyboardGrabs::grabKeyboard(WindowNumber window) {
  const auto windows = QGuiApplication::allWindows();
  for (auto* each : windows) {
    // A window without a handle would be given one by being asked for its number.
    if (each->handle() == nullptr || each->winId() != window) continue;
    if (!each->setKeyboardGrabEnabled(true)) return nullptr;
    return std::make_unique<QtKeyboardGrab>(*each);
  }
  return nullptr;
}

}  // namespace vantorel
