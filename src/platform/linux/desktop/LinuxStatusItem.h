// SPDX-License-Identifier: MIT
#pragma once

#include <QObject>
#include <filesystem>
#include <memory>
#include <optional>

#include "platform/StatusItem.h"
#include "platform/linux/bus/StatusNotifierTray.h"
#include "platform/linux/x11/X11TrayIcon.h"

namespace vantorel {

/// The item in whichever tray there is: in one that speaks StatusNotifierItem as long as one is
/// shown, else, with an X server, in one of the older kind, which takes a window in; never in both.
class LinuxStatusItem : public QObject, public StatusItem {
  Q_OBJECT

 public:
  using Services = StatusNotifierTray::Services;

  /// ofItems: no window of ours could be taken in.
  enum class Trays { ofItems, ofBothKinds };

  /// As for `StatusNotifierTray`.
  LinuxStatusItem(Services services, Trays trays, std::filesystem::path iconThemes);
  ~LinuxStatusItem() override;
  LinuxStatusItem(const LinuxStatusItem&) = delete;
  LinuxStatusItem& operator=(const LinuxStatusItem&) = delete;

  void show(Handlers handlers) override;
  void hide() override;
  void setImage(StatusImage image) override;
  void setToolTip(std::string toolTip) override;
  void menuChanged() override;
  /// Whether the pointer is on a window of this program's that is the item.
  [[nodiscard]] bool isUnderPointer() const { return icon_ && icon_->isUnderPointer(); }

 protected:
  /// Hears that the desktop has become dark or light.
  bool eventFilter(QObject* watched, QEvent* event) override;

 private:
  void place();
  [[nodiscard]] bool openIcon();
  void clicked(const TrayClick& click);
  void tellUnseen();

  Services services_;
  Trays trays_;
  StatusNotifierTray notifier_;
  std::unique_ptr<X11TrayIcon> icon_;  // null until it was needed
  std::optional<Handlers> handlers_;   // absent while hidden
  bool toldUnseen_ = false;
  std::optional<bool> hasHost_;  // of the notifier; absent until that is known
  StatusImage image_;
  std::string toolTip_;
};

}  // namespace vantorel
