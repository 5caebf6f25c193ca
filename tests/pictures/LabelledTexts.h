// SPDX-License-Identifier: MIT
#pragma once

#include <QStringList>

namespace vantorel {

enum class Language { english, hebrew, mixed };

/// Lines as interfaces, messages and documents have them, with numbers, addresses and punctuation.
[[nodiscard]] const QStringList& labelledLines(Language language);

}  // namespace vantorel
