#include <QComboBox>
#include <QGroupBox>
#include <QHBoxLayout>
#include <QLabel>
#include <QPushButton>

#include "interfaces/interface_page.h"
#include "widgets/data_control.h"
#include "widgets/form.h"
#include "widgets/wire_field.h"

namespace kelvo {
namespace {

QString Unit(ComList list) {
  if (list == ComBaud1 || list == ComBaud2) return InterfacePage::tr("Bit/s");
  if (list == ComPuffer1 || list == ComPuffer2) return InterfacePage::tr("Zeichen");
  return {};
}

}  // namespace

QWidget* InterfacePage::MakeRecordChoice() {
  auto* group = new QGroupBox(tr("Gespeicherte Einstellungen"));
  ctlComData = new DataControl("ctlComData", services_.comData);
  auto* row = new QHBoxLayout(group);
  row->addWidget(LabelFor(ctlComData, tr("Sat&z:")));
  row->addWidget(ctlComData);
  row->addWidget(new QLabel(tr("Jede Auswahl wird sofort in diesem Satz gespeichert.")));
  row->addStretch();
  connect(ctlComData, &DataControl::Failed, this, [this](const QString& text) {
    services_.person.Message(text.toStdString(), Icon::Exclamation);
  });
  return group;
}

void InterfacePage::AddLists(QFormLayout* form,
                             std::initializer_list<std::pair<ComList, QString>> lists) {
  for (const auto& [list, label] : lists) AddRow(form, label, cboCom[list], Unit(list));
}

QWidget* InterfacePage::MakeFirst() {
  auto* group = Named(new QGroupBox(tr("Erste Schnittstelle")), "ctlComFrame1");
  QFormLayout* form = MakeForm(group);
  lblAnschluss = Named(new QLabel, "lblAnschluss");
  lblAnschluss->setWordWrap(true);
  lblAnschluss->setMinimumWidth(fontMetrics().averageCharWidth() * 34);
  AddLists(form, {{ComPortNr, tr("Ansch&luss:")}});
  form->addRow(QString(), lblAnschluss);
  KeepRoom(lblAnschluss, 6);  // the device, and what is marked but does not hold yet
  lblAnschluss->setAlignment(Qt::AlignLeft | Qt::AlignTop);
  cmdVerbinden = MakeButton("cmdVerbinden", {});
  FitCaptions(cmdVerbinden, {tr("Verbinden"), tr("Trennen")});
  cmdVerbindungSuchen = MakeButton("cmdVerbindungSuchen", tr("Verbindung suchen …"),
                                   tr("Probiert, mit welchen Werten das Terminal antwortet."));
  form->addRow(ButtonRow({cmdVerbinden, cmdVerbindungSuchen}));
  ShowOpen();
  AddLists(form, {{ComBaud1, tr("Baud&rate:")},
                  {ComParity1, tr("Par&ität:")},
                  {ComBits1, tr("Date&nbits:")},
                  {ComStopBit1, tr("&Stoppbits:")},
                  {ComShake1, tr("Handsha&ke:")},
                  {ComPuffer1, tr("Pu&ffer:")}});
  cmdSetCom1 = MakeButton("cmdSetCom1", tr("T&erminal und PC umstellen"),
                          tr("Stellt die Schnittstelle des Terminals um, speichert sie dort und "
                             "öffnet dann den Anschluss des PC mit denselben Werten."));
  cmdDefaultCom1 = MakeButton("cmdDefaultCom1", tr("Standard - &Werte"),
                              tr("Wählt die üblichen Werte; gesendet wird noch nichts."));
  form->addRow(ButtonRow({cmdSetCom1, cmdDefaultCom1}));
  return group;
}

QWidget* InterfacePage::MakeSecond() {
  auto* group = Named(new QGroupBox(tr("Zweite Schnittstelle")), "ctlComFrame2");
  QFormLayout* form = MakeForm(group);
  form->setFieldGrowthPolicy(QFormLayout::ExpandingFieldsGrow);
  AddLists(form, {{ComBaud2, tr("Baudra&te:")},
                  {ComParity2, tr("Parit&ät:")},
                  {ComBits2, tr("Bits &je Zeichen:")},
                  {ComStopbit2, tr("Sto&ppbits:")},
                  {ComShake2, tr("Handshake &2:")},
                  {ComPuffer2, tr("P&uffer:")},
                  {ComRecCom2, tr("E&mpfang:")}});
  cmdSetCom2 = MakeButton("cmdSetCom2", tr("Terminal umstellen"),
                          tr("Stellt die zweite Schnittstelle des Terminals um und speichert sie "
                             "dort."));
  cmdDefaultCom2 = MakeButton("cmdDefaultCom2", tr("Standard - Werte"),
                              tr("Wählt die üblichen Werte; gesendet wird noch nichts."));
  form->addRow(ButtonRow({cmdSetCom2, cmdDefaultCom2}));
  AddTraffic(form);
  return group;
}

// What goes through the second interface.
void InterfacePage::AddTraffic(QFormLayout* form) {
  txtSendCom2 = Named(new WireField, "txtSendCom2");
  cmdSendCom2 = MakeButton("cmdSendCom2", tr("Senden"));
  auto* sendRow = new QHBoxLayout;
  sendRow->addWidget(txtSendCom2);
  sendRow->addWidget(cmdSendCom2);
  form->addRow(LabelFor(txtSendCom2, tr("Te&xt:")), sendRow);
  // Across both columns: so the page is no wider than its lists.
  form->addRow(new QLabel(tr("senden auf zweiter Schnittstelle (Trennzeichen nicht vergessen)")));

  txtReceiveCom2 = Named(new WireEdit, "txtReceiveCom2");
  txtReceiveCom2->setReadOnly(true);
  txtReceiveCom2->setMinimumHeight(fontMetrics().lineSpacing() * 3);
  cmdClearReceiveCom2 = MakeButton("cmdClearReceiveCom2", tr("Empfangenes l&öschen"));
  form->addRow(LabelFor(txtReceiveCom2, tr("Empfan&gen:")), txtReceiveCom2);
  form->addRow(QString(), ButtonRow({cmdClearReceiveCom2}));
}

}  // namespace kelvo
