#pragma once

#include <QWidget>
#include <array>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "base/operator.h"
#include "inventory/write_run.h"
#include "keyboards/key_display.h"
#include "keyboards/read_table.h"
#include "link/exchange.h"
#include "link/receive_events.h"
#include "terminal/terminal_state.h"
#include "widgets/number_note.h"
#include "widgets/record_editor.h"

class QCheckBox;
class QComboBox;
class QGridLayout;
class QLabel;
class QPushButton;

namespace kelvo {

class KeyCell;
class WireField;
class WriteDesk;

/// The matrix keyboard page: which lines the keypad is wired to, what its keys send, the stored
/// tables and the Terminal's own. Pressed keys show on the grid.
///
/// The grid is laid out as the keypad is wired: a column of boxes for each input line, a row for
/// each output line, and a gap where a line is not wired.
class MatrixPage : public QWidget, public Receiver, private KeyGrid {
  Q_OBJECT

 public:
  struct Services {
    Exchange& exchange;
    Operator& person;
    TerminalState& state;
    Recordset& tables;  ///< ctlTastData
    /// Writes with a proof; a page without it offers none.
    WriteDesk* writeDesk = nullptr;
  };
  explicit MatrixPage(Services services, QWidget* parent = nullptr);

  /// The stored records and the edits that are not saved.
  RecordEditorBase& Records() { return *tables_; }
  /// What is said of the number that a table is written under.
  NumberNote& Note() { return *lblTastTabBelegt; }
  /// The page is shown.
  void Shown() { tables_->Refresh(); }

  void NewTastTab();
  void SaveTastTab();
  void DeleteTable() { tables_->Delete(); }
  /// The command texts as the page would send them now. Nothing when it cannot be built, which has
  /// been reported then.
  std::optional<std::string> MatrixMode();

  void Received(const std::string& characters) override;
  void Tick() override { keys_.Release(); }

 Q_SIGNALS:
  /// A line for the status bar.
  void Hint(const QString& text);

 private:
  struct Edit {
    MatrixTable table;
    std::string number;
    bool operator==(const Edit&) const = default;
  };

  QWidget* MakeRecords();
  QWidget* MakeGrid();
  void MakeColumnHeads(QGridLayout& grid);
  void MakeRow(QGridLayout& grid, int row);
  QWidget* MakeTerminalTable();
  QWidget* MakeScanning();
  void ConnectControls();

  // KeyGrid
  std::string KeyText(int index) const override;
  void SetKeyText(int index, const std::string& text) override;
  void PaintKey(int index, KeyColour colour) override;
  std::string Klartext() const override { return klartext_; }
  void SetKlartext(const std::string& text) override;

  KeyCell* Cell(int index) const { return txtTastMatrix[static_cast<std::size_t>(index)]; }
  static Fields FieldsOf(const Edit& edit);
  static std::vector<std::string> Pack(const Edit& edit);
  static Edit Unpack(const std::vector<std::string>& packed);
  Edit OnScreen() const;
  void Show(const Edit& edit);
  void ShowStored();
  void DisplayTastTab(std::optional<std::string> table = {});
  void ShowCell(int row, int column);
  void LinesChanged();
  /// What boxes held that hold it no more, by their indices.
  using Lost = std::vector<std::pair<int, std::string>>;
  void Empty(int index, Lost& lost);
  void NoteEmptied(QCheckBox* line, const Lost& lost);
  void NoteLost(const QString& deed, const Lost& lost, QCheckBox* line);
  void ShowMeaning(int index);
  void Edited();
  void Refuse(int index, const QString& reason);
  void MoveFocus(int index, int rows, int columns);
  void OrderTabs();
  std::optional<std::string> ModeCommand(const MatrixTable& table);

  void chkTastZeile_Click(int row);
  void chkTastSpalte_Click(int column);
  void txtTastMatrix_LostFocus(int index);
  void cboTastTabBez_Click() { tables_->SelectChosen(); }
  void cmdMatrixEnable_Click();
  void cmdMatrixDisable_Click();
  void cmdSetMatrixTab_Click();
  std::optional<WriteOrder> OrderShown();
  NumberNote::Shown ShownTable() const;
  void cmdClearMatrixTast_Click();
  void cmdMatrixRead_Click();
  void cmdMatrixUebernehmen_Click();

  Services services_;
  std::optional<ReadMatrix> read_;  // what the Terminal has told last
  std::optional<RecordEditor<Edit>> tables_;
  bool showing_ = false;  // a record, and not what the operator does
  std::string klartext_;
  KeyDisplay keys_{*this};
  // Of the wired lines; they follow the check boxes.
  std::int16_t MatrixOutputMask = 0;
  std::int16_t MatrixInputMask = 0;

  QComboBox* cboTastTabBez;
  std::array<QCheckBox*, kMatrixLines> chkTastZeile{};
  std::array<QCheckBox*, kMatrixLines> chkTastSpalte{};
  std::array<KeyCell*, kMatrixKeys> txtTastMatrix{};
  QLabel* lblTastHinweis;
  QLabel* lblTastKlartext;
  WireField* txtTastTabNr;
  NumberNote* lblTastTabBelegt;
  QPushButton* cmdMatrixUebernehmen;
  QLabel* lblMatrixGelesen;
  QPushButton* cmdSetMatrixTab;
  QPushButton* cmdClearMatrixTast;
  QPushButton* cmdMatrixRead;
  QPushButton* cmdMatrixEnable;
  QPushButton* cmdMatrixDisable;
};

}  // namespace kelvo
