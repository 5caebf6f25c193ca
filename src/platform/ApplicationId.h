// SPDX-License-Identifier: MIT
#pragma once

namespace vantorel::applicationId {

/// The name of the desktop entry, the icon, and the program on the session bus.
inline constexpr const char* name = "com.vantorel.Vantorel";
/// The object that `org.freedesktop.Application` is offered at, as that interface derives it.
inline constexpr const char* objectPath = "/com/vantorel/Vantorel";
inline constexpr const char* interface = "org.freedesktop.Application";
/// The history's directory, among those where the user's applications keep what is theirs.
inline constexpr const char* historyDirectory = "ClipHistory";

}  // namespace vantorel::applicationId
