// SPDX-License-Identifier: MIT
#pragma once

#include <string>

#include "base/Bytes.h"

namespace vantorel::ContentFingerprint {

/// The SHA-256 of the bytes as 64 lower-case hexadecimal digits. Any thread.
[[nodiscard]] std::string data(ByteView bytes);

}  // namespace vantorel::ContentFingerprint
