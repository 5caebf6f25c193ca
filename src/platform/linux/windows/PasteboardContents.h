// SPDX-License-Identifier: MIT
#pragma once

#include <filesystem>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "base/Bytes.h"
#include "platform/Image.h"
#include "platform/linux/windows/SelectionOffer.h"

namespace vantorel {

/// What this process wrote to the pasteboard. Immutable once shared.
struct PasteboardContents {
  std::optional<std::string> string;
  std::optional<Bytes> rtf;
  std::optional<Bytes> html;
  std::vector<std::filesystem::path> files;
  std::shared_ptr<const Image> image;
};

/// Files with their paths as text beside them, one on each line, for editors and terminals. A path
/// with a control character in it, which a terminal would obey, stands there as a shell quotes it.
[[nodiscard]] PasteboardContents contentsOf(std::vector<std::filesystem::path> files);

/// The contents in every form that X11 programs ask for. Nothing is copied or encoded until a form
/// is asked for.
[[nodiscard]] SelectionOffer offerOf(const std::shared_ptr<const PasteboardContents>& contents);

}  // namespace vantorel
