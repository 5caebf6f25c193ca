// SPDX-License-Identifier: MIT
#include "paste/FilePresence.h"

#include <algorithm>
#include <utility>

namespace vantorel {

FilePresence::FilePresence(Dispatch& dispatch, std::shared_ptr<FileSystem> files)
    : dispatch_(dispatch), files_(std::move(files)), lanes_(dispatch) {}

FilePresence::~FilePresence() = default;

void FilePresence::ask(std::vector<std::filesystem::path> paths, Answer answer) {
  const Number number = ++lastNumber_;
  auto& question = questions_[number];
  question.answer = std::move(answer);
  question.patience = dispatch_.after(patience, [this, number] { give(number, true); });
  // On the other thread nothing of this is touched; what is returned runs here, while this lives.
  lanes_.ask([this, number, files = files_, paths = std::move(paths)]() -> Work {
    const bool allThere = std::all_of(paths.begin(), paths.end(),
                                      [&](const auto& path) { return files->exists(path); });
    return [this, number, allThere] { give(number, allThere); };
  });
}

void FilePresence::give(Number number, bool allThere) {
  const auto question = questions_.extract(number);
  if (!question.empty()) question.mapped().answer(allThere);
}

}  // namespace vantorel
