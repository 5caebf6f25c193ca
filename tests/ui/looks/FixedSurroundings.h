// SPDX-License-Identifier: MIT
#pragma once

namespace vantorel {

enum class Appearance { light, dark };

/// Makes pictures the same on every machine: a desktop without a screen, its fonts, language, time
/// zone and scale are ours, whatever the environment says. `VANTOREL_LOOKS_SCALE` is the number of
/// pixels per point, 1 unless given. Before the application is made.
void fixSurroundings();
/// The rest of it, once the application is there.
void fixApplication();
void setAppearance(Appearance appearance);

}  // namespace vantorel
