#include <QLabel>
#include <QLineEdit>
#include <QProgressBar>
#include <QPushButton>
#include <algorithm>
#include <cmath>

#include "base/val.h"
#include "base/wire_text.h"
#include "bus/search_meaning.h"
#include "bus/search_page.h"
#include "bus/tick_list.h"
#include "widgets/texts.h"

// The search itself, and what it shows.

namespace kelvo {
namespace {

constexpr QColor kConflictColour(255, 0, 0);

}  // namespace

void SearchPage::txtmaxDovu_LostFocus() {
  const double typed = std::floor(Val(txtmaxDovu->text().toStdString()));
  const double address = std::clamp(typed, 0.0, static_cast<double>(kLastBusAddress));
  txtmaxDovu->setText(Text(NumberText(address)));
}

void SearchPage::cmdDovusuchen_Click() {
  RunSearch([this](int last, double from, const auto& listener) {
    return search_.Run(last, from, listener);
  });
}

void SearchPage::cmdDovuSchnellsuche_Click() {
  RunSearch([this](int last, double from, const auto& listener) {
    return quickSearch_.Run(last, from, listener);
  });
}

void SearchPage::RunSearch(const Search& search) {
  txtmaxDovu_LostFocus();  // a key that presses the button leaves the field where it is
  const int last = txtmaxDovu->text().toInt();
  ctlDovuSuchListe->clear();
  results_.clear();
  const Undertakings::Alone alone(services_.person.Begun(), "Die Suche nach Terminals läuft.");
  SetSearching(true);
  ShowProgress(0, last);
  const auto end = search(last, services_.options.Number("ChecksumabVer"),
                          [this, last](const SearchResult& result) {
                            AddResult(result);
                            ShowProgress(static_cast<int>(results_.size()), last);
                          });
  SetSearching(false);
  ShowEnd(end, last);
  Q_EMIT Finished(tr("Suche: %1").arg(lblDovuStand->text()), end != TerminalSearch::End::Complete);
}

void SearchPage::cmdDovuAbbrechen_Click() {
  if (!searching_) return;
  search_.Stop();
  quickSearch_.Stop();
  lblDovuStand->setText(tr("Die Suche endet nach dieser Adresse …"));
}

void SearchPage::SetSearching(bool searching) {
  // A button that is switched off hands its focus to whatever comes next.
  const QWidget* const focused = window()->focusWidget();
  const bool toStop = searching && (focused == cmdDovusuchen || focused == cmdDovuSchnellsuche);
  const bool toStart = !searching && focused == cmdDovuAbbrechen;
  searching_ = searching;
  searchStart_ = services_.loop.Now();
  if (searching) lblDovuStand->clear();
  ctlDovuFortschritt->setVisible(searching);
  cmdDovuAbbrechen->setEnabled(searching);
  if (toStop) cmdDovuAbbrechen->setFocus();
  for (QPushButton* button : {cmdDovusuchen, cmdDovuSchnellsuche, cmdDovuUebernehmen, cmdDovuNeu,
                              cmdClearDovuData, cmdDovuSenden, cmdDovuAusstatten}) {
    button->setEnabled(!searching);
  }
  cmdDovuExport->setEnabled(!searching && !results_.empty());
  if (toStart) cmdDovusuchen->setFocus();
  Q_EMIT SearchingChanged();
}

void SearchPage::ShowProgress(int address, int last) {
  ctlDovuFortschritt->setRange(0, last + 1);
  ctlDovuFortschritt->setValue(address);
  ctlDovuFortschritt->setFormat(tr("Adresse %1 von %2, %3%4")
                                    .arg(std::min(address, last))
                                    .arg(last)
                                    .arg(Text(Found()), TimeLeft(address, last + 1)));
}

// From what the addresses have taken until now.
QString SearchPage::TimeLeft(int done, int all) const {
  if (done == 0) return {};
  const auto elapsed = services_.loop.Now() - searchStart_;
  const auto left = std::chrono::duration_cast<std::chrono::seconds>(elapsed * (all - done) / done);
  return tr(", noch etwa %1 s").arg(left.count() + (all > done ? 1 : 0));
}

std::string SearchPage::Found() const {
  const auto found =
      std::count_if(results_.begin(), results_.end(), [](const auto& r) { return r.Found(); });
  const auto wrong = std::count_if(results_.begin(), results_.end(),
                                   [](const auto& r) { return !r.Found() && !r.Absent(); });
  return std::to_string(found) + " gefunden, " + std::to_string(wrong) + " Fehler/Kollision";
}

// The quick search may tell of an address again.
void SearchPage::AddResult(const SearchResult& result) {
  const auto place = static_cast<std::size_t>(result.address);
  const QStringList texts{Text(ResultName(result.address)), Text(ResultVerdict(result)),
                          Text(ReadableText(result.reply)), Text(YesNoText(result.checksum))};
  if (place < results_.size()) {
    results_[place] = result;
  } else {
    results_.push_back(result);
    ctlDovuSuchListe->ScrollTo(ctlDovuSuchListe->Add(texts, result.Found()));
  }
  ctlDovuSuchListe->Tick(result.address, result.Found());
  const bool conflict = !result.Found() && !result.Absent();
  ctlDovuSuchListe->Colour(result.address, conflict ? kConflictColour : QColor());
  QTreeWidgetItem* const item = ctlDovuSuchListe->topLevelItem(result.address);
  for (int column = 0; column < texts.size(); ++column) {
    item->setText(column, texts[column]);
    item->setToolTip(column, Text(ResultStory(result)));
  }
}

void SearchPage::ShowEnd(TerminalSearch::End end, int last) {
  const QString found = Text(Found());
  const QString asked = tr("%1 von %2 Adressen").arg(results_.size()).arg(last + 1);
  switch (end) {
    case TerminalSearch::End::Complete:
      return lblDovuStand->setText(tr("Alle %1 Adressen gefragt: %2. %3")
                                       .arg(last + 1)
                                       .arg(found, Text(SearchMeaning(results_)))
                                       .trimmed());
    case TerminalSearch::End::Stopped:
      return lblDovuStand->setText(tr("Abgebrochen nach %1: %2.").arg(asked, found));
    case TerminalSearch::End::LineLost:
      return lblDovuStand->setText(
          tr("Die Verbindung ging verloren, nach %1: %2.").arg(asked, found));
  }
}

}  // namespace kelvo
