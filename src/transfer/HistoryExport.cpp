// SPDX-License-Identifier: MIT
#include "transfer/HistoryExport.h"

#include <string>
#include <utility>

#include "base/Uuid.h"
#include "base/WipedText.h"
#include "transfer/ExportManifest.h"
#include "transfer/ExportedForms.h"

namespace vantorel {
namespace {

using Path = std::filesystem::path;
using Error = FileSystem::Error;

constexpr std::string_view unfinishedStart = ".vantorel-export.";

/// A directory that goes again with all in it, unless it is put in its place: beside it, or within
/// where a directory stands there already, which may be another disk.
class UnfinishedExport {
 public:
  UnfinishedExport(FileSystem& files, const Path& place)
      : files_(files),
        place_(place),
        isFilling_(files.exists(place)),
        directory_((isFilling_ ? place : place.parent_path()) /
                   (std::string(unfinishedStart) + Uuid::random().string())) {}
  ~UnfinishedExport() {
    for (const Path& path : written_) (void)files_.remove(path);
    if (isMade_) (void)files_.remove(directory_);
  }
  UnfinishedExport(const UnfinishedExport&) = delete;
  UnfinishedExport& operator=(const UnfinishedExport&) = delete;

  [[nodiscard]] Error make() {
    // No directory above it is made: a name that was mistyped would be followed anywhere.
    if (!files_.exists(directory_.parent_path())) {
      return std::make_error_code(std::errc::no_such_file_or_directory);
    }
    if (const Error error = files_.createDirectories(directory_, ownerOnly)) return error;
    isMade_ = true;
    return files_.claim(directory_);  // nobody takes it for one that was left behind
  }
  [[nodiscard]] Error write(std::string_view name, ByteView bytes) {
    written_.push_back(directory_ / name);
    return files_.writeNewFile(written_.back(), bytes, 0600);
  }
  /// What was written last comes last.
  [[nodiscard]] Error finish() {
    if (const Error error = files_.syncDirectory(directory_)) return error;
    if (const Error error = isFilling_ ? moveIn() : files_.rename(directory_, place_)) return error;
    isMade_ = false;
    written_.clear();
    // It stands there either way.
    (void)files_.syncDirectory(isFilling_ ? place_ : place_.parent_path());
    return {};
  }

 private:
  static constexpr unsigned ownerOnly = 0700;

  [[nodiscard]] Error moveIn() {
    if (const Error error = files_.setPermissions(place_, ownerOnly)) return error;
    for (Path& path : written_) {
      Path moved = place_ / path.filename();
      // Whatever came there meanwhile is not ours to replace.
      if (files_.exists(moved)) return std::make_error_code(std::errc::directory_not_empty);
      if (const Error error = files_.rename(path, moved)) return error;
      path = std::move(moved);
    }
    return files_.remove(directory_);
  }

  FileSystem& files_;
  const Path place_;
  const bool isFilling_;
  const Path directory_;
  bool isMade_ = false;
  std::vector<Path> written_;
};

}  // namespace

bool isUnfinishedExport(std::string_view name) {
  return name.starts_with(unfinishedStart) &&
         Uuid::parse(name.substr(unfinishedStart.size())).has_value();
}

Error exportObstacle(FileSystem& files, const Path& directory) {
  if (!files.exists(directory)) return {};
  const auto names = files.list(directory);
  if (!names) return std::make_error_code(std::errc::not_a_directory);
  return names->empty() ? Error() : std::make_error_code(std::errc::directory_not_empty);
}

ExportResult exportHistory(FileSystem& files, const std::vector<ClipItem>& items,
                           const PictureOf& pictureOf, const Path& directory, Date now) {
  if (const Error error = exportObstacle(files, directory)) return {.error = error};
  UnfinishedExport unfinished(files, directory);
  if (const Error error = unfinished.make()) return {.error = error};
  ExportResult result;
  std::vector<ExportedEntry> entries;
  std::size_t number = 0;
  for (const ClipItem& item : items) {
    auto clip =
        exported(item, ++number, item.kind == ClipKind::image ? pictureOf(item) : std::nullopt);
    if (!clip) {
      ++result.missing;
      continue;
    }
    for (std::size_t i = 0; i < clip->contents.size(); ++i) {
      result.error = unfinished.write(clip->entry.files[i].name, *clip->contents[i]);
      if (result.error) return result;
    }
    entries.push_back(std::move(clip->entry));
  }
  std::string manifest = manifestJson(entries, now);
  result.error = unfinished.write(manifestName, bytesOf(manifest));
  wipe(manifest);
  if (!result.error) result.error = unfinished.finish();
  return result;
}

}  // namespace vantorel
