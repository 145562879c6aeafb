#include <QComboBox>
#include <QStringList>

#include "interfaces/find_dialog.h"
#include "interfaces/interface_page.h"

// "Verbindung suchen …", and what becomes of the port by it.

namespace kelvo {

void InterfacePage::MakeFinder() {
  finder_ = new FindDialog(
      {services_.exchange, services_.com1, services_.person, [this] { return OpenForFinder(); },
       [this] { return Settings().handshaking; },
       [this](const std::string& settings) {
         TakeFound(settings);
         return PortText();
       },
       [this] { RestoreBeforeFinder(); },
       [this](const std::string& report, bool failed) {
         Q_EMIT SearchEnded(tr("Verbindung suchen: %1").arg(QString::fromStdString(report)),
                            failed);
       }},
      this);
}

void InterfacePage::cmdVerbindungSuchen_Click() {
  const int position = cboCom[ComPortNr]->currentIndex();
  const bool none = position < 0 || position == kNoPortPosition;
  if (none && !services_.com1.IsOpen()) {
    return services_.person.Message("zuerst Anschluß wählen");
  }
  openBeforeFinder_ = services_.com1.IsOpen();
  finderPosition_ = position;
  finder_->Prepare(openBeforeFinder_ ? PortText() : cboCom[ComPortNr]->currentText());
  const Undertakings::Resting resting(services_.person.Begun());
  finder_->exec();
}

// The port that the dialog names, also when its device has been away meanwhile.
bool InterfacePage::OpenForFinder() {
  if (services_.com1.IsOpen()) return true;
  if (openBeforeFinder_) return OpenAgain();
  cboCom[ComPortNr]->setCurrentIndex(finderPosition_);
  return OpenChosenPort();
}

void InterfacePage::RestoreBeforeFinder() {
  if (!services_.com1.IsOpen()) return;
  if (openBeforeFinder_) {
    services_.portControl.SetUpPort(openSettings_);
  } else {
    services_.com1.Close();
  }
  DescribePort();
  Q_EMIT PortChanged();
}

// The port is set so already. The lists follow, as after a choice; the port's own list shows what
// is open.
void InterfacePage::TakeFound(const std::string& settings) {
  const QStringList parts = QString::fromStdString(settings).split(u',');
  const std::pair<ComList, int> lists[] = {
      {ComBaud1, 0}, {ComParity1, 1}, {ComBits1, 2}, {ComStopBit1, 3}};
  for (const auto& [list, part] : lists) {
    cboCom[list]->setCurrentIndex(cboCom[list]->findText(parts[part], Qt::MatchStartsWith));
  }
  cboCom[ComPortNr]->setCurrentIndex(openPosition_);
  openSettings_ = Settings();
  for (const ComList list : {ComBaud1, ComParity1, ComBits1, ComStopBit1, ComPortNr}) {
    StoreChoice(list);
  }
  DescribePort();
  Q_EMIT PortChanged();
}

}  // namespace kelvo
