// SPDX-License-Identifier: MIT
#include "platform/qt/QtDispatch.h"

#include <QCoreApplication>
#include <QEvent>
#include <QTimer>
#include <deque>
#include <mutex>
#include <optional>
#include <utility>

#include "base/DetachedThread.h"
#include "platform/posix/ThreadedQueue.h"

namespace vantorel {
namespace {

const QEvent::Type runWork = static_cast<QEvent::Type>(QEvent::registerEventType());

// Below this a timer's lateness is felt; above it the system may round to save wake-ups.
constexpr Seconds precise{0.3};

class QtTimer : public Timer {
 public:
  QtTimer(Seconds interval, bool repeats, Work due) : work_(std::move(due)) {
    timer_.setSingleShot(!repeats);
    timer_.setTimerType(interval < precise ? Qt::PreciseTimer : Qt::CoarseTimer);
    timer_.setInterval(std::chrono::ceil<std::chrono::milliseconds>(interval));
    // The work may destroy this timer, and itself with it, so a copy runs.
    QObject::connect(&timer_, &QTimer::timeout, &timer_, [this] {
      const Work work = work_;
      work();
    });
    timer_.start();
  }
  void invalidate() override { timer_.stop(); }

 private:
  Work work_;
  QTimer timer_;
};

}  // namespace

// One event is under way for any number of pieces of work. A turn runs what was queued before it
// began, so that work which queues more work leaves room for input and painting in between. Pieces
// leave the queue one by one: when one of them lets the loop turn, in a menu or a drag, the others
// go on there.
class QtDispatch::MainQueue : public QObject {
 public:
  void add(Work work) {
    {
      const std::lock_guard lock(mutex_);
      work_.push_back(std::move(work));
      if (std::exchange(eventIsPosted_, true)) return;
    }
    QCoreApplication::postEvent(this, new QEvent(runWork));
  }

  bool event(QEvent* event) override {
    if (event->type() != runWork) return QObject::event(event);
    std::size_t count = 0;
    {
      const std::lock_guard lock(mutex_);
      eventIsPosted_ = false;
      count = work_.size();
    }
    for (; count > 0; --count) {
      if (const auto work = next()) (*work)();
    }
    return true;
  }

 private:
  std::optional<Work> next() {
    const std::lock_guard lock(mutex_);
    if (work_.empty()) return std::nullopt;
    std::optional<Work> work(std::move(work_.front()));
    work_.pop_front();
    return work;
  }

  std::mutex mutex_;
  std::deque<Work> work_;       // guarded
  bool eventIsPosted_ = false;  // guarded
};

QtDispatch::QtDispatch() : mainQueue_(std::make_unique<MainQueue>()) {}

QtDispatch::~QtDispatch() = default;

Date QtDispatch::now() const {
  return std::chrono::time_point_cast<Date::duration>(std::chrono::system_clock::now());
}

void QtDispatch::async(Work work) { mainQueue_->add(std::move(work)); }

std::unique_ptr<Timer> QtDispatch::after(Seconds delay, Work work) {
  return std::make_unique<QtTimer>(delay, false, std::move(work));
}

std::unique_ptr<Timer> QtDispatch::every(Seconds interval, Work work) {
  return std::make_unique<QtTimer>(interval, true, std::move(work));
}

void QtDispatch::detach(Work work) {
  // Without a thread it is as if the work never came back.
  static_cast<void>(runDetached("probe", std::move(work)));
}

std::unique_ptr<SerialQueue> QtDispatch::serialQueue(const std::string& label) {
  return std::make_unique<ThreadedQueue>(label);
}

}  // namespace vantorel
