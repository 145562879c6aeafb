#include "link/raw_command.h"

#include <QFormLayout>
#include <QHBoxLayout>
#include <QLabel>
#include <QPushButton>

#include "link/control_characters.h"
#include "link/wire_text.h"
#include "widgets/form.h"
#include "widgets/handlers.h"
#include "widgets/wire_field.h"

namespace kelvo {

RawCommand::RawCommand(Exchange& exchange, Operator& person, QWidget* parent)
    : QGroupBox(tr("Einzelner Befehl"), parent), exchange_(exchange) {
  Befehl = Named(new WireField, "Befehl");
  Befehl->setPlaceholderText(tr("zum Beispiel ?V oder !A5;"));
  cmdBefehlSenden = MakeButton("cmdBefehlSenden", tr("Befehl &senden"),
                               tr("Sendet ESC und den Befehl, wie er dasteht."));
  lblDebug = MakeValue("lblDebug");
  lblDebug->setFont(WireFont());
  lblDebug->setWordWrap(true);
  lblDebug->setAlignment(Qt::AlignLeft | Qt::AlignTop);
  lblDebug->setMinimumHeight(fontMetrics().lineSpacing() * 3);

  auto* form = MakeForm(this);
  form->setFieldGrowthPolicy(QFormLayout::ExpandingFieldsGrow);
  auto* row = new QHBoxLayout;
  row->addWidget(Befehl);
  row->addWidget(cmdBefehlSenden);
  form->addRow(LabelFor(Befehl, tr("Be&fehl (ohne ESC):")), row);
  form->addRow(LabelFor(lblDebug, tr("Antwort:")), lblDebug);
  OnClick(cmdBefehlSenden, this, person, &RawCommand::cmdBefehlSenden_Click);
  connect(Befehl, &QLineEdit::returnPressed, cmdBefehlSenden, &QPushButton::click);
  connect(Befehl, &WireField::Refused, this, [&person] { person.Beep(); });
}

void RawCommand::cmdBefehlSenden_Click() {
  lblDebug->clear();
  exchange_.CommandBuffer = std::string(CmdPrefix) + Befehl->Wire();
  exchange_.SendCommand(Acknowledge::None);
  exchange_.LastStatus = exchange_.WaitAnswer(exchange_.CommandBuffer, {}) ? -1 : 0;
  lblDebug->setText(GlyphText(exchange_.CommandBuffer));
}

}  // namespace kelvo
