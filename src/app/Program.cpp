// SPDX-License-Identifier: MIT
#include "app/Program.h"

#include <QApplication>
#include <cstdio>
#include <utility>

#include "app/AppIconFactory.h"
#include "app/CommandLine.h"
#include "app/Commands.h"
#include "platform/ApplicationId.h"

namespace vantorel {
namespace {

using StartedBy = AppDelegate::StartedBy;

StartedBy starter(const ActionRequest& first) {
  if (first == ActionRequest()) return StartedBy::hand;
  return first.action == entryOf(Command::background).name ? StartedBy::login : StartedBy::command;
}

}  // namespace

std::optional<int> Program::answer(const CommandLine& line) {
  if (!line.error.empty()) {
    std::fprintf(stderr, "%s\n", line.error.c_str());
    return CommandLine::usageError;
  }
  if (line.command == Command::version) {
    std::puts("Vantorel " VANTOREL_VERSION);
    return 0;
  }
  if (line.command == Command::help) {
    std::fputs(CommandLine::helpText().data(), stdout);
    return 0;
  }
  return std::nullopt;
}

void Program::describeApplication() {
  QApplication::setApplicationName("vantorel");
  QApplication::setApplicationVersion(VANTOREL_VERSION);
  QApplication::setDesktopFileName(applicationId::name);
  QApplication::setQuitOnLastWindowClosed(false);
}

Program::Program(ActionRequest first, std::function<void()> quit)
    : quit_(std::move(quit)), startedBy_(starter(first)) {
  if (startedBy_ == StartedBy::command) pending_ = std::move(first);
}

Program::~Program() = default;

void Program::keyringAnswered() {
  keyringAnswered_ = true;
  if (desktop_) launch();
}

void Program::begin(const Desktop& desktop) {
  QApplication::setWindowIcon(AppIconFactory::bundledPNG("vt"));
  desktop_.emplace(desktop);
  if (keyringAnswered_) launch();
}

void Program::launch() {
  const bool welcoming = delegate_ && delegate_->isWelcoming();
  const bool historyOpen = delegate_ && delegate_->isHistoryOpen();
  // Starting over is nothing that anybody did, unless the panel is still owed to whoever did start.
  if (delegate_ && startedBy_ == StartedBy::hand && !delegate_->mayShowItself()) {
    startedBy_ = StartedBy::command;
  }
  if (delegate_) delegate_->applicationWillTerminate();
  delegate_.reset();
  delegate_ = std::make_unique<AppDelegate>(*desktop_);
  delegate_->onQuit = quit_;
  delegate_->onKeyWanted = [this](const std::string& notice) {
    notice_ = notice;
    if (onKeyWanted) onKeyWanted();
  };
  delegate_->applicationDidFinishLaunching(startedBy_);
  if (const auto notice = std::exchange(notice_, std::nullopt)) delegate_->say(*notice);
  if (historyOpen) delegate_->openHistory();
  if (welcoming) delegate_->showHelpPanel(true);
  if (const auto request = std::exchange(pending_, std::nullopt)) {
    perform(*request, std::exchange(pendingAnswer_, answerNobody));
  }
}

void Program::perform(const ActionRequest& request, const ActionAnswer& answer) {
  if (delegate_) {
    if (request.action.empty()) return delegate_->applicationShouldHandleReopen();
    return performAction(request.action, request.argument, *delegate_, answer);
  }
  if (request.action == entryOf(Command::quit).name) return quit_();
  if (request.action == entryOf(Command::background).name) return;
  if (request.action.empty() && pending_) return;
  pending_ = request;
  pendingAnswer_ = answer;
}

void Program::finishSaving() {
  if (delegate_) delegate_->finishSaving();
}

void Program::end() {
  if (delegate_) delegate_->applicationWillTerminate();
  delegate_.reset();
  desktop_.reset();
}

}  // namespace vantorel
