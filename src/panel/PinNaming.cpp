// SPDX-License-Identifier: MIT
#include "panel/PinNaming.h"

#include <string>

#include "chrome/SheetWindow.h"
#include "panel/NameField.h"

namespace vantorel {

PinNaming::PinNaming(ClipStore& store, const ChromeServices& services, QWidget& panel)
    : store_(store), services_(services), panel_(panel) {}

PinNaming::~PinNaming() = default;

void PinNaming::begin(Uuid id) {
  const auto* found = findById(store_.items(), id);
  if (found == nullptr || !found->pinned() || sheet_) return;
  sheet_ = std::make_unique<SheetWindow>(
      SheetWindow::Question{
          QStringLiteral("Name Pinned Clip"), {}, QStringLiteral("Save"), QStringLiteral("Cancel")},
      services_, &panel_);
  auto* field = new NameField(QString::fromStdString(found->customName.value_or(std::string())));
  sheet_->setAccessory(field);
  sheet_->onFinished = [this, id, field](SheetWindow::Answer answer) {
    const auto name = field->text().toStdString();
    const auto sheet = std::move(sheet_);  // goes when this has been done
    panel_.activateWindow();
    if (answer != SheetWindow::Answer::accepted) return;
    store_.renamePinned(id, name);
    if (onNamed) onNamed(id);
  };
  sheet_->begin(field);
}

void PinNaming::cancel() {
  if (sheet_) sheet_->end(SheetWindow::Answer::cancelled);
}

}  // namespace vantorel
