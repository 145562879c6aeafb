#pragma once

#include <QDialog>
#include <array>
#include <string>

#include "shell/outside.h"
#include "store/recordset.h"

class QComboBox;
class QLabel;

namespace kelvo {

/// "Optionen" / "Anschlüsse …": which device stands behind "Com 1" … "Com 6". Each device can be
/// typed or chosen among the ports that the machine has now; how it is stands beside it.
class PortDialog : public QDialog {
  Q_OBJECT

 public:
  static constexpr int kPortCount = 6;

  /// `describe` tells, in German, how a device is.
  using Describer = std::function<std::string(const std::string& device)>;
  PortDialog(const Outside& outside, Recordset& ports, Describer describe, QWidget* parent);

  /// Shows what is stored now.
  void Load();
  /// Looks again which ports there are.
  void Refresh();

  void accept() override;

 private:
  void Describe(int row);
  void ShowState(int row);
  std::string Device(int row) const;
  void Store();

  const Outside& outside_;
  Recordset& ports_;
  Describer describe_;
  std::array<QComboBox*, kPortCount> cboGeraet{};
  std::array<QLabel*, kPortCount> lblZustand{};
  std::array<std::string, kPortCount> states_;  // of the devices
};

}  // namespace kelvo
