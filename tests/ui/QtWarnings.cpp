// SPDX-License-Identifier: MIT
#include "ui/QtWarnings.h"

#include <gtest/gtest.h>

#include <QString>
#include <iostream>
#include <utility>

namespace vantorel {
namespace {

ExpectedQtWarning* innermost = nullptr;

void onMessage(QtMsgType type, const QMessageLogContext& /*context*/, const QString& text) {
  const auto message = text.toStdString();
  if (type == QtDebugMsg || type == QtInfoMsg) {
    std::cerr << message << '\n';
    return;
  }
  // The platform without a screen says so of what needs one, whoever asks; a real one never does.
  if (message.starts_with("This plugin does not support ")) return;
  if (innermost != nullptr && innermost->accepts(message)) return;
  ADD_FAILURE() << "The toolkit warns: " << message;
  if (type == QtFatalMsg) std::abort();
}

}  // namespace

void failTestsOnQtWarnings() { qInstallMessageHandler(onMessage); }

ExpectedQtWarning::ExpectedQtWarning(std::string text)
    : text_(std::move(text)), outer_(std::exchange(innermost, this)) {}

ExpectedQtWarning::~ExpectedQtWarning() {
  innermost = outer_;
  EXPECT_TRUE(came_) << "The toolkit did not warn: " << text_;
}

bool ExpectedQtWarning::accepts(const std::string& message) {
  if (message.find(text_) != std::string::npos) {
    came_ = true;
    return true;
  }
  return outer_ != nullptr && outer_->accepts(message);
}

}  // namespace vantorel
