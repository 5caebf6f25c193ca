// SPDX-License-Identifier: MIT
#include "panel/HistoryPanelView.h"

#include <cmath>

#include "chrome/Geometry.h"
#include "panel/ClipRowView.h"

namespace vantorel {
namespace {

using ListGeometry::SearchBar;

constexpr double cornerRadius = 18;
constexpr QSize initialSize(static_cast<int>(ListGeometry::panelWidth), 360);

}  // namespace

HistoryPanelView::HistoryPanelView(const ChromeServices& services)
    : panel(QStringLiteral("Vantorel"), initialSize, cornerRadius, services.accessibility,
            services.backdrops, VantorelPanel::Kind::window),
      searchField(*new SearchField(&panel.glass())),
      typeFilterButton(*new FilterButton(FilterMenus::typeButtonName, &panel.glass())),
      sourceFilterButton(*new FilterButton(FilterMenus::sourceButtonName, &panel.glass())),
      listScrollView(
          *new ElasticScrollView(services.dispatch, services.accessibility, &panel.glass())),
      list(*new ClipListView(services, nullptr)),
      spoken(*new SpokenNotice(&panel.glass())),
      listHeight_(initialSize.height() - 2 * ListGeometry::margin),
      frame_(toRect(QRect({0, 0}, initialSize))) {
  listScrollView.setFocusPolicy(Qt::NoFocus);
  listScrollView.setMeasures({.line = ListGeometry::rowHeight + ListGeometry::rowGap,
                              .endSpace = ListGeometry::bottomSpace});
  listScrollView.setWidget(&list);
  list.setAutoFillBackground(false);
  for (QWidget* part : searchBarParts()) part->hide();
  list.onSay = [this](const QString& text) { spoken.say(text); };
  // From the field straight to what it has found.
  QWidget::setTabOrder(&searchField, &list);
  QWidget::setTabOrder(&list, &typeFilterButton);
  QWidget::setTabOrder(&typeFilterButton, &sourceFilterButton);
  list.onScroll = [this](double distance) {
    listScrollView.scrollTo(listScrollView.offset() + distance);
  };
  panel.onFrameChange = [this] { list.rowsMoved(); };
  layOut();
}

void HistoryPanelView::setSearchBar(SearchBar searchBar) {
  if (searchBar == searchBar_) return;
  searchBar_ = searchBar;
  const bool shown = searchBar == SearchBar::shown;
  if (!shown) list.setFocus();
  for (QWidget* part : searchBarParts()) part->setVisible(shown);
  layOut();
}

Rect HistoryPanelView::frame() {
  const QRect now = panel.geometry();
  if (now != toQRect(frame_)) frame_ = toRect(now);
  return frame_;
}

void HistoryPanelView::setFrame(const Rect& frame) {
  frame_ = frame;
  panel.setGeometry(toQRect(frame));
}

void HistoryPanelView::setListHeight(double height) {
  if (height == listHeight_) return;
  listHeight_ = height;
  layOut();
}

void HistoryPanelView::layOut() {
  constexpr int x = static_cast<int>(ListGeometry::margin);
  constexpr int width = static_cast<int>(ListGeometry::listWidth);
  // One row alone is lower than the lowest panel: it stands in the middle.
  const double needed = ListGeometry::panelHeight(listHeight_, searchBar_);
  const double spare = needed - 2 * ListGeometry::margin - listHeight_ -
                       (searchBar_ == SearchBar::shown ? ListGeometry::searchSpace : 0);
  int y = x + static_cast<int>(spare / 2);
  if (searchBar_ == SearchBar::shown) {
    layOutSearchBar(x, y, width);
    y += static_cast<int>(ListGeometry::searchSpace);
  }
  listScrollView.setGeometry(x, y, width, static_cast<int>(std::lround(listHeight_)));
}

void HistoryPanelView::layOutSearchBar(int x, int y, int width) {
  constexpr int height = static_cast<int>(ListGeometry::searchFieldHeight);
  constexpr int spacing = static_cast<int>(ListGeometry::searchSpacing);
  const int buttonY = y + (height - FilterButton::side) / 2;
  int right = x + width;
  for (auto* button : {&sourceFilterButton, &typeFilterButton}) {
    right -= FilterButton::side;
    button->move(right, buttonY);
    right -= spacing;
  }
  searchField.setGeometry(x, y, right - x, height);
}

std::array<QWidget*, 3> HistoryPanelView::searchBarParts() const {
  return {&searchField, &typeFilterButton, &sourceFilterButton};
}

void HistoryPanelView::revealRow(std::size_t index) {
  const auto* row = list.row(index);
  if (row == nullptr) return;
  listScrollView.scrollTo(
      ListGeometry::offsetRevealing(toRect(row->geometry()), listScrollView.offset(),
                                    listScrollView.viewport()->height(), list.height()));
}

void HistoryPanelView::warmUp() {
  if (panel.isVisible()) return;
  std::vector<RowContent> samples(3);
  samples[0].title = "Latin";
  samples[0].metadata = "Application  ·  12:34";
  samples[0].symbol = "text.alignleft";
  samples[1].title = "עברית";
  samples[1].symbol = "doc";
  samples[1].kind = ClipKind::files;
  samples[2].title = "Named…";
  samples[2].named = true;
  samples[2].pinned = true;
  samples[2].symbol = "photo";
  samples[2].kind = ClipKind::image;
  list.setRows(samples, 1);
  setListHeight(ListGeometry::listHeight(samples.size(), 1, searchBar_));
  static_cast<void>(panel.grab());
  list.setEmpty({});
}

}  // namespace vantorel
