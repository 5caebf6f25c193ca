// SPDX-License-Identifier: MIT
#pragma once

#include <memory>
#include <string>

#include "chrome/ChromeServices.h"

namespace vantorel {

class ToastPanel;

/// Shows one short message at a time near the top of the screen under the pointer and takes it
/// away after 2.1 s. The toast takes no focus and no input. Two presenters may show a toast each.
/// Main thread.
class ToastPresenter {
 public:
  explicit ToastPresenter(ChromeServices services);
  /// A toast still on screen goes with its presenter.
  ~ToastPresenter();
  ToastPresenter(const ToastPresenter&) = delete;
  ToastPresenter& operator=(const ToastPresenter&) = delete;

  /// Replaces this presenter's toast at once. Key symbols in `message` are shown as this desktop's
  /// keys (see `spelledKeys`).
  void show(const std::string& message);
  /// Takes this presenter's toast away at once.
  void hide();

 private:
  ChromeServices services_;
  std::unique_ptr<ToastPanel> panel_;
  std::unique_ptr<Timer> dismissWorkItem_;
};

}  // namespace vantorel
