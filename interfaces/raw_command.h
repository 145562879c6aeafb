#pragma once

#include <QGroupBox>

#include "base/operator.h"
#include "link/exchange.h"

class QLabel;
class QPushButton;

namespace kelvo {

class WireField;

/// Sends one command as it is typed, with its own parameters and ";", and shows whatever comes back
/// within 100 ms; or the same text without ESC, as it stands, and reads nothing.
class RawCommand : public QGroupBox {
  Q_OBJECT

 public:
  RawCommand(Exchange& exchange, Operator& person, QWidget* parent = nullptr);

 Q_SIGNALS:
  /// A line for the status bar.
  void Hint(const QString& text);

 private:
  void cmdBefehlSenden_Click();
  void cmdSenden_Click();

  Exchange& exchange_;
  WireField* Befehl;
  QPushButton* cmdBefehlSenden;
  QPushButton* cmdSenden;  // index 0; index 1 sends the text of the page
  QLabel* lblDebug;
};

}  // namespace kelvo
