#include <QPushButton>
#include <QStatusBar>

#include "base/val.h"
#include "help/help_desk.h"
#include "inventory_page/compare_dialog.h"
#include "inventory_page/inventory_view.h"
#include "inventory_page/write_desk.h"
#include "link/addresses.h"
#include "link/commands.h"
#include "link/control_characters.h"
#include "link/failure_cause.h"
#include "shell/drawing_desk.h"
#include "shell/frmhaupt.h"
#include "shell/head_strip.h"
#include "shell/history_view.h"
#include "shell/line_words.h"
#include "shell/port_return.h"
#include "shell/status_display.h"
#include "terminal/version.h"
#include "widgets/handlers.h"
#include "widgets/read_mark.h"

// What the main window says about the line and about who listens, and tells all of them.

namespace kelvo {
namespace {

constexpr int kHintMilliseconds = 8000;

}  // namespace

QWidget* frmhaupt::MakeAddressStrip() {
  head_ = new HeadStrip(lineState_);
  OnSend(head_->SelectButton(), this, outside_.person, &frmhaupt::cmdDovuAktivieren_Click);
  OnSend(head_->CheckButton(), this, outside_.person, &frmhaupt::cmdVerbindungPruefen_Click);
  lineState_.SetListener([this] {
    head_->ShowState();
    ShowInventory();
    OutdateMarks();
  });
  lineState_.SetStartedAnewListener([this] { status_->ForgetPorts(); });
  connect(terminals_, &SearchPage::StoredChanged, this, &frmhaupt::ShowStoredTerminals);
  ShowStoredTerminals();
  return head_;
}

// What a page shows of the Terminal that listened before is not that of the one that listens now.
void frmhaupt::OutdateMarks() {
  const std::pair listener(lineState_.Listens(), lineState_.Address());
  const auto before = std::exchange(markedListener_, listener);
  const bool known = before.first == Listening::One;
  // Who has told an address is no other for that.
  const bool told =
      before.first == Listening::Unknown && lineState_.Answers() != Answering::NotAsked;
  if (before == listener || told) return;
  const QString who = known ? tr("Adresse %1").arg(*before.second) : tr("einem anderen");
  for (QLabel* const label : findChildren<QLabel*>()) {
    if (auto* const mark = dynamic_cast<ReadMark*>(label)) mark->Outdate(who);
  }
}

// Every box that reports a failure of the line says what its cause is, and leads on.
void frmhaupt::MakeAdviser() {
  const auto explain = [this](const std::string& text) -> std::optional<Advice> {
    const auto cause = CauseOf(text, lineState_);
    if (!cause) return std::nullopt;
    // What waited for an answer fails before the loss of its device is told of.
    const int loss = losses_ + (portWasOpen_ ? 1 : 0);
    return Advice{CauseWords(*cause, lineState_), "meldungen.html#" + std::string(AnchorOf(*cause)),
                  *cause == FailureCause::RoomUnknown || !RefusalWords(text, lineState_),
                  *cause == FailureCause::DeviceGone ? loss : 0};
  };
  outside_.person.SetAdviser(
      {explain,
       [this](const std::string& chapter) { help_->ShowChapter(QString::fromStdString(chapter)); },
       [this] { ShowTraffic(TrafficAt::LastFailure); },
       [this](const std::string& text) {
         const auto words = RefusalWords(text, lineState_);
         if (!words) return;
         chronicle_.Note(*words, true);
         // What comes of that which runs is another matter, and stands in its place.
         if (!outside_.person.Begun().RunsAlone().empty()) statusDisplay_->Forget();
       }});
}

void frmhaupt::ShowStoredTerminals() { head_->SetTerminals(StoredTerminals(data_.ctlDovuData)); }

void frmhaupt::cmdDovuAktivieren_Click() { exchange_.SendString(SelectAddress(head_->Address())); }

void frmhaupt::cmdVerbindungPruefen_Click() {
  const Chronicle::Asking asking(chronicle_);
  const Reply address = exchange_.SendQuery(AskAddress());
  const Reply version = exchange_.SendQuery(AskVersion());
  if (!version.Failed() && version.readable) NoteVersion(state_, version);
  const std::string words = CheckWords(
      lineState_, [this](int number) { return head_->NameOf(number); }, address, version);
  const bool failed = !FailureWords(address).empty() || !FailureWords(version).empty();
  chronicle_.Note(words, failed);
  if (failed) outside_.person.Message(words, Icon::Exclamation);
}

void frmhaupt::MakeHistory() {
  history_ = new HistoryView(chronicle_, this);
  chronicle_.SetDoubt([this] { return DoubtWords(lineState_); });
  chronicle_.SetListener([this](const Chronicle::Line& line) {
    statusDisplay_->ShowResult(HistoryWords(line), line.weight);
    history_->Refresh();
    if (compare_ != nullptr) compare_->Follow();
  });
  FollowBus();
}

void frmhaupt::FollowBus() {
  const auto note = [this](const QString& result, bool failed) {
    chronicle_.Note(result.toStdString(), failed);
  };
  for (RecordEditorBase* const records : Records()) {
    records->SetStoredListener([this](const std::string& words) { chronicle_.Note(words); });
  }
  connect(terminals_, &SearchPage::Finished, this, note);
  connect(terminals_, &SearchPage::Finished, this, [this] { lineState_.SearchEnded(); });
  connect(interfaces_, &InterfacePage::SearchEnded, this, note);
  connect(dovu_, &frmDovu::Finished, this, note);
  connect(writeDesk_, &WriteDesk::Finished, this, note);
  connect(eeprom_, &EepromPage::Failed, this,
          [this](const QString& what) { chronicle_.Note(what.toStdString(), true); });
}

// Why a button has done nothing, or what it has done that nobody sees at once.
void frmhaupt::ShowHint(const QString& text) { statusBar()->showMessage(text, kHintMilliseconds); }

void frmhaupt::mnuAnsichtVerlauf_Click() { history_->Present(); }

// That a field could not be read for want of a port, or of an answer behind the one before, is over
// when there is one.
void frmhaupt::ForgetClosedPort() {
  const QString closed = QString::fromStdString(MarkWords({ReplyKind::PortClosed, {}}, exchange_));
  const QString silent = QString::fromStdString(FailureWords({ReplyKind::Silent, {}}));
  text_->ForgetClosedPort(closed);
  for (QLabel* const label : findChildren<QLabel*>()) {
    auto* const mark = dynamic_cast<ReadMark*>(label);
    if (mark == nullptr || (mark->text() != closed && mark->text() != silent)) continue;
    mark->setText(tr("noch nicht gelesen"));
  }
}

void frmhaupt::ShowPort() {
  const QString text = interfaces_->PortText();
  const bool open = outside_.com1.IsOpen();
  if (open && !portWasOpen_) ForgetClosedPort();
  if (open && text != head_->Port()) chronicle_.Note("Anschluss offen: " + text.toStdString());
  if (!open && portWasOpen_) chronicle_.Note("Anschluss geschlossen");
  portWasOpen_ = open;
  head_->ShowPort(text);
  lineState_.PortIs(open ? interfaces_->OpenPortNumber() : 0);
  twins_.PortIs(open ? interfaces_->OpenPortNumber() : 0);
  desk_->Editor().OptionsChanged();
}

void frmhaupt::ShowTerminal() {
  ShowFreeBytes();
  ShowInventory();  // which leaves out what is shown beside it
  desk_->Editor().OptionsChanged();
}

// The device went away. Waits have ended with the port; the handlers that waited report their own
// failures, and this is said once.
void frmhaupt::com1_Lost() {
  const std::string port = interfaces_->ChosenPort();
  portWasOpen_ = false;  // that it is lost says more
  ++losses_;
  interfaces_->ShowNoPort();
  lineState_.PortLost();
  twins_.PortLost();
  record_.NoteLoss(outside_.loop.WallClock());
  const std::string loss = "Die Verbindung zu " + port + " ist verloren gegangen.";
  chronicle_.Note(loss, true);
  const bool returns = ReturnsByItself();
  if (returns) portReturn_->Await();
  outside_.person.Notify(
      loss + (returns ? " Sobald das Gerät wieder da ist, wird der Anschluss von selbst wieder "
                        "geöffnet; gesendet wird dabei nichts."
                      : " Bitte das Gerät wieder anschließen und den Anschluss auf der Seite "
                        "\"Schnittstellen\" neu wählen."),
      Icon::Exclamation);
}

// Closes whatever command, macro or graphic text a Terminal may still be receiving, then restarts
// all Terminals of the bus.
void frmhaupt::ResetAll() {
  exchange_.SendString(std::string{';', kEtx, kEot} +
                       Sequence({SelectAddress(kAllAddresses), kelvo::Restart()}));
  state_.flash = FlashState::Unknown;
  state_.Changed();
}

}  // namespace kelvo
