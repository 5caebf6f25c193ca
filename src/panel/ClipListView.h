#pragma once

#include <QWidget>
#include <functional>
#include <optional>
#include <vector>

#include "panel/RowContent.h"

class QLabel;

namespace vantorel {

class ClipRowView;

/// The document of the list: the rows, the line below the pins, or one sentence when there is
/// nothing to show. It has the keyboard while nothing is typed. Rows are kept and reused.
class ClipListView : public QWidget {
  Q_OBJECT

 public:
  explicit ClipListView(QWidget* parent);

  std::function<void(const Uuid&)> onChoose;
  std::function<void(const Uuid&)> onTogglePin;

  /// Shows these rows from the top, with the line above the row `boundary`.
  void setRows(const std::vector<RowContent>& rows, std::optional<std::size_t> boundary);
  void setEmpty(const QString& sentence);
  /// Marks one row, or none.
  void select(std::optional<std::size_t> index);

  [[nodiscard]] std::size_t rowCount() const { return rowCount_; }
  [[nodiscard]] ClipRowView* row(std::size_t index) const;
  [[nodiscard]] std::optional<std::size_t> selection() const { return selection_; }

 protected:
  void paintEvent(QPaintEvent* event) override;
  void changeEvent(QEvent* event) override;

 private:
  ClipRowView* rowToReuse(std::size_t index);
  void retireRows(std::size_t first);
  void markSelection();
  void tintEmptyLabel();

  std::vector<ClipRowView*> rows_;  // children of this; those from `rowCount_` on are hidden
  std::size_t rowCount_ = 0;
  std::optional<std::size_t> boundary_;
  std::optional<std::size_t> selection_;
  QLabel* emptyLabel_;
};

}  // namespace vantorel
