#pragma once

#include <filesystem>
#include <map>
#include <memory>
#include <mutex>
#include <optional>
#include <string>
#include <tuple>
#include <vector>

#include "platform/Dispatch.h"
#include "platform/FileSystem.h"
#include "platform/FileThumbnails.h"
#include "platform/linux/icons/MimeTypeDatabase.h"
#include "platform/linux/thumbnails/FileQuestions.h"
#include "platform/linux/thumbnails/LimitedProcess.h"
#include "platform/linux/thumbnails/ThumbnailCache.h"
#include "platform/linux/thumbnails/Thumbnailers.h"

namespace vantorel {

/// Pictures of files as a Linux desktop has them: the shared cache first, then images decoded here,
/// then the thumbnailer that is installed for the type. Two queues: what reads files, and the
/// thumbnailers, one at a time, which may take their time limit. Nothing is ever written to the
/// shared cache, and no failure is remembered. At the end nobody waits for a file that does not
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
    std::filesystem::path temporary;  // where thumbnailers leave their pictures for a moment
  };

  /// What was given outlives this. When this ends, the running thumbnailer is killed.
  LinuxFileThumbnails(Dispatch& dispatch, Sources sources, ProcessLimits limits = {});
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
  using Key = std::tuple<std::string, int, int>;

  void answerQuickly(const Request& request, const Completion& completion);
  [[nodiscard]] SharedBitmap decoded(const Request& request, std::string_view type);
  void answerSlowly(const Request& request, const ThumbnailerEntry& thumbnailer,
                    const Completion& completion);
  [[nodiscard]] SharedBitmap made(const Request& request,
                                  const ThumbnailerEntry& thumbnailer) const;

  FileSystem& files_;
  const ImageDecoder& decoder_;
  MimeTypeDatabase& types_;
  const ThumbnailCache cache_;
  const std::filesystem::path temporary_;
  const ProcessLimits limits_;
  Thumbnailers thumbnailers_;  // on the quick queue
  FileQuestions questions_;
  StopSignal stop_;

  std::mutex mutex_;
  std::map<Key, std::vector<Completion>> waiting_;  // for thumbnailers; guarded

  // Last, as they use what is above; the quick one feeds the slow one and so ends first.
  std::unique_ptr<SerialQueue> slow_;
  std::unique_ptr<SerialQueue> quick_;
};

}  // namespace vantorel
