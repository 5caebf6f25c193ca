// SPDX-License-Identifier: MIT
#pragma once

#include <map>
#include <string>

#include "base/Bytes.h"

namespace vantorel {

/// What its maker wrote into a PNG, in UTF-8, without those texts that are longer than any name or
/// time of a file. Nothing when the PNG's chunks are not whole and true to their checksums. No
/// pixel is looked at. Any thread.
[[nodiscard]] std::map<std::string, std::string> textsOfPng(ByteView png);

}  // namespace vantorel
