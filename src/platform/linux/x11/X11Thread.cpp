// SPDX-License-Identifier: MIT
#include "platform/linux/x11/X11Thread.h"

#include <poll.h>
#include <pthread.h>

#include <algorithm>
#include <array>
#include <climits>
#include <csignal>
#include <utility>

namespace vantorel {

namespace {

// Events handled in one turn, so that a flood of them keeps neither posted work nor timers waiting.
constexpr int eventsInOneTurn = 256;

}  // namespace

X11Thread::X11Thread(std::unique_ptr<X11Connection> connection, std::string name)
    : connection_(std::move(connection)), name_(std::move(name)) {
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
  line_.stop();
  if (thread_.joinable()) thread_.join();
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
  while (line_.run()) {
    bool more = handleEvents(eventsInOneTurn);
    // Flushing may read events into the library's own queue, where poll() does not see them.
    connection_->flush();
    more = more || handleEvents(1);
    noticeLoss();
    sleep(more);
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

void X11Thread::sleep(bool moreEvents) {
  std::array<pollfd, 2> descriptors{
      pollfd{line_.descriptor(), POLLIN, 0},
      // A negative descriptor is left out.
      pollfd{server_ == Server::lost ? -1 : connection_->fileDescriptor(), POLLIN, 0}};
  poll(descriptors.data(), descriptors.size(), moreEvents ? 0 : line_.sleepMilliseconds());
  line_.wokenUp();
}

}  // namespace vantorel
