#pragma once

#include <QDBusContext>
#include <QObject>
#include <QStringList>
#include <QVariantList>
#include <QVariantMap>
#include <functional>
#include <memory>
#include <string>

#include "platform/Dispatch.h"
#include "platform/linux/start/CommandLine.h"

namespace vantorel {

/// The object behind `org.freedesktop.Application`; what others send is checked here.
class ApplicationInterface : public QObject, protected QDBusContext {
  Q_OBJECT
  Q_CLASSINFO("D-Bus Interface", "org.freedesktop.Application")

 public:
  struct Handlers {
    std::function<void()> activate;
    std::function<void(Command, const std::string& argument)> action;
  };

  explicit ApplicationInterface(Dispatch& dispatch) : dispatch_(dispatch) {}

  [[nodiscard]] Handlers& handlers() { return *handlers_; }

 public slots:
  // The platform data tells of the user's action behind the call (a startup notification or an
  // activation token); under X11 our windows take the focus without it.
  void Activate(const QVariantMap& platformData);
  /// Vantorel opens no files: whoever asks sees its panel.
  void Open(const QStringList& uris, const QVariantMap& platformData);
  void ActivateAction(const QString& name, const QVariantList& parameter,
                      const QVariantMap& platformData);

 private:
  void refuse(const QString& reason);

  Dispatch& dispatch_;
  std::shared_ptr<Handlers> handlers_ = std::make_shared<Handlers>();  // its life is the weak token
};

}  // namespace vantorel
