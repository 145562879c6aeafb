#pragma once

#include <QFrame>
#include <QTimer>
#include <string>
#include <vector>

#include "bus/stored_terminals.h"
#include "link/line_state.h"

class QLabel;
class QPushButton;
class QSpinBox;
class QToolButton;

namespace kelvo {

/// The slim strip at the top edge: which port is open, which Terminal of the bus listens, and
/// whether it answers. It sends nothing by itself.
class HeadStrip : public QFrame {
  Q_OBJECT

 public:
  explicit HeadStrip(const LineState& state, QWidget* parent = nullptr);

  QPushButton* SelectButton() const { return cmdDovuAktivieren; }
  QPushButton* CheckButton() const { return cmdVerbindungPruefen; }

  int Address() const;
  void SetAddress(int address);
  void ShowPort(const QString& text);
  QString Port() const;
  void SetTerminals(std::vector<StoredTerminal> terminals);
  /// The stored name of an address; empty for none, and for the one that a search gives.
  std::string NameOf(int address) const;
  /// Something of the state has changed.
  void ShowState();

 protected:
  void showEvent(QShowEvent* event) override;
  void hideEvent(QHideEvent* event) override;
  bool eventFilter(QObject* watched, QEvent* event) override;

 private:
  void MakeControls();
  void MakeLabels();
  void Watch();
  void ShowAnswer();

  const LineState& state_;
  std::vector<StoredTerminal> terminals_;
  QTimer age_{this};  // runs only while the words are seen and change
  QSpinBox* ctlUpDownAdrDovu;
  QToolButton* cmdDovuName;
  QPushButton* cmdDovuAktivieren;
  QPushButton* cmdVerbindungPruefen;
  QLabel* lblPort;
  QLabel* lblHoerer;
  QLabel* lblTerminal;
  QLabel* lblAntwort;
};

}  // namespace kelvo
