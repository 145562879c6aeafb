#pragma once

#include <QWidget>
#include <array>

#include "base/operator.h"
#include "link/exchange.h"
#include "store/recordset.h"
#include "terminal/terminal_state.h"

class QCheckBox;
class QGroupBox;
class QLabel;
class QLineEdit;
class QPlainTextEdit;
class QPushButton;

namespace kelvo {

class ReadMark;
class WireField;

/// The status page: identity and state of the Terminal, and its basic settings.
class StatusPage : public QWidget {
  Q_OBJECT

 public:
  struct Services {
    Exchange& exchange;
    Operator& person;
    TerminalState& state;
    Recordset& defaults;  ///< `Default`
  };
  explicit StatusPage(Services services, QWidget* parent = nullptr);

  /// The resolution that the settings record holds.
  void ShowStoredResolution();
  /// The page is shown: while the flash state is unknown the Terminal is asked for it.
  void Shown();
  /// What is shown of the system's information is out of date.
  void BlankSysInfo();
  /// How the port lines stand is not known any more.
  void ForgetPorts();

 Q_SIGNALS:
  /// The display has a new size, in pixels; the drawing surface follows.
  void ResolutionSet(int x, int y);

 private:
  QWidget* MakeIdentity();
  QWidget* MakeFlash();
  QWidget* MakeAddress();
  QWidget* MakePorts();
  QWidget* MakeResolution();
  void ConnectControls();
  void ShowFlashFrame();
  void ShowFlash(bool has, const QString& lack);
  std::string Mark(const Reply& reply) const;

  void cmdGetVersion_Click();
  void cmdGetAdresse_Click();
  void cmdSetAdresse_Click();
  void txtAdresse_Change();
  void cmdGetPort_Click();
  void cmdSetPort_Click();
  void chkPortP0_Click();
  void cmdSetRes_Click();
  void txtDisplayX_LostFocus();
  void txtDisplayY_LostFocus();
  void cmdGetFlashInfo_Click();
  void cmdFlashUpdate_Click();

  Services services_;
  QLabel* lblVersion;
  QPlainTextEdit* lblSysInfo;
  QPushButton* cmdGetVersion;
  ReadMark* lblVersionStand;
  QGroupBox* ctlFlashFrame;
  QLabel* lblSektorAnzahl;
  QLabel* lblSektorSize;
  QPushButton* cmdGetFlashInfo;
  ReadMark* lblFlashStand;
  QLabel* lblFlashLack;
  QPushButton* cmdFlashUpdate;
  QLineEdit* txtAdresse;
  QPushButton* cmdGetAdresse;
  ReadMark* lblAdresseStand;
  QPushButton* cmdSetAdresse;
  std::array<QCheckBox*, 8> chkPortP0;
  std::array<QCheckBox*, 8> chkPortP1;
  QLabel* lblPortP0;
  QLabel* lblPortP1;
  QPushButton* cmdGetPort;
  ReadMark* lblPortP0Stand;
  ReadMark* lblPortP1Stand;
  QPushButton* cmdSetPort;
  QLineEdit* txtDisplayX;
  QLineEdit* txtDisplayY;
  WireField* txtDisplayOption;
  QPushButton* cmdSetRes;
};

}  // namespace kelvo
