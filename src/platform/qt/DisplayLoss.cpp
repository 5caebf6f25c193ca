// SPDX-License-Identifier: MIT
#include "platform/qt/DisplayLoss.h"

#include <QCoreApplication>
#include <QString>
#include <QThread>
#include <chrono>
#include <condition_variable>
#include <mutex>
#include <utility>

namespace vantorel {

/// Held by the threads that wait, too: the program may end while they do.
struct DisplayLoss::State {
  QtMessageHandler printer = nullptr;
  std::function<void()> lastWord;  // on the main thread
  std::mutex mutex;
  std::condition_variable changed;
  bool isSaid = false;

  /// Nothing when it is being said, from within which the toolkit may complain again.
  void say() {
    const auto word = std::exchange(lastWord, nullptr);
    if (!word) return;
    word();
    letGo();
  }

  void letGo() {
    {
      const std::lock_guard lock(mutex);
      isSaid = true;
    }
    changed.notify_all();
  }
};

namespace {

constexpr std::chrono::seconds patience{10};

std::mutex currentMutex;
std::function<void(QtMsgType, const QMessageLogContext&, const QString&)> current;

/// The toolkit's words, for a compositor that died or refused what it was sent, and for a server.
bool isTheEnd(const QString& message) {
  return message.startsWith(QLatin1String("The Wayland connection broke")) ||
         message.startsWith(QLatin1String("The Wayland connection experienced a fatal error")) ||
         message.startsWith(QLatin1String("The X11 connection broke"));
}

void heard(QtMsgType type, const QMessageLogContext& context, const QString& message) {
  std::unique_lock lock(currentMutex);
  const auto hears = current;
  lock.unlock();
  if (hears) hears(type, context, message);
}

}  // namespace

DisplayLoss::DisplayLoss(std::function<void()> lastWord) : state_(std::make_shared<State>()) {
  state_->lastWord = std::move(lastWord);
  state_->printer = qInstallMessageHandler(heard);
  const std::lock_guard lock(currentMutex);
  current = [state = state_](QtMsgType type, const QMessageLogContext& context,
                             const QString& message) {
    state->printer(type, context, message);
    auto* application = QCoreApplication::instance();
    if (type != QtWarningMsg || !isTheEnd(message) || application == nullptr) return;
    if (application->thread() == QThread::currentThread()) return state->say();
    QMetaObject::invokeMethod(
        application, [state] { state->say(); }, Qt::QueuedConnection);
    std::unique_lock waiting(state->mutex);
    state->changed.wait_for(waiting, patience, [&] { return state->isSaid; });
  };
}

void DisplayLoss::endInOrder() {
  state_->lastWord = nullptr;
  state_->letGo();
}

DisplayLoss::~DisplayLoss() {
  qInstallMessageHandler(state_->printer);
  endInOrder();
  const std::lock_guard lock(currentMutex);
  current = nullptr;
}

}  // namespace vantorel
