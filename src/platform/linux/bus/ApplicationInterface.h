// SPDX-License-Identifier: MIT
#pragma once

#include <QDBusContext>
#include <QObject>
#include <QStringList>
#include <QVariantList>
#include <QVariantMap>
#include <functional>
#include <vector>

#include "base/Lifetime.h"
#include "platform/ActionAnswer.h"
#include "platform/ActionRequest.h"
#include "platform/Dispatch.h"

namespace vantorel {

/// The object behind `org.freedesktop.Application`; what others send is checked here.
class ApplicationInterface : public QObject, protected QDBusContext {
  Q_OBJECT
  Q_CLASSINFO("D-Bus Interface", "org.freedesktop.Application")

 public:
  /// `dispatch` outlives this.
  ApplicationInterface(Dispatch& dispatch, std::vector<OfferedAction> actions)
      : dispatch_(dispatch), actions_(std::move(actions)) {}

  /// Called on the main queue. The caller has its answer before, or gets the one that is given when
  /// the action is one that is awaited. May be empty.
  std::function<void(const ActionRequest&, const ActionAnswer&)> onRequest;

 public slots:
  // The platform data tells of the user's action behind the call (a startup notification or an
  // activation token); under X11 our windows take the focus without it.
  void Activate(const QVariantMap& platformData);
  /// Vantorel opens no files: whoever asks sees its panel.
  void Open(const QStringList& uris, const QVariantMap& platformData);
  void ActivateAction(const QString& name, const QVariantList& parameter,
                      const QVariantMap& platformData);

 private:
  void pass(ActionRequest request);
  void passAndAnswer(ActionRequest request);
  void refuse(const QString& reason);

  Dispatch& dispatch_;
  const std::vector<OfferedAction> actions_;
  Lifetime life_;
};

}  // namespace vantorel
