// SPDX-License-Identifier: MIT
#include "store/ClipItem.h"

#include <algorithm>
#include <utility>

namespace vantorel {

std::string_view rawValue(ClipKind kind) {
  switch (kind) {
    case ClipKind::text:
      return "text";
    case ClipKind::image:
      return "image";
    case ClipKind::files:
      return "files";
  }
  return {};
}

std::optional<ClipKind> clipKind(std::string_view rawValue) {
  for (const ClipKind kind : {ClipKind::text, ClipKind::image, ClipKind::files}) {
    if (vantorel::rawValue(kind) == rawValue) return kind;
  }
  return std::nullopt;
}

const ClipItem* findById(const std::vector<ClipItem>& items, Uuid id) {
  const auto found = std::find_if(items.begin(), items.end(),
                                  [id](const ClipItem& item) { return item.id == id; });
  return found == items.end() ? nullptr : &*found;
}

ClipItem* findById(std::vector<ClipItem>& items, Uuid id) {
  return const_cast<ClipItem*>(findById(std::as_const(items), id));
}

}  // namespace vantorel
