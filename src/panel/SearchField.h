#pragma once

#include <QLineEdit>
#include <functional>

namespace vantorel {

class SymbolButton;

/// The panel's search field: a magnifying glass, the text, and a button that clears it.
class SearchField : public QLineEdit {
  Q_OBJECT

 public:
  explicit SearchField(QWidget* parent);

  /// Empties the field for good: what was typed cannot be brought back by undoing.
  void forget();

  /// The user has changed the text.
  std::function<void()> onEdit;

 protected:
  void paintEvent(QPaintEvent* event) override;
  void resizeEvent(QResizeEvent* event) override;
  void changeEvent(QEvent* event) override;

 private:
  void applyColors();
  void clearByButton();

  SymbolButton* clearButton_;
};

}  // namespace vantorel
