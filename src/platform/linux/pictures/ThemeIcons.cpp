// SPDX-License-Identifier: MIT
#include "platform/linux/pictures/ThemeIcons.h"

#include <cstdlib>
#include <system_error>
#include <utility>

#include "platform/MainQueue.h"
#include "platform/linux/pictures/PictureReading.h"

namespace vantorel {

namespace {

constexpr std::size_t maxApplicationIcons = 128;  // 4 KB each
constexpr std::size_t maxTypeIcons = 24;          // 64 KB each
constexpr std::size_t maxExtensions = 24;
constexpr std::uint64_t largestPicture = std::uint64_t{4} << 20U;  // bytes; some KB are usual
constexpr Seconds checkInterval{5};

SharedBitmap kept(KeptIcons& icons, const std::string& name,
                  const std::function<SharedBitmap()>& find) {
  if (auto known = icons.find(name)) return *std::move(known);
  const auto generation = icons.generation();
  auto picture = find();
  icons.keep(name, picture, generation);
  return picture;
}

}  // namespace

ThemeIcons::ThemeIcons(Dispatch& dispatch, Sources sources, Sides sides)
    : dispatch_(dispatch),
      sources_(std::move(sources)),
      sides_(sides),
      questions_(sources_.userFiles),
      applicationIcons_(maxApplicationIcons),
      typeIcons_(maxTypeIcons),
      extensionIcons_(maxExtensions),
      queue_(dispatch.serialQueue("com.vantorel.icons")) {
  queue_->async([this] {
    (void)sources_.themes.themes();
    (void)sources_.types.refresh();
  });
}

ThemeIcons::~ThemeIcons() { questions_.stop(); }

void ThemeIcons::checkForChanges() {
  const auto now = dispatch_.now();
  // A clock that was set back must not put the next check off.
  if (lastCheck_ && now >= *lastCheck_ && now - *lastCheck_ < checkInterval) return;
  lastCheck_ = now;
  queue_->async([this] {
    const bool otherThemes = sources_.themes.refresh();
    const bool otherTypes = sources_.types.refresh();
    if (otherThemes) applicationIcons_.clear();
    if (!otherThemes && !otherTypes) return;
    typeIcons_.clear();
    extensionIcons_.clear();
  });
}

void ThemeIcons::answerLater(Find find, Completion completion) {
  queue_->async(
      [find = std::move(find),
       answer = onMainQueue(dispatch_, life_.guard(std::move(completion)))] { answer(find()); });
}

SharedBitmap ThemeIcons::picture(const std::filesystem::path& file, int side) const {
  const auto bytes = sources_.files.readFile(file, largestPicture);
  return bytes ? iconWithin(sources_.decoder, *bytes, side) : nullptr;
}

SharedBitmap ThemeIcons::pictureOutsideTheme(const std::filesystem::path& file, int side) {
  const auto bytes = questions_.contents(file, largestPicture, FileQuestions::Wanted::anything);
  return bytes ? iconWithin(sources_.decoder, *bytes, side) : nullptr;
}

SharedBitmap ThemeIcons::pictureOfApplication(const std::string& icon) {
  return kept(applicationIcons_, icon, [&]() -> SharedBitmap {
    if (icon.front() == '/') return pictureOutsideTheme(icon, sides_.application);
    const auto file = sources_.themes.themes()->find(iconNamesOf(icon), sides_.application);
    return file ? picture(*file, sides_.application) : nullptr;
  });
}

SharedBitmap ThemeIcons::pictureOfType(const std::string& type) {
  return kept(typeIcons_, type, [&]() -> SharedBitmap {
    const auto file = sources_.themes.themes()->find(sources_.types.iconsOf(type), sides_.file);
    return file ? picture(*file, sides_.file) : nullptr;
  });
}

SharedBitmap ThemeIcons::pictureOfExtension(const std::string& extension) {
  return kept(extensionIcons_, extension, [&] {
    const std::string name = extension.empty() ? "file" : "file." + extension;
    return pictureOfType(sources_.types.typeOf(name));
  });
}

SharedBitmap ThemeIcons::pictureOfFile(const std::filesystem::path& file) {
  if (questions_.isDirectory(file)) return pictureOfType(std::string(directoryType));
  return pictureOfType(sources_.types.typeOf(file.filename().string()));
}

void ThemeIcons::applicationIcon(const std::string& bundleIdentifier, Completion completion) {
  checkForChanges();
  const auto applications = sources_.applications();
  const auto* entry = applications->byId(bundleIdentifier);
  if (entry == nullptr || entry->icon.empty()) return completion(nullptr);
  if (auto known = applicationIcons_.find(entry->icon)) return completion(*std::move(known));
  answerLater([this, icon = entry->icon] { return pictureOfApplication(icon); },
              std::move(completion));
}

void ThemeIcons::fileIcon(const std::filesystem::path& file, Completion completion) {
  checkForChanges();
  answerLater([this, file] { return pictureOfFile(file); }, std::move(completion));
}

void ThemeIcons::typeIcon(const std::string& extension, Completion completion) {
  checkForChanges();
  if (auto known = extensionIcons_.find(extension)) return completion(*std::move(known));
  answerLater([this, extension] { return pictureOfExtension(extension); }, std::move(completion));
}

int applicationIconSide(double largestScale) {
  constexpr double rowIconPoints = 13;
  for (const int side : {32, 48, 64}) {
    if (rowIconPoints * largestScale <= side) return side;
  }
  constexpr int largest = 96;
  return largest;
}

}  // namespace vantorel
