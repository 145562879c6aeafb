#include "shell/welcome_page.h"

#include <QGroupBox>
#include <QLabel>
#include <QVBoxLayout>

#include "widgets/form.h"

namespace kelvo {
namespace {

QLabel* Paragraph(const QString& text) {
  auto* label = new QLabel(text);
  label->setWordWrap(true);
  label->setTextFormat(Qt::RichText);
  label->setTextInteractionFlags(Qt::TextSelectableByMouse);
  return label;
}

}  // namespace

WelcomePage::WelcomePage(QWidget* parent) : QWidget(parent) {
  auto* page = new QVBoxLayout(this);
  auto* title = new QLabel(tr("Willkommen"));
  QFont font = title->font();
  font.setPointSizeF(font.pointSizeF() * 1.6);
  title->setFont(font);
  page->addWidget(title);
  page->addWidget(
      Paragraph(tr("Mit diesem Programm richten Sie ein Terminal oder einen ganzen RS-485-Bus von "
                   "Terminals über eine serielle Schnittstelle ein.")));

  auto* help = Named(new QGroupBox(tr("Erste Schritte")), "ctlHilfeFrame");
  auto* steps = new QVBoxLayout(help);
  steps->addWidget(Paragraph(tr(
      "<ol>"
      "<li><b>Verbinden.</b> Auf der Seite <i>Schnittstellen</i> den Anschluss wählen. Ohne Gerät "
      "hilft der mitgelieferte Simulator.</li>"
      "<li><b>Welches Gerät?</b> Unter <i>Optionen</i> / <i>Anschlüsse …</i> steht, welches Gerät "
      "hinter \"Com 1\" … \"Com 6\" liegt und ob es bereit ist.</li>"
      "<li><b>Prüfen.</b> Auf der Seite <i>Status</i> Version und Systeminformation lesen.</li>"
      "<li><b>Ein Makro.</b> Auf der Seite <i>Makros</i> einen Text wählen oder schreiben, unter "
      "einer Nummer in das Terminal schreiben und ausführen.</li>"
      "<li><b>Mitlesen.</b> <i>Ansicht</i> / <i>Datenverkehr</i> zeigt jedes Zeichen auf der "
      "Leitung und was es bedeutet.</li>"
      "</ol>")));
  page->addWidget(help);
  auto* simulator = MakeButton("cmdSimulatorStarten", tr("&Simulator starten"),
                               tr("Startet ein simuliertes Terminal und verbindet kelvo mit ihm."));
  connect(simulator, &QPushButton::clicked, this, &WelcomePage::SimulatorWanted);
  page->addLayout(ButtonRow({simulator}));
  page->addWidget(
      Paragraph(tr("Alles, was Sie anlegen, liegt in der Datenbank <i>kelvo.mdb</i>; ihren Ordner "
                   "nennt <i>Hilfe</i> / <i>Über …</i>.")));
  page->addStretch();
}

}  // namespace kelvo
