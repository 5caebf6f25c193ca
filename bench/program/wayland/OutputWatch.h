// SPDX-License-Identifier: MIT
#pragma once

#include <cstdint>
#include <functional>
#include <optional>

#include "program/Paintings.h"
#include "program/wayland/Compositor.h"

struct wl_buffer;
struct zwlr_screencopy_frame_v1;
struct zwlr_screencopy_manager_v1;

namespace vantorel::bench {

/// Tells when an output showed what it was to show. It has the compositor give it every picture
/// that is not like the one before, waits until nothing changes any more, and answers the moment
/// at which the compositor finished the first one that was like the last. That is late by the wait
/// for the output's next frame, and never early.
class OutputWatch {
 public:
  explicit OutputWatch(Compositor& compositor);
  ~OutputWatch();
  OutputWatch(const OutputWatch&) = delete;
  OutputWatch& operator=(const OutputWatch&) = delete;

  /// Runs `act`, which answers the moment that counts as the beginning, and answers the
  /// milliseconds from then until the final picture. Throws when nothing was painted within 5 s.
  double measure(const std::function<Clock::time_point()>& act);

 private:
  struct Listeners;
  enum class Await { anyPicture, change };

  void ask(Await await);
  void drop();
  void prepare(std::uint32_t format, std::uint32_t width, std::uint32_t height,
               std::uint32_t stride);
  [[nodiscard]] Paintings::Pixels takePicture();

  Compositor& compositor_;
  zwlr_screencopy_manager_v1* manager_;
  zwlr_screencopy_frame_v1* frame_ = nullptr;
  Await await_ = Await::anyPicture;
  wl_buffer* buffer_ = nullptr;
  const std::uint32_t* pixels_ = nullptr;  // of the buffer
  std::size_t size_ = 0;                   // of those, in bytes
  std::optional<Clock::time_point> ready_;
  bool hasFailed_ = false;
};

}  // namespace vantorel::bench
