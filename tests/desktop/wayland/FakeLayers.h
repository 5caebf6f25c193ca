// SPDX-License-Identifier: MIT
#pragma once

#include <cstddef>
#include <cstdint>
#include <map>
#include <vector>

#include "desktop/wayland/FakeCompositor.h"

namespace vantorel {

/// The part of a fake compositor that lets clients have surfaces on layers, on an output of 800 x
/// 600 points, with a mouse and a finger for them. Nothing is ever drawn.
class FakeLayers {
 public:
  /// Before a client connects. The compositor dies before this ends.
  explicit FakeLayers(FakeCompositor& compositor);
  ~FakeLayers() = default;
  FakeLayers(const FakeLayers&) = delete;
  FakeLayers& operator=(const FakeLayers&) = delete;

  /// closing: every surface on a layer at once, instead of telling its size.
  enum class Manner { obliging, closing };
  void behave(Manner manner);

  /// As when the output goes.
  void closeAll();
  /// How many surfaces are on layers.
  [[nodiscard]] std::size_t count();

  // What the user does on the one that came first.
  [[nodiscard]] bool takesPressesAt(int x, int y);
  void point(int x, int y);
  void press(std::uint32_t button, bool isDown);
  void touch(int x, int y);

 private:
  struct Protocols;
  struct Change {
    bool isAdded = false;
    int left = 0, top = 0, right = 0, bottom = 0;
  };
  using Region = std::vector<Change>;  // in the order in which they were made
  struct Surface {
    Region taken = {{true, 0, 0, 1 << 24, 1 << 24}};
    Region takenNext = taken;
    wl_resource* role = nullptr;  // of a surface on a layer
    bool isTold = false;          // its size, or that it is closed
  };
  [[nodiscard]] wl_resource* first() const;
  void commit(wl_resource* surface);

  FakeCompositor& compositor_;
  // On the compositor's thread.
  Manner manner_ = Manner::obliging;
  std::map<wl_resource*, Surface> surfaces_;
  std::map<wl_resource*, Region> regions_;
  std::vector<wl_resource*> layered_;  // surfaces, in the order in which they came
};

}  // namespace vantorel
