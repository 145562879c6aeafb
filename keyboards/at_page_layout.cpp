#include <QComboBox>
#include <QGroupBox>
#include <QHeaderView>
#include <QLabel>
#include <QPlainTextEdit>
#include <QPushButton>
#include <QShortcut>
#include <QTabWidget>
#include <QTableView>
#include <QVBoxLayout>

#include "inventory_page/proven_bar.h"
#include "keyboards/at_list.h"
#include "keyboards/at_page.h"
#include "keyboards/table_number_hint.h"
#include "widgets/form.h"
#include "widgets/handlers.h"
#include "widgets/number_note.h"
#include "widgets/wire_field.h"

namespace kelvo {
namespace {

// An arrow that points at the key which is awaited; its place stays when it is hidden.
QLabel* MakeArrow(const char* name) {
  auto* arrow = Named(new QLabel(QStringLiteral("→")), name);
  arrow->setAccessibleName(AtPage::tr("wird erwartet"));
  QSizePolicy policy = arrow->sizePolicy();
  policy.setRetainSizeWhenHidden(true);
  arrow->setSizePolicy(policy);
  return arrow;
}

void AddKeyRow(QGridLayout& grid, int row, QLabel* arrow, const QString& prompt, QLabel* code) {
  code->setAccessibleName(prompt);
  grid.addWidget(arrow, row, 0);
  grid.addWidget(new QLabel(prompt), row, 1);
  grid.addWidget(code, row, 2);
}

}  // namespace

AtPage::AtPage(Services services, QWidget* parent) : QWidget(parent), services_(services) {
  auto* column = new QVBoxLayout;
  QWidget* const records = MakeRecords();
  QWidget* const list = MakeList();
  column->addWidget(MakeTerminalTable());
  column->addWidget(MakeKeyboard(), 1);
  auto* row = new QHBoxLayout;
  row->addWidget(list, 1);
  row->addLayout(column, 1);
  auto* page = new QVBoxLayout(this);
  page->addWidget(records);
  page->addLayout(row, 1);
  ConnectControls();
  ConnectList();
  ShowOrder();
  ShowAwaited(Awaited::Nothing);
}

QWidget* AtPage::MakeRecords() {
  ctlATSaetze = Named(new QGroupBox(tr("Gespeicherte Tabellen")), "ctlATSaetze");
  const RecordRow row("cboATTabBez", "cmdATVerwerfen", 30);
  cboATTabBez = row.names;
  // Both keyboards share the wording, deliberately.
  tables_.emplace(RecordEditorBase::Services{services_.tables, row, services_.person},
                  RecordKind{"ATTab",
                             "Bezeichnung für diese Tastaturtabelle :",
                             {},
                             "Umkodiertabelle",
                             NewEntry::First},
                  RecordEditor<Edit>::Screen{
                      [this] { ShowStored(); }, [this](const Edit& edit) { Show(edit); },
                      [this] { return OnScreen(); },
                      [this](const Edit& edit) { return FieldsOf(edit); }, &Pack, &Unpack});
  ctlATSaetze->setLayout(row.layout);
  return ctlATSaetze;
}

QWidget* AtPage::MakeList() {
  auto* group = new QGroupBox(tr("Umkodierte Tasten"));
  list_ = new AtList(this);
  ctlATTabListe = Named(new QTableView, "ctlATTabListe");
  ctlATTabListe->setModel(list_);
  ctlATTabListe->setTabKeyNavigation(false);
  ctlATTabListe->setSelectionMode(QAbstractItemView::SingleSelection);
  ctlATTabListe->setEditTriggers(QAbstractItemView::DoubleClicked |
                                 QAbstractItemView::EditKeyPressed |
                                 QAbstractItemView::AnyKeyPressed);
  ctlATTabListe->verticalHeader()->hide();
  ctlATTabListe->horizontalHeader()->setSectionResizeMode(QHeaderView::Stretch);
  cmdATPaarEntfernen = MakeButton("cmdATPaarEntfernen", tr("Zeile en&tfernen"),
                                  tr("Entfernt die gewählte Zeile (Entf)."));
  cmdATSortieren = MakeButton("cmdATSortieren", tr("Zeilen sort&ieren"),
                              tr("Ordnet die Zeilen nach dem Code der zu ändernden Taste."));
  lblATHinweis = Named(
      new QLabel(tr("Die Zeilen steigen nicht auf: so gesendet bekommt das Terminal eine andere "
                    "Tabelle, als hier steht.")),
      "lblATHinweis");
  FixRoom(lblATHinweis, 2);
  auto* column = new QVBoxLayout(group);
  column->addWidget(LabelFor(ctlATTabListe, tr("Z&u ändernde Taste (links) und neue (rechts), "
                                               "Codes dezimal:")));
  column->addWidget(ctlATTabListe, 1);
  column->addWidget(lblATHinweis);
  column->addLayout(ButtonRow({cmdATPaarEntfernen, cmdATSortieren}));
  return group;
}

QWidget* AtPage::MakeTerminalTable() {
  ctlATTerminal = Named(new QGroupBox(tr("Tabelle im Terminal")), "ctlATTerminal");
  txtATTastNr = Named(new WireField, "txtATTastNr");
  txtATTastNr->setMaximumWidth(fontMetrics().averageCharWidth() * 12);
  cmdSetATTab = MakeButton("cmdSetATTab", tr("übe&rtragen + aktivieren"),
                           tr("Schreibt die Tabelle unter dieser Nummer in das EEPROM und "
                              "aktiviert sie."));
  cmdClearATTast = MakeButton("cmdClearATTast", tr("Tabelle im Display &löschen"),
                              tr("Löscht die Tabelle dieser Nummer im EEPROM, ohne nachzufragen."));
  cmdATRead = MakeButton("cmdATRead", tr("Tabelle le&sen"),
                         tr("Zeigt den Tabellenspeicher des Terminals."));
  QFormLayout* form = MakeForm(ctlATTerminal);
  ShowTableNumberRange(*txtATTastNr,
                       *Named(AddRow(form, tr("Tabellen-&Nummer:"), txtATTastNr, tr("0 … 255")),
                              "lblATTastNrBereich"));
  lblATTastBelegt =
      new NumberNote("lblATTastBelegt", *txtATTastNr, [this] { return TableToWrite(); });
  form->addRow(lblATTastBelegt);
  cmdATUebernehmen = MakeButton("cmdATUebernehmen", tr("Gelesenes übernehmen"),
                                tr("Zeigt die gelesene Tabelle in der Liste, als Änderung dieses "
                                   "Satzes."));
  cmdATUebernehmen->setEnabled(false);
  lblATGelesen = Named(new QLabel, "lblATGelesen");
  FixRoom(lblATGelesen, 2);
  form->addRow(ButtonRow({cmdSetATTab, cmdClearATTast, cmdATRead}));
  auto* read = new QHBoxLayout;
  read->addWidget(cmdATUebernehmen);
  read->addWidget(lblATGelesen, 1);
  form->addRow(read);
  if (services_.writeDesk != nullptr) {
    form->addRow(new ProvenBar("ATTab", *services_.writeDesk, services_.person,
                               [this] { return OrderShown(); }));
  }
  return ctlATTerminal;
}

QWidget* AtPage::MakeKeyboard() {
  auto* group = new QGroupBox(tr("Tastatur am Terminal"));
  cmdATTab = Named(new QTabWidget, "cmdATTab");
  cmdATTab->setAccessibleName(tr("Prüfen oder Anlernen"));
  cmdATTab->addTab(MakeTest(), tr("&Prüfen"));
  cmdATTab->addTab(MakeLearning(), tr("Anl&ernen"));
  cmdATumkodierenStart =
      MakeButton("cmdATumkodierenStart", tr("be&ginnen"),
                 tr("Leert die Liste und füllt sie mit Tasten, die am Terminal gedrückt werden."));
  cmdATumkodierenEnde =
      MakeButton("cmdATumkodierenEnde", tr("&fertig"), tr("Beendet das Anlernen (Esc)."));
  cmdATumkodierenEnde->setEnabled(false);
  auto* row = new QHBoxLayout;
  row->addWidget(new QLabel(tr("Umkodieren durch Tastendruck:")));
  row->addWidget(cmdATumkodierenStart);
  row->addWidget(cmdATumkodierenEnde);
  row->addStretch();
  auto* column = new QVBoxLayout(group);
  column->addWidget(cmdATTab, 1);
  column->addLayout(row);
  return group;
}

QWidget* AtPage::MakeTest() {
  auto* page = new QWidget;
  lblATKlartext = Named(new QPlainTextEdit, "lblATKlartext");
  lblATKlartext->setReadOnly(true);
  lblATKlartext->setTabChangesFocus(true);
  lblATKlartext->setMinimumHeight(fontMetrics().lineSpacing() * 2);
  lblAThexcode = MakeValue("lblAThexcode");
  lblAThexcode->setToolTip(tr("Der Code des letzten Zeichens, dezimal."));
  cmdATKlartextclear = MakeButton("cmdATKlartextclear", tr("Te&xt löschen"));
  auto* form = new QFormLayout(page);
  form->addRow(LabelFor(lblATKlartext, tr("&Klartext:")), lblATKlartext);
  form->addRow(LabelFor(lblAThexcode, tr("Hex-Code:")), lblAThexcode);
  form->addRow(QString(), ButtonRow({cmdATKlartextclear}));
  return page;
}

QWidget* AtPage::MakeLearning() {
  auto* page = new QWidget;
  lblATalterCode = MakeValue("lblATalterCode");
  lblATneuerCode = MakeValue("lblATneuerCode");
  lblATalterCodePfeil = MakeArrow("lblATalterCodePfeil");
  lblATneuerCodePfeil = MakeArrow("lblATneuerCodePfeil");
  lblATLernhinweis = Named(new QLabel, "lblATLernhinweis");
  lblATLernhinweis->setWordWrap(true);
  auto* grid = new QGridLayout;
  AddKeyRow(*grid, 0, lblATalterCodePfeil, tr("zu ändernde Taste drücken :"), lblATalterCode);
  AddKeyRow(*grid, 1, lblATneuerCodePfeil, tr("neue Taste drücken :"), lblATneuerCode);
  grid->setColumnStretch(2, 1);
  auto* column = new QVBoxLayout(page);
  column->addLayout(grid);
  column->addWidget(lblATLernhinweis);
  column->addStretch();
  return page;
}

void AtPage::ConnectControls() {
  Operator& person = services_.person;
  OnClick(cmdATPaarEntfernen, this, person, &AtPage::cmdATPaarEntfernen_Click);
  OnClick(cmdATSortieren, this, person, &AtPage::cmdATSortieren_Click);
  OnSend(cmdSetATTab, this, person, &AtPage::cmdSetATTab_Click);
  OnSend(cmdClearATTast, this, person, &AtPage::cmdClearATTast_Click);
  OnSend(cmdATRead, this, person, &AtPage::cmdATRead_Click);
  OnClick(cmdATUebernehmen, this, person, &AtPage::cmdATUebernehmen_Click);
  OnClick(cmdATKlartextclear, this, person, &AtPage::cmdATKlartextclear_Click);
  OnClick(cmdATumkodierenStart, this, person, &AtPage::cmdATumkodierenStart_Click, Speaks::Listens);
  OnClick(cmdATumkodierenEnde, this, person, &AtPage::cmdATumkodierenEnde_Click, Speaks::ToStop);
  AddShortcut(cmdATumkodierenEnde, QKeySequence(Qt::Key_Escape));
  connect(cmdATTab, &QTabWidget::currentChanged, this, &AtPage::cmdATTab_Click);
  connect(cboATTabBez, &QComboBox::activated, this,
          [this] { Guarded(services_.person, "cboATTabBez", [this] { cboATTabBez_Click(); }); });
  connect(txtATTastNr, &WireField::textChanged, this, &AtPage::Edited);
  connect(txtATTastNr, &WireField::Refused, this, [&person] { person.Beep(); });
}

void AtPage::ConnectList() {
  auto* const editor = new AtListDelegate(this);
  ctlATTabListe->setItemDelegate(editor);
  connect(editor, &AtListDelegate::Refused, this, [this] { services_.person.Beep(); });
  connect(list_, &AtList::Edited, this, &AtPage::Edited);
  connect(list_, &AtList::Refused, this, [this](const QString& reason) {
    services_.person.Beep();
    NoteRefusal();
    Q_EMIT Hint(reason);
  });
  auto* const remove = new QShortcut(QKeySequence::Delete, ctlATTabListe);
  remove->setContext(Qt::WidgetShortcut);
  connect(remove, &QShortcut::activated, cmdATPaarEntfernen, &QPushButton::click);
}

}  // namespace kelvo
