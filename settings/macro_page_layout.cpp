#include <QCheckBox>
#include <QComboBox>
#include <QGroupBox>
#include <QLabel>
#include <QPushButton>
#include <QRadioButton>
#include <QSplitter>
#include <QVBoxLayout>

#include "inventory_page/proven_bar.h"
#include "settings/macro_desk.h"
#include "settings/macro_edit.h"
#include "settings/macro_page.h"
#include "settings/macro_table.h"
#include "settings/macros.h"
#include "widgets/contrast.h"
#include "widgets/form.h"
#include "widgets/handlers.h"
#include "widgets/number_note.h"
#include "widgets/wire_field.h"

namespace kelvo {

QWidget* MacroPage::MakeRecords() {
  auto* group = new QGroupBox(tr("Gespeicherte Texte"));
  auto* column = new QVBoxLayout(group);
  auto* kinds = new QHBoxLayout;
  kinds->addWidget(new QLabel(tr("Zeigen:")));
  for (const MakroTyp& typ : kMakroTypen) {
    auto* button = Named(new QRadioButton(QString::fromUtf8(typ.caption)),
                         ArrayName("chkMakroTyp", typ.index));
    chkMakroTyp[static_cast<std::size_t>(typ.index)] = button;
    kinds->addWidget(button);
  }
  kinds->addStretch();

  const RecordRow row("cboMakro", "cmdMakroVerwerfen", 40);
  cboMakro = row.names;
  records_.emplace(RecordEditorBase::Services{services_.macros, row, services_.person},
                   RecordKind{{},
                              "Bezeichnung für dieses Makro :",
                              "Bezeichnung existiert schon, überschreiben ?",
                              "Makro",
                              NewEntry::Last},
                   RecordEditor<Edit>::Screen{
                       [this] {
                         Show({records_->Wert().value_or(""), records_->NumberField()});
                       },
                       [this](const Edit& edit) { Show(edit); }, [this] { return OnScreen(); },
                       [this](const Edit& edit) -> std::optional<Fields> {
                         const std::string typ = services_.macros.Text("typ").value_or("Makro");
                         return FieldsOf(typ, edit.text, NumberOf(edit));
                       },
                       [](const Edit& edit) {
                         return std::vector<std::string>{edit.text, edit.number};
                       },
                       [](const std::vector<std::string>& packed) {
                         return packed.size() == 2 ? Edit{packed[0], packed[1]} : Edit{};
                       }});
  column->addLayout(kinds);
  column->addLayout(row.layout);
  return group;
}

// The editor takes what is over; the others can be drawn together to nothing.
QWidget* MacroPage::MakePanes() {
  splMakros = Named(new QSplitter, "splMakros");
  table_ = new MacroTable;
  splMakros->addWidget(table_);
  preview_ = new MacroPreview({services_.fonts, services_.baudRate, services_.present});
  splMakros->addWidget(MakeEditor());
  splMakros->setStretchFactor(1, 1);
  splMakros->setCollapsible(1, false);
  const int character = fontMetrics().averageCharWidth();
  splMakros->addWidget(preview_);
  splMakros->setSizes({character * 45, character * 80, character * 42});
  return splMakros;
}

QWidget* MacroPage::MakeEditor() {
  auto* group = new QGroupBox(tr("Makrotext"));
  auto* column = new QVBoxLayout(group);
  desk_ = new MacroDesk;
  txtMakro = &desk_->Editor();
  cmdInsertESC = MakeButton("cmdInsertESC", tr("&ESC einfügen"),
                            tr("Fügt an der Schreibmarke das Zeichen ESC ein (Strg+E)."));
  AddShortcut(cmdInsertESC, QKeySequence(tr("Ctrl+E")));
  cmdInsertTextende = MakeButton(
      "cmdInsertTextende", tr("Textende e&infügen"),
      tr("Fügt an der Schreibmarke das Zeichen ♦ ein (Code 4, Strg+T), das einen Grafiktext "
         "beendet."));
  AddShortcut(cmdInsertTextende, QKeySequence(tr("Ctrl+T")));
  lblMakroLaenge = Named(new QLabel, "lblMakroLaenge");
  auto* row = new QHBoxLayout;
  row->addWidget(cmdInsertESC);
  row->addWidget(cmdInsertTextende);
  auto* signs = new QLabel(tr("← ESC, ♦ Textende"));
  signs->setToolTip(
      tr("← ist ESC, der Anfang jedes Befehls; ♦ (Code 4) beendet einen Grafiktext."));
  row->addWidget(signs);
  chkVorschau = Named(new QCheckBox(tr("&Vorschau")), "chkVorschau");
  chkVorschau->setToolTip(tr("Zeigt daneben, was der Text auf dem Display hinterlässt."));
  chkVorschau->setChecked(true);
  row->addStretch();
  row->addWidget(chkVorschau);
  desk_->AddBesideHint(lblMakroLaenge);
  column->addWidget(desk_, 1);
  column->addLayout(row);
  return group;
}

QWidget* MacroPage::MakeWriting() {
  auto* group = new QGroupBox(tr("In das Terminal schreiben"));
  QFormLayout* form = MakeForm(group);
  txtMakroNr = Named(new WireField, "txtMakroNr");
  txtMakroNr->setPlaceholderText(tr("(Nr)"));
  KeepPlaceholderReadable(txtMakroNr);
  txtMakroNr->setMaximumWidth(fontMetrics().averageCharWidth() * 12);
  lblMakroFrei = Named(new QLabel, "lblMakroFrei");
  cmdSetMakro = MakeButton("cmdSetMakro", tr("Makro &schreiben"),
                           tr("Schreibt den Text unter dieser Nummer in das EEPROM (F6)."));
  AddShortcut(cmdSetMakro, QKeySequence(Qt::Key_F6));
  cmdSetAutostartMakro =
      MakeButton("cmdSetAutostartMakro", tr("Als A&utostart schreiben"),
                 tr("Schreibt den Text als Makro 0, das das Terminal beim Einschalten ausführt."));
  lblMakroBelegt = new NumberNote("lblMakroBelegt", *txtMakroNr, [this] {
    return NumberNote::Shown{records_->GivenName(), kelvo::WriteMakro(0, txtMakro->Wire()).Text()};
  });
  AddRow(form, tr("Makro-&Nummer:"), txtMakroNr, tr("0 … 255"));
  form->addRow(lblMakroBelegt);
  form->addRow(new QLabel(tr("Freies EEPROM:")), lblMakroFrei);
  form->addRow(ButtonRow({cmdSetMakro, cmdSetAutostartMakro}));
  if (services_.writeDesk != nullptr) {
    form->addRow(new ProvenBar("Makro", *services_.writeDesk, services_.person,
                               [this] { return OrderShown(); }));
  }
  return group;
}

QWidget* MacroPage::MakeRunning() {
  auto* group = new QGroupBox(tr("Im Terminal"));
  QFormLayout* form = MakeForm(group);
  txtMakroNrDisplay = Named(new WireField, "txtMakroNrDisplay");
  txtMakroNrDisplay->setText(QStringLiteral("-1"));
  txtMakroNrDisplay->setMaximumWidth(fontMetrics().averageCharWidth() * 12);
  cmdMakroNrNehmen = MakeButton("cmdMakroNrNehmen", tr("Nummer übernehmen"),
                                tr("Setzt hier die Makro-Nummer des gezeigten Satzes ein."));
  lblMakroHinweis = Named(new QLabel, "lblMakroHinweis");
  FixRoom(lblMakroHinweis, 2);
  cmdPlayMakro = MakeButton("cmdPlayMakro", tr("Makro ausführen"),
                            tr("Führt das Makro dieser Nummer im Terminal aus (F7)."));
  AddShortcut(cmdPlayMakro, QKeySequence(Qt::Key_F7));
  cmdClearMakro = MakeButton("cmdClearMakro", tr("Makro &löschen"),
                             tr("Löscht das Makro dieser Nummer im EEPROM, ohne nachzufragen."));
  AddRow(form, tr("Nummer im Te&rminal:"), txtMakroNrDisplay, tr("0 … 255"));
  form->addRow(QString(), ButtonRow({cmdMakroNrNehmen}));
  form->addRow(lblMakroHinweis);
  form->addRow(ButtonRow({cmdPlayMakro, cmdClearMakro}));
  return group;
}

void MacroPage::ConnectControls() {
  Operator& person = services_.person;
  OnClick(cmdInsertESC, this, person, &MacroPage::cmdInsertESC_Click);
  OnClick(cmdInsertTextende, this, person, &MacroPage::cmdInsertTextende_Click);
  OnSend(cmdSetMakro, this, person, &MacroPage::cmdSetMakro_Click);
  OnSend(cmdSetAutostartMakro, this, person, &MacroPage::cmdSetAutostartMakro_Click);
  OnClick(cmdMakroNrNehmen, this, person, &MacroPage::cmdMakroNrNehmen_Click);
  OnSend(cmdPlayMakro, this, person, &MacroPage::cmdPlayMakro_Click);
  OnSend(cmdClearMakro, this, person, &MacroPage::cmdClearMakro_Click);
  for (const MakroTyp& typ : kMakroTypen) {
    const int index = typ.index;
    connect(chkMakroTyp[static_cast<std::size_t>(index)], &QRadioButton::toggled, this,
            [this, index] {
              Guarded(services_.person, "chkMakroTyp", [&] { chkMakroTyp_Click(index); });
            });
  }
  connect(cboMakro, &QComboBox::activated, this,
          [this] { Guarded(services_.person, "cboMakro", [&] { cboMakro_Click(); }); });
  connect(chkVorschau, &QCheckBox::toggled, preview_, &QWidget::setVisible);
  connect(desk_, &MacroDesk::Checked, preview_,
          [this](const std::string& wire) { preview_->Show(wire, desk_->Context()); });
  connect(txtMakro, &WireEdit::textChanged, this, &MacroPage::Edited);
  connect(txtMakroNr, &WireField::textChanged, this, &MacroPage::Edited);
  connect(txtMakroNr, &WireField::textChanged, this, &MacroPage::ShowContext);
  connect(txtMakro, &WireEdit::Refused, this, [&person] { person.Beep(); });
  connect(txtMakroNrDisplay, &WireField::textChanged, lblMakroHinweis, &QLabel::clear);
  for (WireField* field : {txtMakroNr, txtMakroNrDisplay}) {
    connect(field, &WireField::Refused, this, [&person] { person.Beep(); });
  }
}

}  // namespace kelvo
