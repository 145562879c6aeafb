#pragma once

#include <QWidget>
#include <array>
#include <functional>
#include <initializer_list>
#include <utility>

#include "base/operator.h"
#include "interfaces/port_control.h"
#include "link/exchange.h"
#include "link/receive_events.h"
#include "store/recordset.h"

class QComboBox;
class QFormLayout;
class QGroupBox;
class QLabel;
class QPushButton;

namespace kelvo {

class DataControl;
class FindDialog;
class WireEdit;
class WireField;

/// The interface page: "Erste Schnittstelle", the link between PC and Terminal, and "Zweite
/// Schnittstelle", through which the Terminal talks to a further device. The lists show the current
/// record of `Schnittstelle`; a choice is stored in it at once and sent only by the buttons.
class InterfacePage : public QWidget, public Receiver {
  Q_OBJECT

 public:
  struct Services {
    Exchange& exchange;
    SerialPort& com1;
    PortControl& portControl;
    Operator& person;
    Recordset& comData;   ///< `Schnittstelle`
    Recordset& defaults;  ///< `Default`
    /// What stands behind "Com n" and how it is, for the operator (UTF-8).
    std::function<std::string(int number)> describePort;
  };
  explicit InterfacePage(Services services, QWidget* parent = nullptr);

  /// Moves to the record that `Default` names, or behind the last when there is none.
  void SelectStoredRecord();
  /// Opens the port of the list and sets it up; false when it could not be opened.
  bool OpenChosenPort();
  /// Opens the port with this number, with the stored set that names it, if one does; true also
  /// when it is open already.
  bool Connect(int number);
  /// Closes the open port and opens it again as it was, which empties both buffers; false when it
  /// could not be opened.
  bool ReopenPort();
  /// The page is shown: the record is read again.
  void Refresh();
  /// Opens the port that was opened last, with the settings it had.
  bool OpenAgain();
  /// The port list falls back to "(keine)"; the record keeps its port.
  void ShowNoPort();
  /// Says again what stands behind the chosen port.
  void DescribePort();
  /// The number of the port that was opened last, 0 if none has been.
  int OpenPortNumber() const { return openPosition_ + 1; }
  /// The open port's rate in bit/s, 0 without one.
  int BaudRate() const;
  /// The port that was opened last, as the list names it.
  std::string ChosenPort() const;
  /// A choice as text ("19200 8N1"), for the status bar.
  QString PortText() const;
  /// Appends what the Terminal's second interface received.
  void Received(const std::string& characters) override;

 Q_SIGNALS:
  /// The PC port has been opened, closed or set up anew.
  void PortChanged();
  /// The operator wants no port.
  void NoPortChosen();
  /// What came of "Verbindung suchen …".
  void SearchEnded(const QString& report, bool failed);

 private:
  QWidget* MakeFirst();
  QWidget* MakeSecond();
  QWidget* MakeRecordChoice();
  void AddLists(QFormLayout* form, std::initializer_list<std::pair<ComList, QString>> lists);
  void AddTraffic(QFormLayout* form);
  QComboBox* MakeList(ComList list);
  void ConnectButtons();
  void ShowRecord();
  void Repositioned();
  void StoreRecordInUse();
  void StoreChoice(ComList list);
  void ApplyDefaults(ComDefaults defaults);
  ComNumbers Numbers() const;
  bool AllChosen(ComList first, ComList last);
  PortSettings Settings() const;
  bool OpenPort(int position, const PortSettings& settings);
  QString MarkedText() const;
  void ShowOpen();
  bool TerminalSwitched(const ComNumbers& numbers);

  void cboCom_Click(ComList list);
  void cmdVerbinden_Click();
  void cmdVerbindungSuchen_Click();
  void MakeFinder();
  bool OpenForFinder();
  void RestoreBeforeFinder();
  void TakeFound(const std::string& settings);
  void cmdSetCom1_Click();
  void cmdSetCom2_Click();
  void cmdDefaultCom1_Click();
  void cmdDefaultCom2_Click();
  void cmdSendCom2_Click();
  void cmdClearReceiveCom2_Click();

  Services services_;
  bool refreshing_ = false;
  int openPosition_ = -1;
  PortSettings openSettings_;
  std::array<QComboBox*, ComListCount> cboCom{};
  QLabel* lblAnschluss = nullptr;
  FindDialog* finder_ = nullptr;
  bool openBeforeFinder_ = false;
  int finderPosition_ = -1;
  QPushButton* cmdVerbinden = nullptr;
  QPushButton* cmdVerbindungSuchen = nullptr;
  QPushButton* cmdSetCom1 = nullptr;
  QPushButton* cmdSetCom2 = nullptr;
  QPushButton* cmdDefaultCom1 = nullptr;
  QPushButton* cmdDefaultCom2 = nullptr;
  QPushButton* cmdSendCom2 = nullptr;
  QPushButton* cmdClearReceiveCom2 = nullptr;
  WireField* txtSendCom2 = nullptr;
  WireEdit* txtReceiveCom2 = nullptr;
  DataControl* ctlComData = nullptr;
};

}  // namespace kelvo
