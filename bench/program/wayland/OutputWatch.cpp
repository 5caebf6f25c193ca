// SPDX-License-Identifier: MIT
#include "program/wayland/OutputWatch.h"

#include <screencopy-client.h>
#include <sys/mman.h>
#include <unistd.h>
#include <wayland-client.h>

#include <stdexcept>

namespace vantorel::bench {

namespace {

constexpr auto quietTime = std::chrono::milliseconds(150);
constexpr auto longestWait = std::chrono::seconds(5);
// Of the whole output: a caret of a high line.
constexpr std::size_t toleratedPixels = 100;
constexpr std::uint32_t version = 2;  // from which changes can be awaited

}  // namespace

/// What the compositor calls.
struct OutputWatch::Listeners {
  using Frame = zwlr_screencopy_frame_v1;
  static OutputWatch& of(void* self) { return *static_cast<OutputWatch*>(self); }

  static constexpr zwlr_screencopy_frame_v1_listener frame{
      .buffer =
          [](void* self, Frame* frame, std::uint32_t format, std::uint32_t width,
             std::uint32_t height, std::uint32_t stride) {
            of(self).prepare(format, width, height, stride);
            if (of(self).await_ == Await::change) {
              zwlr_screencopy_frame_v1_copy_with_damage(frame, of(self).buffer_);
            } else {
              zwlr_screencopy_frame_v1_copy(frame, of(self).buffer_);
            }
          },
      .flags = [](void* /*self*/, Frame* /*frame*/, std::uint32_t /*flags*/) {},
      .ready =
          [](void* self, Frame* /*frame*/, std::uint32_t high, std::uint32_t low,
             std::uint32_t nanoseconds) {
            const auto seconds = (std::uint64_t{high} << 32U) | low;
            of(self).ready_ = Clock::time_point(std::chrono::seconds(seconds) +
                                                std::chrono::nanoseconds(nanoseconds));
          },
      .failed = [](void* self, Frame* /*frame*/) { of(self).hasFailed_ = true; },
      .damage = [](void* /*self*/, Frame* /*frame*/, std::uint32_t, std::uint32_t, std::uint32_t,
                   std::uint32_t) {}};
};

OutputWatch::OutputWatch(Compositor& compositor)
    : compositor_(compositor),
      manager_(compositor.bind<zwlr_screencopy_manager_v1>(zwlr_screencopy_manager_v1_interface,
                                                           version)) {}

OutputWatch::~OutputWatch() {
  drop();
  if (buffer_ != nullptr) wl_buffer_destroy(buffer_);
  if (pixels_ != nullptr) munmap(const_cast<std::uint32_t*>(pixels_), size_);
  wl_proxy_destroy(reinterpret_cast<wl_proxy*>(manager_));
}

void OutputWatch::prepare(std::uint32_t format, std::uint32_t width, std::uint32_t height,
                          std::uint32_t stride) {
  if (buffer_ != nullptr) return;
  size_ = std::size_t{stride} * height;
  const int file = memfd_create("picture", MFD_CLOEXEC);
  if (ftruncate(file, static_cast<off_t>(size_)) != 0) {
    throw std::runtime_error("no memory for a picture");
  }
  auto* const place = mmap(nullptr, size_, PROT_READ, MAP_SHARED, file, 0);
  if (place == MAP_FAILED) throw std::runtime_error("no memory for a picture");
  pixels_ = static_cast<const std::uint32_t*>(place);
  auto* const pool = wl_shm_create_pool(compositor_.memory(), file, static_cast<int>(size_));
  buffer_ = wl_shm_pool_create_buffer(pool, 0, static_cast<int>(width), static_cast<int>(height),
                                      static_cast<int>(stride), format);
  wl_shm_pool_destroy(pool);
  close(file);
}

void OutputWatch::ask(Await await) {
  drop();
  ready_.reset();
  await_ = await;
  frame_ = zwlr_screencopy_manager_v1_capture_output(manager_, 0, compositor_.output());
  zwlr_screencopy_frame_v1_add_listener(frame_, &Listeners::frame, this);
}

void OutputWatch::drop() {
  if (frame_ != nullptr) zwlr_screencopy_frame_v1_destroy(frame_);
  frame_ = nullptr;
}

Paintings::Pixels OutputWatch::takePicture() {
  if (hasFailed_) throw std::runtime_error("the compositor gives no pictures");
  return {pixels_, pixels_ + size_ / sizeof(std::uint32_t)};
}

double OutputWatch::measure(const std::function<Clock::time_point()>& act) {
  ask(Await::anyPicture);
  compositor_.listenUntil("a picture", [this] { return ready_ || hasFailed_; });
  auto before = takePicture();
  // The first change that is asked for may be an older one, at once.
  while (ready_) {
    before = takePicture();
    ask(Await::change);
    const auto deadline = Clock::now() + quietTime;
    while (!ready_ && !hasFailed_ && Clock::now() < deadline) compositor_.listen(deadline);
  }
  Paintings paintings(toleratedPixels);
  const auto beginning = act();
  auto deadline = beginning + longestWait;
  while (Clock::now() < deadline) {
    if (!compositor_.listen(deadline) || (!ready_ && !hasFailed_)) continue;
    auto pixels = takePicture();
    const auto moment = *ready_;
    ask(Await::change);
    // What was still on its way when this began is not of it.
    if (paintings.isEmpty() && paintings.isSame(pixels, before)) continue;
    paintings.add(moment, std::move(pixels));
    deadline = Clock::now() + quietTime;
  }
  drop();
  if (paintings.isEmpty() || paintings.isSame(paintings.last(), before)) {
    throw std::runtime_error("nothing was painted");
  }
  return milliseconds(*paintings.firstLike(paintings.last()) - beginning);
}

}  // namespace vantorel::bench
