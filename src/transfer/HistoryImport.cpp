// SPDX-License-Identifier: MIT
#include "transfer/HistoryImport.h"

#include <cstdint>
#include <utility>

#include "base/ContentFingerprint.h"
#include "store/HistoryFile.h"
#include "transfer/ExportManifest.h"
#include "transfer/ExportedForms.h"

namespace vantorel {
namespace {

constexpr std::uint64_t largestManifest = std::uint64_t{64} << 20U;

ExportReading trouble(std::string sentence) {
  return {.clips = {}, .trouble = std::move(sentence)};
}

}  // namespace

ExportReading readExport(FileSystem& files, const std::filesystem::path& directory, Date now) {
  auto manifest = files.readFile(directory / manifestName, largestManifest);
  if (!manifest) return trouble("There is no exported history in " + directory.string() + ".");
  auto entries = readManifest(std::move(*manifest));
  if (!entries) {
    return trouble("The " + std::string(manifestName) + " in " + directory.string() +
                   " is damaged, or none that this Vantorel understands.");
  }
  ExportReading reading;
  std::uint64_t room = maximumHistoryBytes;
  for (ExportedEntry& entry : *entries) {
    ExportedClip clip{.entry = std::move(entry), .contents = {}};
    for (const ExportedFile& file : clip.entry.files) {
      auto read = files.readFile(directory / file.name, room);
      const bool isThere = read.has_value();
      const SharedBytes bytes(std::move(read).value_or(Bytes()));
      if (!isThere || ContentFingerprint::data(bytes.get()) != file.sha256) {
        return trouble("The exported history is damaged: " + file.name +
                       " is missing or was changed.");
      }
      room -= bytes.get().size();
      clip.contents.push_back(bytes);
    }
    auto taken = imported(clip, now);
    if (!taken) {
      return trouble("The exported history is damaged: entry " +
                     std::to_string(reading.clips.size() + 1) + " is not what it says.");
    }
    reading.clips.push_back(std::move(*taken));
  }
  return reading;
}

std::string intakeSentence(std::size_t kept, std::size_t count) {
  const auto clips = [](std::size_t number) {
    return std::to_string(number) + (number == 1 ? " clip " : " clips ");
  };
  if (kept == count) return clips(count) + (count == 1 ? "was" : "were") + " taken in.";
  if (kept == 0) {
    return "None of " + clips(count) + "was taken in; the limits of the history leave no room.";
  }
  return std::to_string(kept) + " of " + clips(count) + (kept == 1 ? "was" : "were") +
         " taken in; the others are over the limits of the history.";
}

}  // namespace vantorel
