// SPDX-License-Identifier: MIT
#include "app/TroubleReporter.h"

#include <cstdio>
#include <string>

namespace vantorel {

TroubleReporter::~TroubleReporter() {
  if (trouble_ != Trouble::none) notifications_.withdraw();
}

void TroubleReporter::report(Trouble trouble) {
  if (trouble == trouble_) return;
  trouble_ = trouble;
  if (trouble == Trouble::none) {
    notifications_.withdraw();
  } else {
    const TroubleWords words = wordsOf(trouble);
    std::fprintf(stderr, "%s\n", std::string(words.line).c_str());
    notifications_.post({.title = std::string(words.title),
                         .body = std::string(words.body),
                         .action = std::string(words.action)},
                        [this] {
                          if (onAction) onAction();
                        });
  }
  if (onChange) onChange();
}

}  // namespace vantorel
