#pragma once

#include <QGroupBox>
#include <array>

class QCheckBox;

namespace kelvo::sim {

/// A lamp that is on or off.
class Lamp : public QWidget {
  Q_OBJECT

 public:
  /// `name` is what an assistive tool says.
  Lamp(const QString& name, QWidget* parent = nullptr);
  void Set(bool on);
  QSize sizeHint() const override { return {18, 18}; }

 protected:
  void paintEvent(QPaintEvent* event) override;

 private:
  QString name_;
  bool on_ = false;
};

/// The lines of P0 as lamps, those of P1 as switches.
class PortPanel : public QGroupBox {
  Q_OBJECT

 public:
  explicit PortPanel(QWidget* parent = nullptr);
  void Show(int p0, int p1);

 Q_SIGNALS:
  /// The operator has set the lines of P1, bit i = line i.
  void P1Changed(int lines);

 private:
  int Switches() const;

  std::array<Lamp*, 8> p0_{};
  std::array<QCheckBox*, 8> p1_{};
};

}  // namespace kelvo::sim
