#pragma once

#include <QGroupBox>

#include "link/exchange.h"
#include "link/operator.h"

class QLabel;
class QPushButton;

namespace kelvo {

class WireField;

/// Sends one command as it is typed, with its own parameters and ";", and shows whatever comes back
/// within 100 ms.
class RawCommand : public QGroupBox {
  Q_OBJECT

 public:
  RawCommand(Exchange& exchange, Operator& person, QWidget* parent = nullptr);

 private:
  void cmdBefehlSenden_Click();

  Exchange& exchange_;
  WireField* Befehl;
  QPushButton* cmdBefehlSenden;
  QLabel* lblDebug;
};

}  // namespace kelvo
