// SPDX-License-Identifier: MIT
#pragma once

#include <functional>
#include <memory>
#include <string>
#include <vector>

namespace vantorel {

/// What is seen behind windows.
enum class Ground { plain, blurred, white, black };

/// Something that can be looked at: windows in some state. What `show` answers keeps them on the
/// screen for as long as it lives.
struct Look {
  std::string name;
  std::function<std::shared_ptr<void>()> show;
  Ground ground = Ground::plain;
};

[[nodiscard]] std::vector<Look> panelLooks();
[[nodiscard]] std::vector<Look> panelWindowLooks();  // with a menu, a sheet or a preview beside it
[[nodiscard]] std::vector<Look> windowLooks();       // all other windows
[[nodiscard]] std::vector<Look> chromeLooks();       // what windows are made of

[[nodiscard]] std::vector<Look> allLooks();

}  // namespace vantorel
