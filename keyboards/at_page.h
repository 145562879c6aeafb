#pragma once

#include <QWidget>
#include <optional>
#include <string>
#include <vector>

#include "base/event_loop.h"
#include "base/operator.h"
#include "base/serial_port.h"
#include "inventory/write_run.h"
#include "keyboards/read_table.h"
#include "link/exchange.h"
#include "link/receive_events.h"
#include "terminal/terminal_state.h"
#include "widgets/number_note.h"
#include "widgets/record_editor.h"

class QComboBox;
class QGroupBox;
class QLabel;
class QPlainTextEdit;
class QPushButton;
class QTabWidget;
class QTableView;

namespace kelvo {

class AtList;
class WireField;
class WriteDesk;

/// The AT keyboard page: which keys of the PC keyboard at the Terminal get another code, the stored
/// tables and the Terminal's own, and a field that shows what the keyboard sends.
///
/// In learn mode the keys themselves fill the list. It is a nested wait inside its button's
/// handler, and ends with "fertig", with another page, another or a new table, the program or the
/// line.
class AtPage : public QWidget, public Receiver {
  Q_OBJECT

 public:
  struct Services {
    Exchange& exchange;
    SerialPort& com1;
    EventLoop& loop;
    Operator& person;
    TerminalState& state;
    Recordset& tables;  ///< ctlATData
    /// Writes with a proof; a page without it offers none.
    WriteDesk* writeDesk = nullptr;
  };
  explicit AtPage(Services services, QWidget* parent = nullptr);

  /// The stored records and the edits that are not saved.
  RecordEditorBase& Records() { return *tables_; }
  /// What is said of the number that a table is written under.
  NumberNote& Note() { return *lblATTastBelegt; }
  /// The page is shown.
  void Shown();
  /// Another page is shown.
  void Left();
  /// What the Terminal sent unasked; at least one character.
  void Received(const std::string& characters) override;

  void NewATTab();
  void SaveATTab();
  void DeleteTable();
  /// The command of the shown table. Nothing when it cannot be built, which has been reported then.
  std::optional<std::string> ShownTable();
  void StopLearning();

 Q_SIGNALS:
  /// A line for the status bar.
  void Hint(const QString& text);

 private:
  struct Edit {
    AtPairs pairs;
    std::string number;
    bool operator==(const Edit&) const = default;
  };
  enum class Awaited { Nothing, OldKey, NewKey };

  QWidget* MakeRecords();
  QWidget* MakeList();
  QWidget* MakeTerminalTable();
  QWidget* MakeKeyboard();
  QWidget* MakeTest();
  QWidget* MakeLearning();
  void ConnectControls();
  void ConnectList();

  std::optional<Fields> FieldsOf(Edit edit);
  static std::vector<std::string> Pack(const Edit& edit);
  static Edit Unpack(const std::vector<std::string>& packed);
  Edit OnScreen() const;
  void Show(const Edit& edit);
  void ShowStored();
  void DisplayATTab(std::optional<std::string> table = {});
  void Edited();
  void ShowOrder();
  void ShowAwaited(Awaited key);
  void ShowLearning(bool learning);
  bool RowsComplete();
  bool MayLearnAnew();
  bool StoredFormHoldsAllRows();
  void GetATtab();
  std::optional<int> AwaitKey(QLabel& shown);
  std::string ReadKey();
  bool LearnGoesOn() const;
  std::optional<Command> TableCommand(const Edit& edit);

  void cboATTabBez_Click() { tables_->SelectChosen(); }
  void cmdATPaarEntfernen_Click();
  void cmdATSortieren_Click();
  void cmdATumkodierenStart_Click();
  void cmdATumkodierenEnde_Click();
  void cmdATTab_Click(int page);
  void cmdATKlartextclear_Click();
  void cmdSetATTab_Click();
  std::optional<WriteOrder> OrderShown();
  NumberNote::Shown TableToWrite() const;
  void cmdClearATTast_Click();
  void cmdATRead_Click();
  void cmdATUebernehmen_Click();

  Services services_;
  std::optional<ReadAt> read_;  // what the Terminal has told last
  std::optional<RecordEditor<Edit>> tables_;
  /// True ends the learn mode.
  bool LearnStopFlag = true;
  std::string klartext_;
  AtList* list_;

  QGroupBox* ctlATSaetze;
  QGroupBox* ctlATTerminal;
  QComboBox* cboATTabBez;
  QTableView* ctlATTabListe;
  QPushButton* cmdATPaarEntfernen;
  QPushButton* cmdATSortieren;
  QLabel* lblATHinweis;
  WireField* txtATTastNr;
  NumberNote* lblATTastBelegt;
  QPushButton* cmdATUebernehmen;
  QLabel* lblATGelesen;
  QPushButton* cmdSetATTab;
  QPushButton* cmdClearATTast;
  QPushButton* cmdATRead;
  QTabWidget* cmdATTab;
  QPlainTextEdit* lblATKlartext;
  QLabel* lblAThexcode;
  QPushButton* cmdATKlartextclear;
  QLabel* lblATalterCode;
  QLabel* lblATneuerCode;
  QLabel* lblATalterCodePfeil;
  QLabel* lblATneuerCodePfeil;
  QLabel* lblATLernhinweis;
  QPushButton* cmdATumkodierenStart;
  QPushButton* cmdATumkodierenEnde;
};

}  // namespace kelvo
