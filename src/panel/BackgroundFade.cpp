// SPDX-License-Identifier: MIT
#include "panel/BackgroundFade.h"

#include <algorithm>

namespace vantorel {
namespace {

constexpr Seconds duration{0.12};
constexpr Seconds stepTime{1.0 / 60};

}  // namespace

BackgroundFade::BackgroundFade(Dispatch& dispatch, const AccessibilityPreferences& accessibility)
    : dispatch_(dispatch), accessibility_(accessibility) {}

void BackgroundFade::start() {
  if (accessibility_.reduceMotion()) {
    finish();
    return;
  }
  progress_ = 0;
  started_ = dispatch_.now();
  steps_ = dispatch_.every(stepTime, [this] { step(); });
}

void BackgroundFade::finish() {
  progress_ = 1;
  steps_.reset();
}

void BackgroundFade::step() {
  const double passed = Seconds(dispatch_.now() - started_) / duration;
  // A clock that was set back must not keep the fade from ending.
  progress_ = passed < 0 ? 1 : std::min(passed, 1.0);
  if (progress_ >= 1) steps_.reset();
  if (onStep) onStep();
}

}  // namespace vantorel
