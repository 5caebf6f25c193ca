// SPDX-License-Identifier: MIT
#pragma once

#include <cstdint>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "base/FileSystem.h"
#include "base/Lifetime.h"
#include "platform/Dispatch.h"
#include "platform/Icons.h"
#include "platform/Image.h"
#include "platform/linux/applications/DesktopEntryIndex.h"
#include "platform/linux/pictures/FileQuestions.h"
#include "platform/linux/pictures/IconThemeSource.h"
#include "platform/linux/pictures/KeptIcons.h"
#include "platform/linux/pictures/MimeTypeDatabase.h"

namespace vantorel {

/// Icons of the theme in use. Files are found and read on a queue of its own; what was found is
/// kept until the theme changes, which is looked for when something is asked for, at most every
/// five seconds: the answer to that very question may still be in the old style.
class ThemeIcons : public Icons {
 public:
  /// The installed applications of this moment; answers at once.
  using Applications = std::function<std::shared_ptr<const DesktopEntryIndex>()>;
  struct Sources {
    FileSystem& files;
    const ImageDecoder& decoder;
    IconThemeSource& themes;
    MimeTypeDatabase& types;
    /// The user's own files and pictures outside the theme; one that does not answer is a plain
    /// file, or no picture.
    std::shared_ptr<FileSystem> userFiles;
    Applications applications;
  };
  /// How large the pictures are at most, in pixels.
  struct Sides {
    int application = 32;
    int file = 128;
  };

  /// What was given outlives this. What is under way when this ends is not answered any more.
  ThemeIcons(Dispatch& dispatch, Sources sources, Sides sides);
  ~ThemeIcons() override;
  ThemeIcons(const ThemeIcons&) = delete;
  ThemeIcons& operator=(const ThemeIcons&) = delete;

  void applicationIcon(const std::string& bundleIdentifier, Completion completion) override;
  void fileIcon(const std::filesystem::path& file, Completion completion) override;
  void typeIcon(const std::string& extension, Completion completion) override;

 private:
  using Find = std::function<SharedBitmap()>;

  void checkForChanges();
  /// Runs `find` on the queue and hands what it found to `completion` on the main queue.
  void answerLater(Find find, Completion completion);
  [[nodiscard]] SharedBitmap picture(const std::filesystem::path& file, int side) const;
  [[nodiscard]] SharedBitmap pictureOutsideTheme(const std::filesystem::path& file, int side);
  [[nodiscard]] SharedBitmap pictureOfApplication(const std::string& icon);
  [[nodiscard]] SharedBitmap pictureOfFile(const std::filesystem::path& file);
  [[nodiscard]] SharedBitmap pictureOfType(const std::string& type);
  [[nodiscard]] SharedBitmap pictureOfExtension(const std::string& extension);

  Dispatch& dispatch_;
  const Sources sources_;
  const Sides sides_;
  FileQuestions questions_;
  KeptIcons applicationIcons_;
  KeptIcons typeIcons_;
  KeptIcons extensionIcons_;            // the same pictures, found without the database of types
  std::optional<Date> lastCheck_;       // main thread
  std::unique_ptr<SerialQueue> queue_;  // it uses what is above
  Lifetime life_;
};

/// How many pixels an application's icon of a row's size needs on the sharpest of the screens.
[[nodiscard]] int applicationIconSide(double largestScale);

}  // namespace vantorel
