// SPDX-License-Identifier: MIT
#pragma once

#include <cstdint>
#include <optional>
#include <vector>

#include "program/Timing.h"

namespace vantorel::bench {

/// Pictures in the order in which they were seen, 32 bits a pixel, each with its moment.
class Paintings {
 public:
  using Pixels = std::vector<std::uint32_t>;

  /// How many pixels may differ between two pictures that are the same to the eye: a blinking caret
  /// or the end of a fade does not make a picture unfinished.
  explicit Paintings(std::size_t tolerated) : tolerated_(tolerated) {}

  void add(Clock::time_point moment, Pixels pixels) { all_.push_back({moment, std::move(pixels)}); }
  [[nodiscard]] bool isEmpty() const { return all_.empty(); }
  [[nodiscard]] const Pixels& last() const { return all_.back().pixels; }
  /// When the first one was seen that is the same as this to the eye.
  [[nodiscard]] std::optional<Clock::time_point> firstLike(const Pixels& pixels) const;
  [[nodiscard]] bool isSame(const Pixels& one, const Pixels& other) const;

 private:
  struct Painting {
    Clock::time_point moment;
    Pixels pixels;
  };

  std::size_t tolerated_;
  std::vector<Painting> all_;
};

}  // namespace vantorel::bench
