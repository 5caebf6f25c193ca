// SPDX-License-Identifier: MIT
#pragma once

#include <map>
#include <optional>
#include <string>

#include "program/wayland/Compositor.h"

struct ext_data_control_device_v1;
struct ext_data_control_manager_v1;
struct ext_data_control_source_v1;

namespace vantorel::bench {

/// Owns the clipboard and serves one type. It notes when its contents were first asked for and when
/// they were handed over.
class SelectionOwner {
 public:
  explicit SelectionOwner(Compositor& compositor);
  ~SelectionOwner();
  SelectionOwner(const SelectionOwner&) = delete;
  SelectionOwner& operator=(const SelectionOwner&) = delete;

  /// Takes the clipboard with new contents and answers the moment before it did.
  Clock::time_point own(const char* type, std::string contents);

  [[nodiscard]] std::optional<Clock::time_point> asked() const { return asked_; }
  [[nodiscard]] std::optional<Clock::time_point> served() const { return served_; }

 private:
  struct Listeners;
  void serve(ext_data_control_source_v1* source, int pipe);

  Compositor& compositor_;
  ext_data_control_manager_v1* manager_;
  ext_data_control_device_v1* device_;
  std::map<ext_data_control_source_v1*, std::string> sources_;
  std::optional<Clock::time_point> asked_;
  std::optional<Clock::time_point> served_;
};

}  // namespace vantorel::bench
