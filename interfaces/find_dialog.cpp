#include "interfaces/find_dialog.h"

#include <QBoxLayout>
#include <QHeaderView>
#include <QLabel>
#include <QProgressBar>
#include <QPushButton>
#include <QSpinBox>
#include <QTreeWidget>

#include "link/addresses.h"
#include "widgets/form.h"
#include "widgets/handlers.h"
#include "widgets/texts.h"
#include "widgets/window_size.h"

namespace kelvo {
FindDialog::FindDialog(Services services, QWidget* parent)
    : QDialog(parent), services_(std::move(services)), finder_(services_.exchange, services_.com1) {
  Named(this, "frmVerbindungSuchen");
  setWindowTitle(tr("Verbindung suchen"));
  auto* what = new QLabel(tr(
      "Fragt das Terminal mit jeder Einstellung nach seiner Version: zuerst die sechs Raten mit 8 "
      "Datenbits, ohne Parität, 1 Stoppbit, danach alle übrigen. Umgestellt und gespeichert wird "
      "nichts, bevor Sie zugestimmt haben. Danach ist das gefragte Terminal gewählt."));
  what->setWordWrap(true);
  ctlSuchenFortschritt = Named(new QProgressBar, "ctlSuchenFortschritt");
  ctlSuchenFortschritt->setAccessibleName(tr("Fortschritt der Suche"));
  ctlSuchenListe = Named(new QTreeWidget, "ctlSuchenListe");
  ctlSuchenListe->setHeaderLabels({tr("Einstellung"), tr("gehört")});
  ctlSuchenListe->setRootIsDecorated(false);
  ctlSuchenListe->setAccessibleName(tr("Was gehört wurde"));
  ctlSuchenListe->header()->resizeSection(0, fontMetrics().averageCharWidth() * 18);
  lblSuchenErgebnis = Named(new QLabel, "lblSuchenErgebnis");
  lblSuchenErgebnis->setWordWrap(true);
  lblSuchenErgebnis->setTextFormat(Qt::PlainText);
  lblSuchenErgebnis->setMinimumHeight(fontMetrics().lineSpacing() * 4);
  auto* page = new QVBoxLayout(this);
  page->addWidget(what);
  page->addLayout(MakeTop());
  page->addWidget(ctlSuchenFortschritt);
  page->addWidget(ctlSuchenListe, 1);
  page->addWidget(lblSuchenErgebnis);
  auto* close = MakeButton("cmdSuchenSchliessen", tr("Schließen"));
  close->setAutoDefault(false);
  connect(close, &QPushButton::clicked, this, &QDialog::reject);
  KeepPlace(this);
  page->addLayout(ButtonRow({close}));
  resize(fontMetrics().averageCharWidth() * 80, fontMetrics().lineSpacing() * 26);
}

QLayout* FindDialog::MakeTop() {
  lblSuchenAnschluss = Named(new QLabel, "lblSuchenAnschluss");
  lblSuchenAnschluss->setTextFormat(Qt::PlainText);
  txtSuchenAdresse = Named(new QSpinBox, "txtSuchenAdresse");
  txtSuchenAdresse->setRange(0, kAllAddresses);
  txtSuchenAdresse->setValue(kAllAddresses);
  txtSuchenAdresse->setToolTip(
      tr("255 fragt alle. Antworten am Bus mehrere zugleich, so ist es "
         "unlesbar; dann die Adresse eines einzelnen eingeben."));
  cmdSuchen = MakeButton("cmdSuchen", tr("Suchen"));
  cmdSuchen->setDefault(true);
  cmdSuchenAbbrechen = MakeButton("cmdSuchenAbbrechen", tr("Abbrechen"));
  OnClick(cmdSuchen, this, services_.person, &FindDialog::cmdSuchen_Click);
  OnClick(cmdSuchenAbbrechen, this, services_.person, &FindDialog::cmdSuchenAbbrechen_Click,
          Speaks::ToStop);
  auto* row = new QHBoxLayout;
  row->addWidget(lblSuchenAnschluss, 1);
  row->addWidget(LabelFor(txtSuchenAdresse, tr("Adresse (255 fragt alle):")));
  row->addWidget(txtSuchenAdresse);
  row->addWidget(cmdSuchen);
  row->addWidget(cmdSuchenAbbrechen);
  return row;
}

void FindDialog::Prepare(const QString& port) {
  lblSuchenAnschluss->setText(port);
  ctlSuchenListe->clear();
  lblSuchenErgebnis->clear();
  ctlSuchenFortschritt->setRange(0, static_cast<int>(LineTries().size()));
  ctlSuchenFortschritt->setValue(0);
  SetSearching(false);
}

void FindDialog::SetSearching(bool searching) {
  searching_ = searching;
  txtSuchenAdresse->setEnabled(!searching);
  cmdSuchen->setEnabled(!searching);
  cmdSuchenAbbrechen->setEnabled(searching);
}

// Its action ends first; then it can be closed.
void FindDialog::done(int result) {
  finder_.Stop();
  if (!searching_) QDialog::done(result);
}

void FindDialog::cmdSuchenAbbrechen_Click() {
  finder_.Stop();
  lblSuchenErgebnis->setText(tr("Die Suche endet nach dieser Einstellung …"));
}

void FindDialog::cmdSuchen_Click() {
  if (!services_.person.MayBegin()) return;
  Prepare(lblSuchenAnschluss->text());
  const Undertakings::Alone alone(services_.person.Begun(), "Die Verbindung wird gesucht.");
  const Undertakings::Talking talking(services_.person.Begun());
  if (!services_.open()) return;
  SetSearching(true);
  Search();
  SetSearching(false);
}

void FindDialog::Search() {
  const int address = txtSuchenAdresse->value();
  results_.clear();
  const auto results = finder_.Run(address, services_.handshaking(),
                                   [this](const LineResult& result) { Show(result); });
  if (!services_.exchange.Alive()) {
    services_.restore();
    return End(tr("Das Gerät ist verschwunden; die Suche ist zu Ende."), true);
  }
  const QString report = Text(FinderReport(results, address, finder_.Stopped()));
  if (!finder_.Stopped()) ctlSuchenFortschritt->setValue(ctlSuchenFortschritt->maximum());
  if (results.empty() || results.back().heard != LineHeard::Terminal) {
    services_.restore();
    return End(report, true);
  }
  lblSuchenErgebnis->setText(report);
  Decide(report, results.back().settings);
}

void FindDialog::Decide(const QString& found, const std::string& settings) {
  const bool wanted = services_.person.Ask(found.toStdString() + " Übernehmen und speichern ?",
                                           Icon::Question, {}, Proposal::No);
  if (wanted) {
    lblSuchenAnschluss->setText(services_.take(settings));
  } else {
    services_.restore();
  }
  End(found +
          (wanted ? tr(" Übernommen.") : tr(" Nicht übernommen, der Anschluss ist wie vorher.")),
      false);
}

void FindDialog::End(const QString& report, bool failed) {
  lblSuchenErgebnis->setText(report);
  if (services_.ended) services_.ended(report.toStdString(), failed);
}

void FindDialog::Show(const LineResult& result) {
  results_.push_back(result);
  const std::string advice = AdviceAfterRates(results_, txtSuchenAdresse->value());
  if (!advice.empty() && !finder_.Stopped()) lblSuchenErgebnis->setText(Text(advice));
  auto* item =
      new QTreeWidgetItem(ctlSuchenListe, {Text(result.settings), Text(HeardText(result))});
  ctlSuchenListe->scrollToItem(item);
  ctlSuchenFortschritt->setValue(ctlSuchenListe->topLevelItemCount());
}

}  // namespace kelvo
