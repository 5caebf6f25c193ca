// SPDX-License-Identifier: MIT
#pragma once

#include <array>
#include <cstddef>
#include <optional>
#include <stop_token>
#include <string>
#include <string_view>

#include "platform/TextRecognition.h"

namespace vantorel::ImageTextRecognizer {

/// In order of priority.
inline constexpr std::array<std::string_view, 2> preferredLanguages = {"he-IL", "en-US"};

/// The text in an encoded image, its lines joined with "\n"; empty when it shows none, absent when
/// it could not be read or the reading was stopped. Recognises the preferred languages as far as
/// they are supported, else whatever the recogniser reads by default. On a background queue.
[[nodiscard]] std::optional<std::string> recognize(TextRecognition& recognition, ByteView data,
                                                   const std::stop_token& stop);

}  // namespace vantorel::ImageTextRecognizer
