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

QString Link(const QString& target, const QString& words) {
  return QStringLiteral("<a href=\"%1\">%2</a>").arg(target, words);
}

QString Link(Tab tab, const QString& words) {
  return Link(kTabLink + QString::number(static_cast<int>(tab)), words);
}

}  // namespace

QLabel* WelcomePage::Linked(const char* name, const QString& text) {
  QLabel* const label = Named(Paragraph(text), name);
  label->setTextInteractionFlags(Qt::TextBrowserInteraction);
  connect(label, &QLabel::linkActivated, this, &WelcomePage::LinkFollowed);
  return label;
}

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
  steps->addWidget(Linked(
      "lblErsteSchritte",
      tr("<ol>"
         "<li><b>Verbinden.</b> Auf der Seite %1 den Anschluss wählen. Welches Gerät hinter \"Com "
         "1\" "
         "… \"Com 6\" liegt, steht unter %2. Ohne Gerät hilft der mitgelieferte %3.</li>"
         "<li><b>Prüfen.</b> %4 fragt nach Adresse und Version; mehr steht auf der Seite %5.</li>"
         "<li><b>Ein Makro.</b> Auf der Seite %6 einen Text wählen oder schreiben, unter einer "
         "Nummer in das Terminal schreiben und ausführen.</li>"
         "<li><b>Ein Bild.</b> Auf der Seite %7 zeichnen und an das Terminal senden.</li>"
         "<li><b>Ein ganzer Bus.</b> Auf der Seite %8 suchen, wer da ist, und an alle senden.</li>"
         "</ol>")
          .arg(Link(Tab::Interfaces, tr("Schnittstellen")),
               Link("mnuOptionenAnschluesse", tr("Optionen / Anschlüsse …")),
               Link("mnuOptionenSimulator", tr("Simulator")),
               Link("cmdVerbindungPruefen", tr("Verbindung prüfen")),
               Link(Tab::Status, tr("Status")), Link(Tab::Macros, tr("Makros")),
               Link(Tab::Drawing, tr("Zeichnung")), Link(Tab::Terminals, tr("Terminals")))));
  page->addWidget(help);
  auto* simulator = MakeButton("cmdSimulatorStarten", tr("&Simulator starten"),
                               tr("Startet ein simuliertes Terminal und verbindet kelvo mit ihm."));
  auto* manual = MakeButton("cmdHandbuch", tr("Handb&uch öffnen"), tr("Öffnet das Handbuch (F1)."));
  connect(simulator, &QPushButton::clicked, this,
          [this] { Q_EMIT LinkFollowed(QStringLiteral("mnuOptionenSimulator")); });
  connect(manual, &QPushButton::clicked, this,
          [this] { Q_EMIT LinkFollowed(QStringLiteral("mnuHilfe_Inhalt")); });
  page->addLayout(ButtonRow({simulator, manual}));
  page->addWidget(Linked("lblWillkommenMehr",
                         tr("%1 zeigt jedes Zeichen auf der Leitung und was es bedeutet. Alles, "
                            "was Sie anlegen, liegt in "
                            "der Datenbank <i>kelvo.mdb</i>; ihren Ordner nennt %2.")
                             .arg(Link("mnuAnsichtDatenverkehr", tr("Ansicht / Datenverkehr")),
                                  Link("mnuHilfe_about", tr("Hilfe / Über …")))));
  page->addStretch();
}

}  // namespace kelvo
