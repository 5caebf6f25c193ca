// SPDX-License-Identifier: MIT
#pragma once

#include <filesystem>
#include <memory>
#include <string_view>

#include "base/FileSystem.h"
#include "platform/Dispatch.h"
#include "platform/FileThumbnails.h"
#include "platform/linux/pictures/FileQuestions.h"
#include "platform/linux/pictures/MimeTypeDatabase.h"
#include "platform/linux/pictures/ThumbnailCache.h"
#include "platform/linux/pictures/ThumbnailerRuns.h"
#include "platform/linux/pictures/Thumbnailers.h"

namespace vantorel {

/// Pictures of files as a Linux desktop has them: the shared cache first, then what is an image,
/// then the thumbnailer that is installed for the type, on other queues than what reads files.
/// Nothing is ever written to the shared cache. At the end nobody waits for a file that does not
/// answer.
class LinuxFileThumbnails : public FileThumbnails {
 public:
  struct Sources {
    FileSystem& files;
    const ImageDecoder& decoder;
    MimeTypeDatabase& types;
    std::filesystem::path cache;  // the shared one; empty: there is none
    Thumbnailers::Places thumbnailers;
    /// The user's own files; one that does not answer counts as having no picture.
    std::shared_ptr<FileSystem> userFiles;
    ThumbnailerRuns::Places runs;
  };

  /// What was given outlives this. When this ends, the running thumbnailers are killed.
  LinuxFileThumbnails(Dispatch& dispatch, Sources sources, ThumbnailerRuns::Limits limits = {});
  ~LinuxFileThumbnails() override;
  LinuxFileThumbnails(const LinuxFileThumbnails&) = delete;
  LinuxFileThumbnails& operator=(const LinuxFileThumbnails&) = delete;

  void generateBestRepresentation(const std::filesystem::path& file, Size size, double scale,
                                  Completion completion) override;

 private:
  struct Request {
    std::filesystem::path file;
    PixelSize most;
  };

  void answer(const Request& request, const Completion& completion);
  [[nodiscard]] SharedBitmap decoded(const Request& request, std::string_view type);

  const ImageDecoder& decoder_;
  MimeTypeDatabase& types_;
  const ThumbnailCache cache_;
  Thumbnailers thumbnailers_;  // on the queue
  FileQuestions questions_;
  ThumbnailerRuns runs_;
  std::unique_ptr<SerialQueue> queue_;  // last: it uses what is above
};

}  // namespace vantorel
