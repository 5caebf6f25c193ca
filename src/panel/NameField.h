#pragma once

#include <QLineEdit>

namespace vantorel {

/// A field for a short name, on glass. Text stands at the side where its first letter says that
/// reading begins.
class NameField : public QLineEdit {
  Q_OBJECT

 public:
  static constexpr int fieldWidth = 280;
  static constexpr int fieldHeight = 24;

  explicit NameField(const QString& name);

 protected:
  void paintEvent(QPaintEvent* event) override;
  void changeEvent(QEvent* event) override;

 private:
  void followDirection();
  void applyColors();
};

}  // namespace vantorel
