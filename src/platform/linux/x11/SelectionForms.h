// SPDX-License-Identifier: MIT
#pragma once

#include "platform/linux/windows/OwnerForms.h"
#include "platform/linux/x11/SelectionReader.h"

namespace vantorel {

/// The owner of an X11 selection, asked by conversions.
class SelectionForms : public OwnerForms {
 public:
  /// `reader` and `connection` outlive this. `time` is when the owner took the selection.
  SelectionForms(SelectionReader& reader, X11Connection& connection, xcb_atom_t selection,
                 xcb_timestamp_t time)
      : reader_(reader), connection_(connection), selection_(selection), time_(time) {}

  void readTargets(
      std::function<void(std::optional<std::vector<std::string>>)> completion) override;
  void read(const std::string& target, std::function<void(Answer)> completion) override;

 private:
  [[nodiscard]] std::string typeOf(const X11Property& property) const;

  SelectionReader& reader_;
  X11Connection& connection_;
  xcb_atom_t selection_;
  xcb_timestamp_t time_;
};

}  // namespace vantorel
