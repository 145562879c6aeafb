#include "keyboards/matrix_page.h"

#include <QCheckBox>
#include <QComboBox>
#include <QLabel>
#include <QPushButton>
#include <QScopedValueRollback>
#include <algorithm>

#include "base/guard.h"
#include "base/val.h"
#include "base/wire_text.h"
#include "keyboards/key_cell.h"
#include "keyboards/key_codes.h"
#include "keyboards/table_number_hint.h"
#include "keyboards/table_order.h"
#include "link/control_characters.h"
#include "terminal/eeprom.h"
#include "widgets/handlers.h"
#include "widgets/number_note.h"

namespace kelvo {
namespace {

// As many as the label has room for, so that the newest are seen.
constexpr std::size_t kKlartextShown = 24;

QString RefusalText(CellRefusal refusal) {
  switch (refusal) {
    case CellRefusal::DecimalRange:
      return MatrixPage::tr("hinter # steht eine Zahl von 0 bis 255.");
    case CellRefusal::NoHexCode:
      return MatrixPage::tr("hinter & steht eine Hexadezimalzahl bis FF ohne führende Null.");
    case CellRefusal::UnknownForm:
      return MatrixPage::tr(
          "erlaubt sind ein Zeichen, # mit Dezimalzahl und & mit Hexadezimalzahl.");
    case CellRefusal::None:
      break;
  }
  return {};
}

WiredLines Ticked(const std::array<QCheckBox*, kMatrixLines>& boxes) {
  WiredLines lines{};
  for (std::size_t line = 0; line < kMatrixLines; ++line) lines[line] = boxes[line]->isChecked();
  return lines;
}

// In which of its forms a cell names its code.
QString FormText(const std::string& cell) {
  if (cell.empty()) return MatrixPage::tr("keine Taste");
  if (cell == " ") return MatrixPage::tr("Leerzeichen");
  if (cell.size() == 1) return MatrixPage::tr("Zeichen %1").arg(GlyphText(cell));
  if (cell.front() == '#') return MatrixPage::tr("dezimaler Code");
  if (cell.front() == '&') return MatrixPage::tr("hexadezimaler Code");
  return MatrixPage::tr("Position der gedrückten Taste");
}

}  // namespace

MatrixPage::Edit MatrixPage::OnScreen() const {
  Edit edit{{Ticked(chkTastZeile), Ticked(chkTastSpalte), {}}, txtTastTabNr->Wire()};
  for (std::size_t key = 0; key < kMatrixKeys; ++key) {
    edit.table.cells[key] = txtTastMatrix[key]->Wire();
  }
  return edit;
}

void MatrixPage::Show(const Edit& edit) {
  const QScopedValueRollback<bool> showing(showing_, true);
  txtTastTabNr->SetWire(edit.number);
  lblTastTabBelegt->Refresh();  // it is another record's
  for (std::size_t line = 0; line < kMatrixLines; ++line) {
    chkTastZeile[line]->setChecked(edit.table.rows[line]);
    chkTastSpalte[line]->setChecked(edit.table.columns[line]);
  }
  for (std::size_t key = 0; key < kMatrixKeys; ++key) {
    txtTastMatrix[key]->SetWire(edit.table.cells[key]);
  }
}

// A record that was never saved has no table: the grid stays as it is then.
void MatrixPage::DisplayTastTab(std::optional<std::string> table) {
  if (!table) table = tables_->Wert();
  if (!table) return;
  Edit edit = OnScreen();
  edit.table.rows = RowsOf(services_.tables.Number("ausgang"));
  edit.table.columns = ColumnsOf(services_.tables.Number("eingang"));
  edit.table.cells = ReadMatrixTable(*table, edit.table.rows);
  Show(edit);
}

void MatrixPage::ShowStored() {
  txtTastTabNr->SetWire(tables_->NumberField());
  lblTastTabBelegt->Refresh();
  DisplayTastTab();
}

void MatrixPage::NewTastTab() {
  Edit all;
  all.table.rows.fill(true);
  all.table.columns.fill(true);
  tables_->New(all);
}

void MatrixPage::SaveTastTab() { tables_->SaveShown(); }

Fields MatrixPage::FieldsOf(const Edit& edit) {
  const double number = Val(edit.number);
  return {{"ausgang", std::to_string(OutputMask(edit.table.rows))},
          {"eingang", std::to_string(InputMask(edit.table.columns))},
          {"nr_im_display", RoundToEven(number)},
          {"wert", ScreenText(CreateTastTab(number, edit.table).Text())}};
}

// Number, both masks, and the cells.
std::vector<std::string> MatrixPage::Pack(const Edit& edit) {
  std::vector<std::string> packed{edit.number, std::to_string(OutputMask(edit.table.rows)),
                                  std::to_string(InputMask(edit.table.columns))};
  packed.insert(packed.end(), edit.table.cells.begin(), edit.table.cells.end());
  return packed;
}

MatrixPage::Edit MatrixPage::Unpack(const std::vector<std::string>& packed) {
  Edit edit;
  if (packed.size() != kMatrixKeys + 3) return edit;
  edit.number = packed[0];
  edit.table.rows = RowsOf(Val(packed[1]));
  edit.table.columns = ColumnsOf(Val(packed[2]));
  std::copy(packed.begin() + 3, packed.end(), edit.table.cells.begin());
  return edit;
}

void MatrixPage::ShowCell(int row, int column) {
  const bool wired = chkTastZeile[static_cast<std::size_t>(row)]->isChecked() &&
                     chkTastSpalte[static_cast<std::size_t>(column)]->isChecked();
  Cell(KeyIndex(row, column))->setVisible(wired);
}

// Only a line that is taken away empties its boxes: a key that was pressed before its lines were
// ticked has left its code in a hidden one.
void MatrixPage::chkTastZeile_Click(int row) {
  QCheckBox* const line = chkTastZeile[static_cast<std::size_t>(row)];
  Lost lost;
  for (int column = 0; column < kMatrixLines; ++column) {
    ShowCell(row, column);
    if (!line->isChecked()) Empty(KeyIndex(row, column), lost);
  }
  MatrixOutputMask = OutputMask(Ticked(chkTastZeile));
  LinesChanged();
  NoteEmptied(line, lost);
}

void MatrixPage::chkTastSpalte_Click(int column) {
  QCheckBox* const line = chkTastSpalte[static_cast<std::size_t>(column)];
  Lost lost;
  for (int row = 0; row < kMatrixLines; ++row) {
    ShowCell(row, column);
    if (!line->isChecked()) Empty(KeyIndex(row, column), lost);
  }
  MatrixInputMask = InputMask(Ticked(chkTastSpalte));
  LinesChanged();
  NoteEmptied(line, lost);
}

void MatrixPage::Empty(int index, Lost& lost) {
  if (const std::string text = Cell(index)->Wire(); !text.empty()) lost.emplace_back(index, text);
  Cell(index)->clear();
}

void MatrixPage::NoteEmptied(QCheckBox* line, const Lost& lost) {
  if (showing_ || lost.empty()) return;
  const QString name = line->accessibleName();
  NoteLost(tr("Leeren von %1").arg(name), lost, line);
  const QString keys = lost.size() == 1 ? tr("eine Taste") : tr("%1 Tasten").arg(lost.size());
  Q_EMIT Hint(tr("%1 abgewählt und %2 geleert. „Rückgängig“ bringt alles zurück.").arg(name, keys));
}

// `line` is ticked again, if it is one.
void MatrixPage::NoteLost(const QString& deed, const Lost& lost, QCheckBox* line) {
  const std::int64_t record = services_.tables.Bookmark();
  services_.person.Done().Note(deed.toStdString(), [this, record, lost, line] {
    if (services_.tables.Bookmark() != record && !tables_->Select(record)) return;
    if (line != nullptr) line->setChecked(true);
    for (const auto& [index, text] : lost) Cell(index)->SetWire(text);
  });
}

void MatrixPage::Edited() {
  tables_->Edited();
  lblTastTabBelegt->RefreshSoon();
}

void MatrixPage::LinesChanged() {
  lblTastHinweis->setHidden(MatrixOutputMask != 0 && MatrixInputMask != 0);
  Edited();
}

void MatrixPage::txtTastMatrix_LostFocus(int index) {
  KeyCell* const cell = Cell(index);
  if (QString::fromLatin1(cell->Wire()) != cell->text()) {
    return Refuse(index, tr("ein solches Zeichen gibt es im Terminal nicht."));
  }
  const CheckedCell checked = CheckCell(cell->Wire());
  if (checked.refusal != CellRefusal::None) return Refuse(index, RefusalText(checked.refusal));
  cell->SetWire(checked.text);
}

// Without a message box: the operator is on the way to the next key.
void MatrixPage::Refuse(int index, const QString& reason) {
  const QString text = Cell(index)->text();
  Cell(index)->clear();
  services_.person.Beep();
  NoteRefusal();
  Q_EMIT Hint(tr("„%1“ ist kein Tastencode: %2").arg(text, reason));
}

void MatrixPage::ShowMeaning(int index) {
  const std::string cell = Cell(index)->Wire();
  const std::string code = CellCode(cell);
  const QString number = QString::number(RoundToEven(HexField(code)));
  const QString meaning =
      tr("%1, sendet Code %2 ($%3)").arg(FormText(cell), number, QString::fromLatin1(code));
  Cell(index)->setToolTip(meaning);
  Cell(index)->setAccessibleDescription(meaning);
}

// To the next box in that direction which is there.
void MatrixPage::MoveFocus(int index, int rows, int columns) {
  const auto inside = [](int line) { return line >= 0 && line < kMatrixLines; };
  int row = index % kMatrixLines + rows;
  int column = index / kMatrixLines + columns;
  for (; inside(row) && inside(column); row += rows, column += columns) {
    KeyCell* const cell = Cell(KeyIndex(row, column));
    if (!cell->isVisible()) continue;
    cell->setFocus(Qt::TabFocusReason);
    return;
  }
}

void MatrixPage::Received(const std::string& characters) {
  // The highlight lasts one interval from the last key on.
  services_.exchange.RestartTimeout();
  for (const char key : characters) keys_.Show({&key, 1});
}

std::string MatrixPage::KeyText(int index) const { return Cell(index)->Wire(); }

// A code that was entered gives way to the position of the pressed key, but can be taken back.
void MatrixPage::SetKeyText(int index, const std::string& text) {
  const std::string before = KeyText(index);
  Cell(index)->SetWire(text);
  const bool entered = !before.empty() && !(before.size() > 1 && before.front() == '$');
  if (!entered || CellCode(before) == CellCode(text)) return;
  const QString replaced = tr("%1 durch %2").arg(GlyphText(before), GlyphText(text));
  NoteLost(tr("Ersetzen von %1").arg(replaced), {{index, before}}, nullptr);
  Q_EMIT Hint(tr("%1: Der Tastendruck hat %2 ersetzt. „Rückgängig“ bringt es zurück.")
                  .arg(Cell(index)->accessibleName(), replaced));
}

void MatrixPage::PaintKey(int index, KeyColour colour) { Cell(index)->Paint(colour); }

void MatrixPage::SetKlartext(const std::string& text) {
  klartext_ = text.substr(text.size() - std::min(text.size(), kKlartextShown));
  lblTastKlartext->setText(GlyphText(klartext_));
}

std::optional<std::string> MatrixPage::ModeCommand(const MatrixTable& table) {
  std::optional<std::string> command;
  Guarded(services_.person, "CreateMatrixMode",
          [&] { command = CreateMatrixMode(table.rows, table.columns); });
  return command;
}

std::optional<std::string> MatrixPage::MatrixMode() { return ModeCommand(OnScreen().table); }

void MatrixPage::cmdMatrixEnable_Click() {
  if (const auto command = MatrixMode()) services_.exchange.SendString(*command);
}

void MatrixPage::cmdMatrixDisable_Click() { services_.exchange.SendString(StopMatrix()); }

void MatrixPage::cmdSetMatrixTab_Click() {
  const Edit edit = OnScreen();
  const Sending sending(services_.exchange, {tables_->GivenName(), "MatrixTab"});
  if (!HasRoomForTable(services_.exchange, services_.state, services_.person)) return;
  const auto mode = ModeCommand(edit.table);
  if (!mode) return;
  services_.exchange.SendString(*mode);
  if (SendToEEprom(services_.exchange, services_.person,
                   CreateTastTab(Val(edit.number), edit.table), " / cmdSetMatrixTab")) {
    services_.exchange.SendString(ActivateMatrixTable(TableNumber(edit.number)));
  }
}

// The Terminal reads the table in the mode that goes out in front of it.
std::optional<WriteOrder> MatrixPage::OrderShown() {
  const Edit edit = OnScreen();
  const auto mode = ModeCommand(edit.table);
  if (!mode) return std::nullopt;
  return TableOrder(ItemKind::MatrixTable, CreateTastTab(Val(edit.number), edit.table),
                    tables_->GivenName(), services_.person,
                    {*mode, ActivateMatrixTable(TableNumber(edit.number)).Text(), 0});
}

NumberNote::Shown MatrixPage::ShownTable() const {
  const Edit edit = OnScreen();
  return {tables_->GivenName(), CreateTastTab(Val(edit.number), edit.table).Text()};
}

void MatrixPage::cmdClearMatrixTast_Click() {
  SendToEEprom(services_.exchange, services_.person,
               DeleteKeyTable(TableNumber(txtTastTabNr->Wire())), " / cmdClearMatrixTast");
}

void MatrixPage::cmdMatrixRead_Click() {
  const Reply reply = services_.exchange.SendQuery(AskMatrixTable());
  read_ = reply.Failed() ? std::nullopt : MatrixTableOf(reply.text);
  ShowReadTable(*cmdMatrixUebernehmen, *lblMatrixGelesen, services_.writeDesk, reply,
                read_ ? std::optional(read_->number) : std::nullopt);
  services_.person.Message(ScreenText(reply.text));
}

void MatrixPage::cmdMatrixUebernehmen_Click() {
  if (!read_) return;
  const std::int64_t record = services_.tables.Bookmark();
  const Edit before = OnScreen();
  Show({read_->table, std::to_string(read_->number)});
  tables_->Edited();
  services_.person.Done().Note("Übernehmen der Tabelle", [this, record, before] {
    if (record != 0 && !tables_->Select(record)) return;
    Show(before);
    Edited();
  });
  Q_EMIT Hint(tr("Die gelesene Tabelle steht im Tastenfeld; gespeichert ist sie noch nicht."));
}

}  // namespace kelvo
