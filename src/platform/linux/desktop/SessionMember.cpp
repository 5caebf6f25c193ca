// SPDX-License-Identifier: MIT
#include "platform/linux/desktop/SessionMember.h"

#include <QEvent>
#include <QGuiApplication>
#include <QSessionManager>
#include <utility>

namespace vantorel {

SessionMember::SessionMember(QGuiApplication& application, std::function<void()> onEnd)
    : application_(application), onEnd_(std::move(onEnd)) {
  const auto never = [](QSessionManager& manager) {
    manager.setRestartHint(QSessionManager::RestartNever);
  };
  connect(&application_, &QGuiApplication::saveStateRequest, this, never, Qt::DirectConnection);
  connect(&application_, &QGuiApplication::commitDataRequest, this, never, Qt::DirectConnection);
  application_.installEventFilter(this);
}

bool SessionMember::eventFilter(QObject* watched, QEvent* event) {
  if (watched != &application_ || event->type() != QEvent::Quit) return false;
  event->accept();
  if (onEnd_) onEnd_();
  return true;
}

}  // namespace vantorel
