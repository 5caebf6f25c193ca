// SPDX-License-Identifier: MIT
#pragma once

#include "platform/AccessibilityPreferences.h"
#include "platform/Dispatch.h"
#include "platform/Screens.h"
#include "platform/WindowBackdrops.h"
#include "platform/WindowSpaces.h"

namespace vantorel {

/// What windows need of the desktop. All outlive every window.
struct ChromeServices {
  Dispatch& dispatch;
  const Screens& screens;
  const AccessibilityPreferences& accessibility;
  const WindowBackdrops* backdrops = nullptr;  // null: nothing is seen through a window
  const WindowSpaces* spaces = nullptr;        // null: there is one desktop only
};

}  // namespace vantorel
