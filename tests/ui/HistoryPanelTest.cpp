// SPDX-License-Identifier: MIT
#include "ui/HistoryPanelTest.h"

#include <QApplication>
#include <QLabel>
#include <QTest>
#include <QWindow>
#include <algorithm>

#include "chrome/ElasticScrollView.h"
#include "chrome/PopoverWindow.h"
#include "chrome/ToastPanel.h"
#include "chrome/VantorelPanel.h"
#include "panel/ClipRowView.h"
#include "panel/SearchField.h"
#include "panel/TextPreview.h"

namespace vantorel {

HistoryPanelTest::HistoryPanelTest()
    : paste_(*store_, PasteServices{pasteboard_, workspace_, input_, dispatch_,
                                    std::make_shared<PosixFileSystem>(), images_}),
      target_(workspace_.launch(42, "org.example.Editor", "Editor")) {
  screens_.setMouseLocation({5, 500});
  workspace_.onActivate = [this](const RunningApplication& application) {
    workspace_.bringToFront(application.processIdentifier);
  };
  controller_ = std::make_unique<HistoryPanelController>(
      *store_, paste_,
      PanelServices{dispatch_, screens_, monitors_, accessibility_, store_.files(),
                    std::make_shared<PosixFileSystem>(), images_, thumbnails_, icons_, &backdrops_,
                    &spaces_});
  store_->onChange = [this] { controller_->refreshIfVisible(); };
  store_->onSearchIndexChange = [this] { controller_->refreshSearchIfVisible(); };
}

HistoryPanelTest::~HistoryPanelTest() {
  store_->onChange = nullptr;
  store_->onSearchIndexChange = nullptr;
}

std::vector<Uuid> HistoryPanelTest::addTexts(const std::vector<std::string>& texts) {
  std::vector<Uuid> ids(texts.size());
  for (std::size_t i = texts.size(); i-- > 0;) ids[i] = store_.addText(texts[i]);
  return ids;
}

std::vector<Uuid> HistoryPanelTest::addTexts(const std::vector<std::string>& texts,
                                             std::size_t pins) {
  const auto ids = addTexts(texts);
  for (std::size_t i = 0; i < pins; ++i) {
    EXPECT_EQ(store_->togglePinned(ids[i]), PinResult::toggled);
  }
  return ids;
}

void HistoryPanelTest::addNumbered(int count) {
  std::vector<std::string> names;
  for (int i = 1; i <= count; ++i) names.push_back("entry " + std::to_string(i));
  addTexts(names);
}

void HistoryPanelTest::open() {
  controller_->toggle(target_);
  QCoreApplication::processEvents();
}

void HistoryPanelTest::press(Qt::Key key, Qt::KeyboardModifiers modifiers) {
  QTest::keyClick(panel().windowHandle(), key, modifiers);
}

void HistoryPanelTest::type(const std::string& text) {
  for (const char c : text) QTest::keyClick(panel().windowHandle(), c);
}

void HistoryPanelTest::click(std::size_t row) {
  QTest::mouseClick(rows().at(row), Qt::LeftButton, {}, QPoint(100, 20));
}

VantorelPanel& HistoryPanelTest::panel() const {
  VantorelPanel* found = nullptr;
  const auto widgets = QApplication::topLevelWidgets();
  for (auto* widget : widgets) {
    if (widget->windowTitle() != QStringLiteral("Vantorel")) continue;
    EXPECT_EQ(found, nullptr) << "Another window has the panel's title";
    found = qobject_cast<VantorelPanel*>(widget);
  }
  return *found;
}

SearchField& HistoryPanelTest::searchField() const { return *panel().findChild<SearchField*>(); }

ElasticScrollView& HistoryPanelTest::scrollView() const {
  return *panel().findChild<ElasticScrollView*>();
}

std::vector<ClipRowView*> HistoryPanelTest::rows() const {
  std::vector<ClipRowView*> shown;
  const auto all = panel().findChildren<ClipRowView*>();
  std::copy_if(all.begin(), all.end(), std::back_inserter(shown),
               [](const auto* row) { return !row->isHidden(); });
  std::sort(shown.begin(), shown.end(),
            [](const auto* a, const auto* b) { return a->y() < b->y(); });
  return shown;
}

std::vector<std::string> HistoryPanelTest::titles() const {
  std::vector<std::string> result;
  for (const auto* row : rows()) result.push_back(row->content().title);
  return result;
}

std::vector<std::string> HistoryPanelTest::selectedTitles() const {
  std::vector<std::string> result;
  for (const auto* row : rows()) {
    if (row->isSelected()) result.push_back(row->content().title);
  }
  return result;
}

std::string HistoryPanelTest::previewed() {
  std::string text;
  const auto widgets = QApplication::topLevelWidgets();
  for (auto* widget : widgets) {
    if (!widget->isVisible() || qobject_cast<PopoverWindow*>(widget) == nullptr) continue;
    EXPECT_EQ(text, "") << "Two previews are shown";
    text = widget->findChild<TextPreview*>()->toPlainText().toStdString();
  }
  return text;
}

std::string HistoryPanelTest::sentence() const {
  const auto* label = panel().findChild<QLabel*>();
  return label->isHidden() ? std::string() : label->text().toStdString();
}

bool HistoryPanelTest::searchIsShown() const { return !searchField().isHidden(); }

std::vector<std::string> HistoryPanelTest::toasts() {
  std::vector<std::string> result;
  const auto widgets = QApplication::topLevelWidgets();
  for (auto* widget : widgets) {
    const auto* toast = qobject_cast<ToastPanel*>(widget);
    if (toast != nullptr && toast->isVisible())
      result.push_back(toast->windowTitle().toStdString());
  }
  return result;
}

std::string HistoryPanelTest::pasted() const {
  return pasteboard_.contents().string.value_or(std::string());
}

}  // namespace vantorel
