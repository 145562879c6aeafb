#pragma once

#include <QGroupBox>

#include "simulator/terminal.h"

class QCheckBox;
class QComboBox;
class QLineEdit;
class QSpinBox;

namespace kelvo::sim {

/// What the operator sets at the device itself.
class SettingsPanel : public QGroupBox {
  Q_OBJECT

 public:
  enum class Echo { Off, Query, Line };
  struct Settings {
    QString version;
    bool flash = true;
    int address = 0;
    Echo echo = Echo::Off;
    Fault fault = Fault::None;
    bool unplugged = false;
    bool operator==(const Settings&) const = default;
  };

  /// What a fault is called in the list, German.
  static QString FaultName(Fault fault);

  explicit SettingsPanel(QWidget* parent = nullptr);
  void Show(const Settings& settings);

 Q_SIGNALS:
  void Changed(const kelvo::sim::SettingsPanel::Settings& settings);

 private:
  Settings Read() const;
  void Report();
  void FillFaults();

  QLineEdit* version_;
  QCheckBox* flash_;
  QSpinBox* address_;
  QComboBox* echo_;
  QComboBox* fault_;
  Settings shown_;
};

}  // namespace kelvo::sim
