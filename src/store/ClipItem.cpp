#include "store/ClipItem.h"

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

}  // namespace vantorel
