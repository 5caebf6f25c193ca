// SPDX-License-Identifier: MIT
#include "platform/linux/pictures/IconThemeSource.h"

#include <utility>

#include "platform/linux/pictures/IconThemeName.h"

namespace vantorel {

IconThemeSource::Places IconThemeSource::Places::fromEnvironment(const EnvironmentLookup& lookup) {
  return {IconPlaces::fromEnvironment(lookup), configDirectories(lookup)};
}

IconThemeSource::IconThemeSource(FileSystem& files, Places places, SettingsManager settingsManager)
    : files_(files), places_(std::move(places)), settingsManager_(std::move(settingsManager)) {}

std::string IconThemeSource::currentName() const {
  return iconThemeName(readIconThemeHints(files_, places_.config,
                                          settingsManager_ ? settingsManager_() : std::string()));
}

std::shared_ptr<const IconThemeSource::State> IconThemeSource::read(std::string name) const {
  IconThemes themes(files_, places_.icons, name);
  ChangeTimes times(themes.watched());
  return std::make_shared<const State>(State{std::move(name), std::move(themes), std::move(times)});
}

std::shared_ptr<const IconThemes> IconThemeSource::themes() {
  const std::lock_guard lock(mutex_);
  if (!state_) state_ = read(currentName());
  return {state_, &state_->themes};
}

bool IconThemeSource::refresh() {
  std::shared_ptr<const State> state;
  {
    const std::lock_guard lock(mutex_);
    state = state_;
  }
  if (!state) return false;
  auto name = currentName();
  if (name == state->name && !state->times.haveChanged()) return false;
  state = read(std::move(name));
  const std::lock_guard lock(mutex_);
  state_ = std::move(state);
  return true;
}

}  // namespace vantorel
