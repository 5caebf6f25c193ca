// SPDX-License-Identifier: MIT
#include "platform/linux/wayland/WaylandThread.h"

#include <poll.h>
#include <pthread.h>

#include <algorithm>
#include <csignal>
#include <vector>

namespace vantorel {

WaylandThread::WaylandThread(std::unique_ptr<WaylandConnection> connection, std::string name)
    : connection_(std::move(connection)), name_(std::move(name)) {
  name_.resize(std::min<std::size_t>(name_.size(), 15));
}

WaylandThread::~WaylandThread() { stop(); }

void WaylandThread::start(Work onLost) {
  onLost_ = std::move(onLost);
  // The process's signals are the main thread's; a reader that ends while it is written to must
  // show as a closed pipe, not as SIGPIPE. A new thread inherits the mask of its maker.
  sigset_t all;
  sigset_t previous;
  sigfillset(&all);
  pthread_sigmask(SIG_SETMASK, &all, &previous);
  thread_ = std::thread([this] { run(); });
  pthread_sigmask(SIG_SETMASK, &previous, nullptr);
  pthread_setname_np(thread_.native_handle(), name_.c_str());
}

void WaylandThread::stop() {
  line_.stop();
  if (thread_.joinable()) thread_.join();
}

void WaylandThread::watch(int descriptor, short events, Work ready) {
  watched_[descriptor] = {events, std::make_shared<const Work>(std::move(ready))};
}

void WaylandThread::run() {
  while (line_.run()) {
    if (compositor_ == Compositor::reachable && !connection_->handleArrived()) {
      compositor_ = Compositor::lost;
      onLost_();
    }
    sleep();
  }
}

void WaylandThread::sleep() {
  const auto display = static_cast<short>(connection_->hasUnsent() ? POLLIN | POLLOUT : POLLIN);
  std::vector<pollfd> descriptors{
      pollfd{line_.descriptor(), POLLIN, 0},
      // A negative descriptor is left out.
      pollfd{compositor_ == Compositor::lost ? -1 : connection_->fileDescriptor(), display, 0}};
  for (const auto& [descriptor, each] : watched_) {
    descriptors.push_back({descriptor, each.events, 0});
  }
  poll(descriptors.data(), descriptors.size(), line_.sleepMilliseconds());
  line_.wokenUp();
  for (auto each = descriptors.begin() + 2; each != descriptors.end(); ++each) {
    if (each->revents == 0) continue;
    // One that ran before it may have ended the watching.
    const auto found = watched_.find(each->fd);
    if (found == watched_.end()) continue;
    const auto ready = found->second.ready;
    (*ready)();
  }
}

}  // namespace vantorel
