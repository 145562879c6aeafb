#pragma once

#include <QWidget>
#include <array>
#include <map>
#include <optional>
#include <string>
#include <vector>

#include "base/operator.h"
#include "inventory/write_run.h"
#include "link/exchange.h"
#include "settings/macro_preview.h"
#include "settings/macro_table_model.h"
#include "store/recordset.h"
#include "terminal/terminal_state.h"
#include "widgets/record_editor.h"

class QCheckBox;
class QComboBox;
class QLabel;
class QLineEdit;
class QPushButton;
class QRadioButton;
class QSplitter;

namespace kelvo {

class DeviceFonts;
class MacroDesk;
class MacroEdit;
class MacroTable;
class NumberNote;
class WireField;
class WriteDesk;

/// The macro page: edits macro texts, keeps them under names in the database, writes them into the
/// Terminal, runs and deletes them there.
class MacroPage : public QWidget {
  Q_OBJECT

 public:
  struct Services {
    Exchange& exchange;
    Operator& person;
    TerminalState& state;
    Recordset& macros;  ///< ctlMakroData
    Recordset& defaults;
    const DeviceFonts& fonts;
    /// Writes with a proof; a page without it offers none.
    WriteDesk* writeDesk = nullptr;
    std::function<int()> baudRate{};             ///< of the port, bit/s
    std::function<PresentTerminal()> present{};  ///< for the preview
  };
  explicit MacroPage(Services services, QWidget* parent = nullptr);

  /// The stored records and the edits that are not saved.
  RecordEditorBase& Records() { return *records_; }
  /// What is said of the number that a macro is written under.
  NumberNote& Note() { return *lblMakroBelegt; }
  /// Shows a stored record, of whatever kind.
  void ShowRecord(std::int64_t bookmark);
  /// The page is shown.
  void Shown();
  /// Shows what is known about the Terminal's memory.
  void ShowFreeBytes();

  /// How the stored texts stand to what the Terminal holds; without it the table does not know.
  void SetInTerminal(InTerminalOf inTerminal);
  /// What that function tells may be different now.
  void TerminalChanged();
  /// How the page is divided, to be remembered.
  QByteArray Arrangement() const;
  void Arrange(const QByteArray& arrangement);

  /// Stores a text under a name that the operator is asked for; `number` below 0 means that it has
  /// none in the Terminal. Overwrites a record of that name only after a Yes. False when the
  /// operator gave up.
  bool SaveMakro(const std::string& typ, const std::string& wire, double number,
                 const std::string& proposedName);
  /// Saves what the editor holds.
  void SaveShown();
  /// Appends an empty record and shows it.
  void NewMakro();
  /// Deletes the shown record after a Yes.
  void DeleteMakro() { records_->Delete(); }

 private:
  struct Edit {
    std::string text;
    std::string number;
    bool operator==(const Edit&) const = default;
  };

  QWidget* MakeRecords();
  QWidget* MakeEditor();
  QWidget* MakeWriting();
  QWidget* MakeRunning();
  QWidget* MakePanes();
  void ConnectControls();
  void ConnectTable();
  void ShowRecordsSoon();
  void ShowRecords();
  void NoteMacros();
  std::optional<std::string> NumberedText(int number) const;
  void Show(const Edit& edit);
  static Fields FieldsOf(const std::string& typ, const std::string& wire, double number);
  static double NumberOf(const Edit& edit);
  Edit OnScreen() const;
  void Edited();
  void ShowLength();
  void ShowContext();
  void OfferNumber();
  bool CheckText(const std::string& text);
  std::string ListedTyp() const;
  static std::string OthersOf(const std::string& typ);
  std::string TypToSave();
  void WriteMakro(int number, const std::string& suffix);
  std::optional<WriteOrder> OrderShown();
  void InvalidNumber(QLineEdit* field);
  void LackingNumber(const QString& hint);

  void cboMakro_Click() { records_->SelectChosen(); }
  void chkMakroTyp_Click(int index);
  void TickTyp(int index);
  void cmdInsertESC_Click();
  void cmdInsertTextende_Click();
  void cmdSetMakro_Click();
  void cmdSetAutostartMakro_Click();
  void cmdMakroNrNehmen_Click();
  void cmdPlayMakro_Click();
  void cmdClearMakro_Click();

  Services services_;
  std::optional<RecordEditor<Edit>> records_;
  bool recordsPending_ = false;
  std::map<int, std::string> numbered_;  // macros in the database by their numbers

  QComboBox* cboMakro;
  std::array<QRadioButton*, 5> chkMakroTyp{};  // 1..4
  int shownTyp_ = 0;                           // whose records are in the list; 0: all
  QSplitter* splMakros;
  MacroTable* table_;
  MacroDesk* desk_;
  MacroEdit* txtMakro;  // on the desk
  MacroPreview* preview_;
  QCheckBox* chkVorschau;
  WireField* txtMakroNr;
  WireField* txtMakroNrDisplay;
  QLabel* lblMakroLaenge;
  QLabel* lblMakroFrei;
  NumberNote* lblMakroBelegt;
  QPushButton* cmdInsertESC;
  QPushButton* cmdInsertTextende;
  QPushButton* cmdSetMakro;
  QPushButton* cmdSetAutostartMakro;
  QPushButton* cmdMakroNrNehmen;
  QLabel* lblMakroHinweis;
  QPushButton* cmdPlayMakro;
  QPushButton* cmdClearMakro;
};

}  // namespace kelvo
