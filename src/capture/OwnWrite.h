// SPDX-License-Identifier: MIT
#pragma once

#include <filesystem>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "platform/Image.h"
#include "platform/Pasteboard.h"

namespace vantorel {

/// What this program wrote to the pasteboard last, as another program would give it back that takes
/// the contents over: remote desktops, for one, put each text that they see on the clipboard anew.
/// Main thread.
class OwnWrite {
 public:
  /// Reads back what was written as that change. Until that has been answered nothing is equal.
  [[nodiscard]] static std::shared_ptr<OwnWrite> readBack(Pasteboard& pasteboard,
                                                          Pasteboard::ChangeCount change);

  [[nodiscard]] bool equals(const std::string& text) const;
  [[nodiscard]] bool equals(const std::vector<std::filesystem::path>& files) const;
  /// The image that was written, if that one may be equal. Whether it is takes comparing their PNG
  /// forms, which may have to be made: not on the main thread.
  [[nodiscard]] std::shared_ptr<const Image> candidateFor(const Image& image) const;

 private:
  std::optional<std::string> textFingerprint_;
  std::vector<std::filesystem::path> files_;
  std::shared_ptr<const Image> image_;
};

/// Whether the two have the same PNG form. As slow as making it; any thread.
[[nodiscard]] bool samePicture(const Image& one, const Image& other);

}  // namespace vantorel
