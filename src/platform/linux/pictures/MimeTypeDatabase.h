#pragma once

#include <filesystem>
#include <memory>
#include <mutex>
#include <vector>

#include "base/FileSystem.h"
#include "platform/linux/applications/ChangeTimes.h"
#include "platform/linux/pictures/MimeTypes.h"
#include "platform/linux/xdg/XdgDirectories.h"

namespace vantorel {

/// The installed MIME types, read when they are first asked for.
class MimeTypeDatabase {
 public:
  /// `directories` are the "mime" directories, the most important first. `files` outlives this.
  MimeTypeDatabase(FileSystem& files, std::vector<std::filesystem::path> directories);

  [[nodiscard]] static std::vector<std::filesystem::path> directories(
      const EnvironmentLookup& lookup);

  /// Any thread. The first call reads some tens of kilobytes; who comes meanwhile waits for it.
  [[nodiscard]] std::shared_ptr<const MimeTypes> types();

  /// Reads again when what was read has changed; answers whether it did. Nobody waits for it. On
  /// one thread at a time.
  bool refresh();

 private:
  struct State {
    ChangeTimes times;
    MimeTypes types;
  };
  [[nodiscard]] std::shared_ptr<const State> read() const;

  FileSystem& files_;
  const std::vector<std::filesystem::path> directories_;
  std::mutex mutex_;
  std::shared_ptr<const State> state_;  // guarded
};

}  // namespace vantorel
