#include "interfaces/raw_command.h"

#include <QFormLayout>
#include <QHBoxLayout>
#include <QLabel>
#include <QPushButton>

#include "base/wire_text.h"
#include "link/control_characters.h"
#include "widgets/contrast.h"
#include "widgets/form.h"
#include "widgets/handlers.h"
#include "widgets/wire_field.h"

namespace kelvo {

RawCommand::RawCommand(Exchange& exchange, Operator& person, QWidget* parent)
    : QGroupBox(tr("Einzelner Befehl"), parent), exchange_(exchange) {
  Befehl = Named(new WireField, "Befehl");
  Befehl->setPlaceholderText(tr("zum Beispiel ?V oder !A5;"));
  KeepPlaceholderReadable(Befehl);
  cmdBefehlSenden = MakeButton("cmdBefehlSenden", tr("Befehl &senden"),
                               tr("Sendet ESC und den Befehl, wie er dasteht."));
  cmdSenden = MakeButton("cmdSenden_0", tr("&Wie getippt senden"),
                         tr("Sendet nur, was dasteht, ohne ESC, und liest keine Antwort."));
  lblDebug = MakeValue("lblDebug");
  lblDebug->setFont(WireFont());
  lblDebug->setWordWrap(true);
  lblDebug->setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Minimum);
  lblDebug->setAlignment(Qt::AlignLeft | Qt::AlignTop);
  lblDebug->setMinimumHeight(fontMetrics().lineSpacing() * 3);

  auto* form = MakeForm(this);
  form->setFieldGrowthPolicy(QFormLayout::ExpandingFieldsGrow);
  auto* row = new QHBoxLayout;
  row->addWidget(Befehl);
  row->addWidget(cmdBefehlSenden);
  row->addWidget(cmdSenden);
  form->addRow(LabelFor(Befehl, tr("Befehl (ohn&e ESC):")), row);
  form->addRow(LabelFor(lblDebug, tr("Antwort:")), lblDebug);
  OnSend(cmdBefehlSenden, this, person, &RawCommand::cmdBefehlSenden_Click);
  OnSend(cmdSenden, this, person, &RawCommand::cmdSenden_Click);
  connect(Befehl, &QLineEdit::returnPressed, cmdBefehlSenden, &QPushButton::click);
  connect(Befehl, &WireField::Refused, this, [&person] { person.Beep(); });
}

void RawCommand::cmdBefehlSenden_Click() {
  lblDebug->clear();
  exchange_.SendString(std::string(CmdPrefix) + Befehl->Wire());
  lblDebug->setText(GlyphText(exchange_.WaitAnswer({}).text));
}

void RawCommand::cmdSenden_Click() {
  lblDebug->clear();  // the answer to another command
  if (Befehl->Wire().empty()) return Q_EMIT Hint(tr("Nichts gesendet: Es ist nichts eingegeben."));
  exchange_.SendString(Befehl->Wire());
}

}  // namespace kelvo
