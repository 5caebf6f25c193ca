#include "platform/linux/x11/X11Thread.h"

#include <poll.h>
#include <pthread.h>
#include <sys/eventfd.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <climits>
#include <csignal>
#include <future>
#include <utility>

namespace vantorel {

namespace {

// Events handled in one turn, so that a flood of them keeps neither posted work nor timers waiting.
constexpr int eventsInOneTurn = 256;

}  // namespace

X11Thread::X11Thread(std::unique_ptr<X11Connection> connection, std::string name)
    : connection_(std::move(connection)),
      name_(std::move(name)),
      wakeUp_(eventfd(0, EFD_CLOEXEC | EFD_NONBLOCK)) {
  name_.resize(std::min<std::size_t>(name_.size(), 15));
}

X11Thread::~X11Thread() { stop(); }

void X11Thread::start(EventHandler onEvent, Work onLost) {
  onEvent_ = std::move(onEvent);
  onLost_ = std::move(onLost);
  // The process's signals are the main thread's; a server that dies while it is written to must
  // show as a lost connection, not as SIGPIPE. A new thread inherits the mask of its maker.
  sigset_t all;
  sigset_t previous;
  sigfillset(&all);
  pthread_sigmask(SIG_SETMASK, &all, &previous);
  thread_ = std::thread([this] { run(); });
  pthread_sigmask(SIG_SETMASK, &previous, nullptr);
  pthread_setname_np(thread_.native_handle(), name_.c_str());
}

void X11Thread::stop() {
  std::vector<Work> dropped;
  {
    const std::lock_guard lock(mutex_);
    state_ = State::stopping;
    dropped.swap(posted_);
  }
  wake();
  if (thread_.joinable()) thread_.join();
}

bool X11Thread::post(Work work) {
  {
    const std::lock_guard lock(mutex_);
    if (state_ == State::stopping) return false;
    posted_.push_back(std::move(work));
    if (posted_.size() > 1) return true;  // woken already
  }
  wake();
  return true;
}

bool X11Thread::runAndWait(const Work& work) {
  bool ran = false;
  auto promise = std::make_shared<std::promise<void>>();
  const auto settled = promise->get_future();
  post([&, promise = std::move(promise)] {
    work();
    ran = true;
    promise->set_value();
  });
  // Ends too when the work is dropped unrun, and the promise with it.
  settled.wait();
  return ran;
}

X11Thread::TimerId X11Thread::after(Clock::duration delay, Work work) {
  const TimerId id = ++lastTimer_;
  timers_.emplace(Clock::now() + delay, PendingTimer{id, std::move(work)});
  return id;
}

void X11Thread::cancel(TimerId timer) {
  const auto found = std::find_if(timers_.begin(), timers_.end(),
                                  [timer](const auto& entry) { return entry.second.id == timer; });
  if (found != timers_.end()) timers_.erase(found);
}

void X11Thread::handleArrivedEvents() { handleEvents(INT_MAX); }

bool X11Thread::catchUp() {
  // Any answer will do: whatever happened has come before it.
  const auto answer =
      connection_->reply(xcb_get_input_focus_reply, xcb_get_input_focus(connection_->xcb()));
  handleArrivedEvents();
  return answer != nullptr;
}

void X11Thread::run() {
  for (;;) {
    runPosted();
    {
      const std::lock_guard lock(mutex_);
      if (state_ == State::stopping) return;
    }
    runDueTimers();
    bool more = handleEvents(eventsInOneTurn);
    // Flushing may read events into the library's own queue, where poll() does not see them.
    connection_->flush();
    more = more || handleEvents(1);
    noticeLoss();
    sleep(more);
  }
}

void X11Thread::runPosted() {
  std::vector<Work> batch;
  {
    const std::lock_guard lock(mutex_);
    batch.swap(posted_);
  }
  for (auto& work : batch) {
    work();
    work = nullptr;
  }
}

void X11Thread::runDueTimers() {
  const auto now = Clock::now();
  while (!timers_.empty() && timers_.begin()->first <= now) {
    const Work work = std::move(timers_.begin()->second.work);
    timers_.erase(timers_.begin());
    work();
  }
}

bool X11Thread::handleEvents(int maximum) {
  for (int count = 0; count < maximum; ++count) {
    const X11Reply<xcb_generic_event_t> event(xcb_poll_for_event(connection_->xcb()));
    if (!event) return false;
    onEvent_(*event);
  }
  return true;
}

void X11Thread::noticeLoss() {
  if (server_ == Server::lost || !connection_->broken()) return;
  server_ = Server::lost;
  onLost_();
}

int X11Thread::sleepMilliseconds() const {
  if (timers_.empty()) return -1;
  const auto left = timers_.begin()->first - Clock::now();
  const auto rounded = std::chrono::ceil<std::chrono::milliseconds>(left).count();
  return static_cast<int>(std::clamp<std::int64_t>(rounded, 0, INT_MAX));
}

void X11Thread::sleep(bool moreEvents) {
  std::array<pollfd, 2> descriptors{
      pollfd{wakeUp_.get(), POLLIN, 0},
      // A negative descriptor is left out.
      pollfd{server_ == Server::lost ? -1 : connection_->fileDescriptor(), POLLIN, 0}};
  poll(descriptors.data(), descriptors.size(), moreEvents ? 0 : sleepMilliseconds());
  std::uint64_t count = 0;
  // Empties the counter; there is nothing to do about a counter that was empty.
  if (read(wakeUp_.get(), &count, sizeof count) < 0) return;
}

void X11Thread::wake() const {
  const std::uint64_t one = 1;
  // Fails only when the counter is full, and then the thread is awake.
  if (write(wakeUp_.get(), &one, sizeof one) < 0) return;
}

}  // namespace vantorel
