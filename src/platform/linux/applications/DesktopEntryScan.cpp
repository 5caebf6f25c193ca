// SPDX-License-Identifier: MIT
#include "platform/linux/applications/DesktopEntryScan.h"

#include <fcntl.h>
#include <sys/stat.h>

#include <algorithm>
#include <array>
#include <cstddef>
#include <optional>
#include <set>
#include <system_error>
#include <utility>

#include "base/FileDescriptor.h"

namespace vantorel {

namespace {

namespace fs = std::filesystem;

constexpr std::size_t maximumFileSize = std::size_t{1} << 20U;  // bytes; usual ones have some KB
constexpr std::size_t maximumFiles = 20000;                     // in all
constexpr int maximumDepth = 8;                                 // subdirectories within each other

std::optional<std::string> contents(const fs::path& path) {
  // A pipe in the place of a file must not hold the reader up.
  const FileDescriptor file(::open(path.c_str(), O_RDONLY | O_CLOEXEC | O_NONBLOCK | O_NOCTTY));
  struct stat status {};
  if (!file.isOpen() || ::fstat(file.get(), &status) != 0) return std::nullopt;
  if (!S_ISREG(status.st_mode) || status.st_size > static_cast<off_t>(maximumFileSize)) {
    return std::nullopt;
  }
  std::string text;
  std::array<char, 8192> buffer{};
  while (text.size() <= maximumFileSize) {
    const auto count =
        retryingInterrupted([&] { return ::read(file.get(), buffer.data(), buffer.size()); });
    if (count < 0) return std::nullopt;
    if (count == 0) return text;
    text.append(buffer.data(), static_cast<std::size_t>(count));
  }
  return std::nullopt;  // grew while it was read
}

class Scanner {
 public:
  explicit Scanner(const std::vector<std::string>& locales) : locales_(locales) {}

  void readDirectory(const fs::path& directory, const std::string& prefix, int depth) {
    result_.directories[directory] = changeTime(directory);
    if (depth > maximumDepth || !isNew(directory)) return;
    std::error_code error;
    std::vector<fs::path> paths;
    for (fs::directory_iterator it(directory, error), end; !error && it != end;
         it.increment(error)) {
      if (paths.size() == maximumFiles) break;
      paths.push_back(it->path());
    }
    // The order of a directory is chance; which of two entries wins is not.
    std::sort(paths.begin(), paths.end());
    for (const auto& path : paths) {
      const auto name = path.filename().string();
      if (path.extension() == ".desktop") {
        readFile(path, prefix + path.stem().string());
      } else if (fs::is_directory(path, error)) {
        readDirectory(path, prefix + name + "-", depth + 1);
      }
    }
  }

  [[nodiscard]] DesktopEntryScan take() { return std::move(result_); }

 private:
  bool isNew(const fs::path& directory) {
    struct stat status {};
    if (::stat(directory.c_str(), &status) != 0) return false;
    return seen_.emplace(status.st_dev, status.st_ino).second;
  }

  void readFile(const fs::path& path, const std::string& id) {
    if (files_ == maximumFiles || ids_.contains(id)) return;
    const auto text = contents(path);
    if (!text) return;
    ++files_;
    auto parsed = parseDesktopEntry(id, *text, locales_);
    if (parsed.state == DesktopEntryState::notAnApplication) return;
    ids_.insert(id);
    if (parsed.state == DesktopEntryState::usable) {
      result_.entries.push_back(std::move(parsed.entry));
    }
  }

  const std::vector<std::string>& locales_;
  DesktopEntryScan result_;
  std::set<std::pair<dev_t, ino_t>> seen_;
  std::set<std::string> ids_;
  std::size_t files_ = 0;
};

}  // namespace

fs::file_time_type changeTime(const fs::path& directory) {
  std::error_code error;
  const auto time = fs::last_write_time(directory, error);
  return error ? fs::file_time_type{} : time;
}

DesktopEntryScan scanDesktopEntries(const std::vector<fs::path>& directories,
                                    const std::vector<std::string>& locales) {
  Scanner scanner(locales);
  for (const auto& directory : directories) scanner.readDirectory(directory, "", 0);
  return scanner.take();
}

}  // namespace vantorel
