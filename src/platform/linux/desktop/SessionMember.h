// SPDX-License-Identifier: MIT
#pragma once

#include <QObject>
#include <functional>

class QGuiApplication;

namespace vantorel {

/// This program as a member of the desktop's session. Its end, by the session's manager or whoever
/// else asks the toolkit to quit, is a normal quit: open windows are not asked, since they can only
/// be dismissed. The session need not start us again; our autostart entry does.
/// Main thread.
class SessionMember : public QObject {
  Q_OBJECT

 public:
  /// `onEnd` begins the quit. `application` outlives this.
  SessionMember(QGuiApplication& application, std::function<void()> onEnd);

 protected:
  bool eventFilter(QObject* watched, QEvent* event) override;

 private:
  QGuiApplication& application_;
  std::function<void()> onEnd_;
};

}  // namespace vantorel
