// SPDX-License-Identifier: MIT
#pragma once

#include <filesystem>
#include <map>
#include <string>
#include <utility>
#include <vector>

#include "platform/Icons.h"

namespace vantorel {

/// Has the icons that the test gives it. Answers at once, or when the test says so.
class FakeIcons : public Icons {
 public:
  void applicationIcon(const std::string& bundleIdentifier, Completion completion) override {
    asked_.push_back(bundleIdentifier);
    answer(lookUp(applications_, bundleIdentifier), std::move(completion));
  }
  void fileIcon(const std::filesystem::path& file, Completion completion) override {
    askedFiles_.push_back(file);
    answer(lookUp(files_, file.string()), std::move(completion));
  }
  void typeIcon(const std::string& extension, Completion completion) override {
    askedTypes_.push_back(extension);
    answer(lookUp(types_, extension), std::move(completion));
  }

  // The test's side.

  void setApplication(const std::string& id, SharedBitmap icon) {
    applications_[id] = std::move(icon);
  }
  void setFile(const std::string& file, SharedBitmap icon) { files_[file] = std::move(icon); }
  void setType(const std::string& extension, SharedBitmap icon) {
    types_[extension] = std::move(icon);
  }
  /// From now on everything is answered by `answerHeld`.
  void holdAnswers() { holding_ = true; }
  void answerHeld() {
    for (auto& held : std::exchange(held_, {})) held.second(held.first);
  }
  /// Every application that was asked for, in order.
  [[nodiscard]] const std::vector<std::string>& asked() const { return asked_; }
  /// Every file and every extension that was asked for, in order.
  [[nodiscard]] const std::vector<std::filesystem::path>& askedFiles() const { return askedFiles_; }
  [[nodiscard]] const std::vector<std::string>& askedTypes() const { return askedTypes_; }

 private:
  using Known = std::map<std::string, SharedBitmap>;

  static SharedBitmap lookUp(const Known& known, const std::string& name) {
    const auto found = known.find(name);
    return found == known.end() ? nullptr : found->second;
  }
  void answer(SharedBitmap icon, Completion completion) {
    if (!holding_) return completion(std::move(icon));
    held_.emplace_back(std::move(icon), std::move(completion));
  }

  Known applications_;
  Known files_;
  Known types_;
  bool holding_ = false;
  std::vector<std::pair<SharedBitmap, Completion>> held_;
  std::vector<std::string> asked_;
  std::vector<std::filesystem::path> askedFiles_;
  std::vector<std::string> askedTypes_;
};

}  // namespace vantorel
