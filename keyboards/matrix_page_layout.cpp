#include <QCheckBox>
#include <QComboBox>
#include <QGridLayout>
#include <QGroupBox>
#include <QLabel>
#include <QPushButton>
#include <QVBoxLayout>

#include "inventory_page/proven_bar.h"
#include "keyboards/key_cell.h"
#include "keyboards/matrix_page.h"
#include "keyboards/table_number_hint.h"
#include "widgets/form.h"
#include "widgets/handlers.h"
#include "widgets/number_note.h"

namespace kelvo {

MatrixPage::MatrixPage(Services services, QWidget* parent) : QWidget(parent), services_(services) {
  auto* column = new QVBoxLayout;
  QWidget* const records = MakeRecords();
  QWidget* const grid = MakeGrid();
  column->addWidget(MakeTerminalTable());
  column->addWidget(MakeScanning());
  column->addStretch();
  auto* row = new QHBoxLayout;
  row->addWidget(grid, 0, Qt::AlignTop);
  row->addLayout(column, 1);
  auto* page = new QVBoxLayout(this);
  page->addWidget(records);
  page->addLayout(row);
  page->addStretch(1);
  OrderTabs();
  ConnectControls();
}

QWidget* MatrixPage::MakeRecords() {
  auto* group = new QGroupBox(tr("Gespeicherte Tabellen"));
  const RecordRow row("cboTastTabBez", "cmdTastVerwerfen", 30);
  cboTastTabBez = row.names;
  // Both keyboards share the wording, deliberately.
  tables_.emplace(
      RecordEditorBase::Services{services_.tables, row, services_.person},
      RecordKind{"MatrixTab",
                 "Bezeichnung für diese Tastaturtabelle :",
                 {},
                 "Umkodiertabelle",
                 NewEntry::First},
      RecordEditor<Edit>::Screen{[this] { ShowStored(); }, [this](const Edit& edit) { Show(edit); },
                                 [this] { return OnScreen(); }, &FieldsOf, &Pack, &Unpack});
  group->setLayout(row.layout);
  return group;
}

QWidget* MatrixPage::MakeGrid() {
  auto* group = new QGroupBox(tr("&Tastenfeld"));
  auto* column = new QVBoxLayout(group);
  auto* grid = new QGridLayout;
  grid->setSpacing(fontMetrics().averageCharWidth() / 2);
  MakeColumnHeads(*grid);
  for (int row = 0; row < kMatrixLines; ++row) MakeRow(*grid, row);
  lblTastHinweis =
      Named(new QLabel(tr("Die Zeilen und Spalten ankreuzen, an denen Tasten liegen.")),
            "lblTastHinweis");
  QSizePolicy policy = lblTastHinweis->sizePolicy();
  policy.setRetainSizeWhenHidden(true);
  lblTastHinweis->setSizePolicy(policy);
  column->addLayout(grid);
  column->addWidget(lblTastHinweis);
  column->addWidget(new QLabel(tr("Ein Zeichen, #13 (dezimal), &1B (hexadezimal) oder leer.")));
  return group;
}

void MatrixPage::MakeColumnHeads(QGridLayout& grid) {
  for (int column = 0; column < kMatrixLines; ++column) {
    auto* box = Named(new QCheckBox(tr("P1.%1").arg(column)), ArrayName("chkTastSpalte", column));
    box->setToolTip(tr("Spalte %1 an Eingang %1 von Port P1").arg(column));
    box->setAccessibleName(tr("Spalte %1").arg(column));
    chkTastSpalte[static_cast<std::size_t>(column)] = box;
    grid.addWidget(box, 0, column + 1);
    connect(box, &QCheckBox::toggled, this, [this, column] { chkTastSpalte_Click(column); });
  }
}

void MatrixPage::MakeRow(QGridLayout& grid, int row) {
  const int line = kMatrixLines - 1 - row;
  auto* box = Named(new QCheckBox(tr("P0.%1").arg(line)), ArrayName("chkTastZeile", row));
  box->setToolTip(tr("Zeile %1 an Ausgang %2 von Port P0").arg(row).arg(line));
  box->setAccessibleName(tr("Zeile %1").arg(row));
  chkTastZeile[static_cast<std::size_t>(row)] = box;
  grid.addWidget(box, row + 1, 0);
  connect(box, &QCheckBox::toggled, this, [this, row] { chkTastZeile_Click(row); });
  for (int column = 0; column < kMatrixLines; ++column) {
    const int index = KeyIndex(row, column);
    auto* cell = Named(new KeyCell, ArrayName("txtTastMatrix", index));
    QSizePolicy policy = cell->sizePolicy();
    policy.setRetainSizeWhenHidden(true);
    cell->setSizePolicy(policy);
    cell->setAccessibleName(tr("Taste Zeile %1, Spalte %2").arg(row).arg(column));
    cell->hide();
    txtTastMatrix[static_cast<std::size_t>(index)] = cell;
    grid.addWidget(cell, row + 1, column + 1);
  }
}

// First all lines, then key by key along the rows, as the keypad is read.
void MatrixPage::OrderTabs() {
  QWidget* before = chkTastSpalte.front();
  const auto next = [&before](QWidget* control) {
    if (control != before) QWidget::setTabOrder(before, control);
    before = control;
  };
  for (QCheckBox* const column : chkTastSpalte) next(column);
  for (QCheckBox* const row : chkTastZeile) next(row);
  for (int row = 0; row < kMatrixLines; ++row) {
    for (int column = 0; column < kMatrixLines; ++column) next(Cell(KeyIndex(row, column)));
  }
  next(txtTastTabNr);
}

QWidget* MatrixPage::MakeTerminalTable() {
  auto* group = new QGroupBox(tr("Tabelle im Terminal"));
  txtTastTabNr = Named(new WireField, "txtTastTabNr");
  txtTastTabNr->setMaximumWidth(fontMetrics().averageCharWidth() * 12);
  cmdSetMatrixTab =
      MakeButton("cmdSetMatrixTab", tr("übe&rtragen + aktivieren"),
                 tr("Schaltet die Tastatur ein, schreibt die Tabelle unter dieser Nummer in das "
                    "EEPROM und aktiviert sie."));
  cmdClearMatrixTast = MakeButton("cmdClearMatrixTast", tr("Tabelle im Display &löschen"),
                                  tr("Löscht die Tabelle dieser Nummer im EEPROM, ohne "
                                     "nachzufragen."));
  cmdMatrixRead = MakeButton("cmdMatrixRead", tr("Tabelle le&sen"),
                             tr("Zeigt den Tabellenspeicher des Terminals."));
  QFormLayout* form = MakeForm(group);
  ShowTableNumberRange(*txtTastTabNr,
                       *Named(AddRow(form, tr("Tabellen-&Nummer:"), txtTastTabNr, tr("0 … 255")),
                              "lblTastTabNrBereich"));
  lblTastTabBelegt =
      new NumberNote("lblTastTabBelegt", *txtTastTabNr, [this] { return ShownTable(); });
  form->addRow(lblTastTabBelegt);
  form->addRow(cmdSetMatrixTab);
  if (services_.writeDesk != nullptr) {
    form->addRow(new ProvenBar("MatrixTab", *services_.writeDesk, services_.person,
                               [this] { return OrderShown(); }));
  }
  form->addRow(cmdClearMatrixTast);
  cmdMatrixUebernehmen = MakeButton("cmdMatrixUebernehmen", tr("Gelesenes übernehmen"),
                                    tr("Zeigt die gelesene Tabelle im Tastenfeld, als Änderung "
                                       "dieses Satzes."));
  cmdMatrixUebernehmen->setEnabled(false);
  lblMatrixGelesen = Named(new QLabel, "lblMatrixGelesen");
  FixRoom(lblMatrixGelesen, 2);
  form->addRow(cmdMatrixRead);
  form->addRow(cmdMatrixUebernehmen);
  form->addRow(lblMatrixGelesen);
  return group;
}

QWidget* MatrixPage::MakeScanning() {
  auto* group = new QGroupBox(tr("Tastatur am Terminal"));
  cmdMatrixEnable = MakeButton("cmdMatrixEnable", tr("a&ktivieren"),
                               tr("Das Terminal fragt die angekreuzten Leitungen ab."));
  cmdMatrixDisable = MakeButton("cmdMatrixDisable", tr("deakti&vieren"),
                                tr("Das Terminal fragt die Tastatur nicht mehr ab."));
  lblTastKlartext = MakeValue("lblTastKlartext");
  QFormLayout* form = MakeForm(group);
  form->setFieldGrowthPolicy(QFormLayout::ExpandingFieldsGrow);
  form->addRow(ButtonRow({cmdMatrixEnable, cmdMatrixDisable}));
  form->addRow(LabelFor(lblTastKlartext, tr("Gedrückt:")), lblTastKlartext);
  return group;
}

void MatrixPage::ConnectControls() {
  Operator& person = services_.person;
  OnSend(cmdSetMatrixTab, this, person, &MatrixPage::cmdSetMatrixTab_Click);
  OnSend(cmdClearMatrixTast, this, person, &MatrixPage::cmdClearMatrixTast_Click);
  OnSend(cmdMatrixRead, this, person, &MatrixPage::cmdMatrixRead_Click);
  OnClick(cmdMatrixUebernehmen, this, person, &MatrixPage::cmdMatrixUebernehmen_Click);
  OnSend(cmdMatrixEnable, this, person, &MatrixPage::cmdMatrixEnable_Click);
  OnSend(cmdMatrixDisable, this, person, &MatrixPage::cmdMatrixDisable_Click);
  connect(cboTastTabBez, &QComboBox::activated, this, [this] {
    Guarded(services_.person, "cboTastTabBez", [this] { cboTastTabBez_Click(); });
  });
  for (int index = 0; index < kMatrixKeys; ++index) {
    KeyCell* const cell = Cell(index);
    connect(cell, &KeyCell::Left, this, [this, index] { txtTastMatrix_LostFocus(index); });
    connect(cell, &KeyCell::NeighbourWanted, this,
            [this, index](int rows, int columns) { MoveFocus(index, rows, columns); });
    connect(cell, &KeyCell::textChanged, this, [this, index] {
      ShowMeaning(index);
      Edited();
    });
    connect(cell, &KeyCell::Refused, this, [this] {
      services_.person.Beep();
      Q_EMIT Hint(tr("Ein solches Zeichen gibt es im Terminal nicht."));
    });
    ShowMeaning(index);
  }
  connect(txtTastTabNr, &WireField::textChanged, this, &MatrixPage::Edited);
  connect(txtTastTabNr, &WireField::Refused, this, [&person] { person.Beep(); });
}

}  // namespace kelvo
