#include "platform/linux/pictures/MimeTypeDatabase.h"

#include <utility>

namespace vantorel {

MimeTypeDatabase::MimeTypeDatabase(FileSystem& files,
                                   std::vector<std::filesystem::path> directories)
    : files_(files), directories_(std::move(directories)) {}

std::vector<std::filesystem::path> MimeTypeDatabase::directories(const EnvironmentLookup& lookup) {
  auto result = dataDirectories(lookup);
  for (auto& directory : result) directory /= "mime";
  return result;
}

std::shared_ptr<const MimeTypeDatabase::State> MimeTypeDatabase::read() const {
  std::vector<std::filesystem::path> watched;
  for (const auto& directory : directories_) watched.push_back(directory / "globs2");
  // The times first: what changes while it is read is read again the next time.
  ChangeTimes times(watched);
  return std::make_shared<const State>(
      State{std::move(times), MimeTypes::read(files_, directories_)});
}

std::shared_ptr<const MimeTypes> MimeTypeDatabase::types() {
  const std::lock_guard lock(mutex_);
  if (!state_) state_ = read();
  return {state_, &state_->types};
}

bool MimeTypeDatabase::refresh() {
  std::shared_ptr<const State> state;
  {
    const std::lock_guard lock(mutex_);
    state = state_;
  }
  if (!state || !state->times.haveChanged()) return false;
  state = read();
  const std::lock_guard lock(mutex_);
  state_ = std::move(state);
  return true;
}

}  // namespace vantorel
