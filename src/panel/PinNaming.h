// SPDX-License-Identifier: MIT
#pragma once

#include <functional>
#include <memory>

#include "chrome/ChromeServices.h"
#include "store/ClipStore.h"

class QWidget;

namespace vantorel {

class SheetWindow;

/// Asks for the name of a pinned entry, on a sheet over the panel. Main thread.
class PinNaming {
 public:
  /// All outlive this.
  PinNaming(ClipStore& store, const ChromeServices& services, QWidget& panel);
  ~PinNaming();
  PinNaming(const PinNaming&) = delete;
  PinNaming& operator=(const PinNaming&) = delete;

  /// The user has answered with a name, which the store has, or without one.
  std::function<void(Uuid id)> onNamed;

  /// Nothing for what is no pin, or while the sheet is open.
  void begin(Uuid id);
  void cancel();
  [[nodiscard]] bool isUnderWay() const { return sheet_ != nullptr; }

 private:
  ClipStore& store_;
  ChromeServices services_;
  QWidget& panel_;
  std::unique_ptr<SheetWindow> sheet_;
};

}  // namespace vantorel
