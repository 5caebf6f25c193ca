// SPDX-License-Identifier: MIT
#pragma once

#include <functional>
#include <optional>
#include <string>

namespace vantorel {

/// Puts a question to a person and answers with the line that was typed; absent at the input's end.
using Ask = std::function<std::optional<std::string>(const std::string& question)>;

enum class ExportConsent { given, withheld, nobodyToAsk };

/// Whether the whole history may be written in the clear into a directory of that name: it is said
/// and asked first, unless the user knows it (`inTheClear`), and then the directory's name has to
/// be typed. Where there is nobody to ask, `ask` being empty, only who knows it may.
[[nodiscard]] ExportConsent consentToExport(bool inTheClear, const std::string& directoryName,
                                            const Ask& ask);

}  // namespace vantorel
