// SPDX-License-Identifier: MIT
#pragma once

#include <array>
#include <string_view>
#include <variant>

#include "store/ClipItem.h"

namespace vantorel {

/// One key of an entry's JSON object, and where its value stands. What is no `optional` must be
/// there.
struct HistoryField {
  std::string_view key;
  std::variant<Uuid ClipItem::*, ClipKind ClipItem::*, Date ClipItem::*, std::string ClipItem::*,
               FilePaths ClipItem::*, std::optional<std::string> ClipItem::*,
               std::optional<SharedText> ClipItem::*, std::optional<SharedBytes> ClipItem::*,
               std::optional<bool> ClipItem::*, std::optional<std::int64_t> ClipItem::*,
               std::optional<Date> ClipItem::*>
      member;
};

/// In alphabetical order, as they are written.
inline constexpr std::array historyFields = {
    HistoryField{"assetFilename", &ClipItem::assetFilename},
    HistoryField{"contentHash", &ClipItem::contentHash},
    HistoryField{"createdAt", &ClipItem::createdAt},
    HistoryField{"customName", &ClipItem::customName},
    HistoryField{"filePaths", &ClipItem::filePaths},
    HistoryField{"htmlData", &ClipItem::htmlData},
    HistoryField{"id", &ClipItem::id},
    HistoryField{"isPinned", &ClipItem::isPinned},
    HistoryField{"kind", &ClipItem::kind},
    HistoryField{"lastCopiedAt", &ClipItem::lastCopiedAt},
    HistoryField{"pinOrder", &ClipItem::pinOrder},
    HistoryField{"preview", &ClipItem::preview},
    HistoryField{"recognizedText", &ClipItem::recognizedText},
    HistoryField{"rtfData", &ClipItem::rtfData},
    HistoryField{"sourceAppName", &ClipItem::sourceAppName},
    HistoryField{"sourceBundleIdentifier", &ClipItem::sourceBundleIdentifier},
    HistoryField{"text", &ClipItem::text},
    HistoryField{"title", &ClipItem::title},
};

}  // namespace vantorel
