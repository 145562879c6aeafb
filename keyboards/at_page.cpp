#include "keyboards/at_page.h"

#include <QApplication>
#include <QComboBox>
#include <QGroupBox>
#include <QLabel>
#include <QPlainTextEdit>
#include <QPushButton>
#include <QTabWidget>
#include <QTableView>

#include "base/guard.h"
#include "base/val.h"
#include "base/wire_text.h"
#include "keyboards/at_list.h"
#include "keyboards/key_codes.h"
#include "terminal/eeprom.h"
#include "widgets/wire_field.h"

namespace kelvo {
namespace {

enum InnerPage { TestPage, LearnPage };

// A test of the keyboard needs no more than this.
constexpr std::size_t kKlartextKept = 2000;

}  // namespace

AtPage::Edit AtPage::OnScreen() const { return {list_->Pairs(), txtATTastNr->Wire()}; }

void AtPage::Show(const Edit& edit) {
  txtATTastNr->SetWire(edit.number);
  list_->SetPairs(edit.pairs);
}

// A record that was never saved has no table: the list stays as it is then.
void AtPage::DisplayATTab(std::optional<std::string> table) {
  if (!table) table = tables_->Wert();
  if (table) list_->SetPairs(ReadAtTable(*table));
}

void AtPage::ShowStored() {
  txtATTastNr->SetWire(tables_->NumberField());
  DisplayATTab();
}

void AtPage::Edited() {
  ShowOrder();
  tables_->Edited();
}

// Sending asks nothing, so it must be plain beforehand that the Terminal gets something else.
void AtPage::ShowOrder() {
  const bool asShown = SentAsShown(list_->Pairs());
  lblATHinweis->setHidden(asShown);
  cmdATSortieren->setEnabled(!asShown);
}

void AtPage::Shown() {
  klartext_.clear();
  lblATKlartext->clear();
  tables_->Refresh();
}

void AtPage::Left() {
  StopLearning();
  cmdATTab->setCurrentIndex(TestPage);
}

void AtPage::EndLearningAndTyping() {
  StopLearning();
  if (ctlATTabListe->isAncestorOf(QApplication::focusWidget())) ctlATTabListe->setFocus();
}

void AtPage::NewATTab() {
  EndLearningAndTyping();
  tables_->New({});
}

void AtPage::SaveATTab() {
  EndLearningAndTyping();
  const Edit edit = OnScreen();
  const auto command = TableCommand(edit);
  if (!command) return;
  tables_->SaveShown({{"ausgang", "0"},
                      {"eingang", "0"},
                      {"nr_im_display", RoundToEven(Val(edit.number))},
                      {"wert", ScreenText(command->Text())}},
                     edit);
}

void AtPage::DeleteTable() {
  EndLearningAndTyping();
  tables_->Delete();
}

void AtPage::cmdATPaarEntfernen_Click() { list_->Remove(ctlATTabListe->currentIndex().row()); }

void AtPage::cmdATSortieren_Click() { list_->SetPairs(SortedPairs(list_->Pairs())); }

// The learn mode.

void AtPage::cmdATumkodierenStart_Click() {
  if (!services_.com1.IsOpen()) return Q_EMIT PortWanted();
  cmdATTab->setCurrentIndex(LearnPage);
  LearnStopFlag = false;
  ShowLearning(true);
  Guarded(services_.person, "GetATtab", [this] { GetATtab(); });
  StopLearning();
}

// The page is ready for other work at once, even if the wait below is not resumed before an
// exchange that another page has begun is over.
void AtPage::StopLearning() {
  if (LearnStopFlag) return;
  LearnStopFlag = true;
  ShowLearning(false);
}

void AtPage::GetATtab() {
  list_->SetPairs({});
  services_.com1.SetInputLen(1);
  // Once, and not before each pair: a key that waits while a pair is entered belongs to the next.
  services_.com1.DiscardInput();
  while (LearnGoesOn()) {
    lblATalterCode->clear();
    lblATneuerCode->clear();
    ShowAwaited(Awaited::OldKey);
    const std::optional<int> oldCode = AwaitKey(*lblATalterCode);
    if (!oldCode) break;
    ShowAwaited(Awaited::NewKey);
    const std::optional<int> newCode = AwaitKey(*lblATneuerCode);
    if (!newCode) break;
    list_->Enter({*oldCode, *newCode});
    ctlATTabListe->scrollToBottom();
  }
}

bool AtPage::LearnGoesOn() const {
  return !LearnStopFlag && services_.com1.IsOpen() && !services_.loop.Closing();
}

// The code of the next key, shown; nothing when the learn mode ends first.
std::optional<int> AtPage::AwaitKey(QLabel& shown) {
  while (LearnGoesOn() && services_.com1.InBufferCount() == 0) {
    // No receive event may take the key away.
    services_.com1.SetReceiveThreshold(0);
    services_.loop.WaitForEvent();
  }
  if (!LearnGoesOn()) return std::nullopt;
  const std::string key = services_.com1.Input();
  const int code = static_cast<unsigned char>(key.at(0));
  shown.setText(tr("%1 / %2").arg(GlyphText(key)).arg(code));
  return code;
}

void AtPage::ShowAwaited(Awaited key) {
  lblATalterCodePfeil->setVisible(key == Awaited::OldKey);
  lblATneuerCodePfeil->setVisible(key == Awaited::NewKey);
  switch (key) {
    case Awaited::OldKey:
      return lblATLernhinweis->setText(
          tr("Jetzt am Terminal die Taste drücken, die geändert werden soll. Beenden mit "
             "\"fertig\" oder Esc."));
    case Awaited::NewKey:
      return lblATLernhinweis->setText(
          tr("Jetzt am Terminal die Taste drücken, die sie werden soll. \"fertig\" oder Esc trägt "
             "dieses Paar nicht ein."));
    case Awaited::Nothing:
      return lblATLernhinweis->setText(
          tr("\"beginnen\" leert die Liste; danach werden Tasten paarweise am Terminal gedrückt."));
  }
}

// What would start an exchange, or show another table, waits until the learn mode is over.
void AtPage::ShowLearning(bool learning) {
  for (QWidget* other :
       {static_cast<QWidget*>(ctlATSaetze), static_cast<QWidget*>(ctlATTerminal),
        static_cast<QWidget*>(cmdATumkodierenStart), static_cast<QWidget*>(cmdATPaarEntfernen)}) {
    other->setEnabled(!learning);
  }
  cmdATumkodierenEnde->setEnabled(learning);
  (learning ? cmdATumkodierenEnde : cmdATumkodierenStart)->setFocus();
  if (learning) return;
  lblATalterCode->clear();
  lblATneuerCode->clear();
  ShowAwaited(Awaited::Nothing);
}

void AtPage::cmdATumkodierenEnde_Click() { StopLearning(); }

void AtPage::cmdATTab_Click(int page) {
  if (page != TestPage) return;
  StopLearning();
  services_.com1.SetReceiveThreshold(1);
}

// The test field.

void AtPage::Received(const std::string& characters) {
  klartext_ += characters;
  if (klartext_.size() > kKlartextKept) klartext_.erase(0, klartext_.size() - kKlartextKept);
  lblATKlartext->setPlainText(GlyphText(klartext_));
  lblATKlartext->moveCursor(QTextCursor::End);
  // Decimal, although the field is called "Hex-Code"; it has always been so.
  lblAThexcode->setNum(static_cast<unsigned char>(characters.back()));
}

void AtPage::cmdATKlartextclear_Click() {
  klartext_.clear();
  lblATKlartext->clear();
  lblAThexcode->clear();
}

// The Terminal's table.

std::optional<std::string> AtPage::ShownTable() {
  const auto command = TableCommand(OnScreen());
  return command ? std::optional(command->Text()) : std::nullopt;
}

std::optional<Command> AtPage::TableCommand(const Edit& edit) {
  std::optional<Command> command;
  Guarded(services_.person, "CreateATTab",
          [&] { command = CreateATTab(Val(edit.number), edit.pairs); });
  return command;
}

void AtPage::cmdSetATTab_Click() {
  const Edit edit = OnScreen();
  if (!HasRoomForTable(services_.exchange, services_.state, services_.person)) return;
  const auto command = TableCommand(edit);
  if (!command) return;
  if (SendToEEprom(services_.exchange, services_.person, *command, " / cmdSetATTab")) {
    services_.exchange.SendString(ActivateAtTable(TableNumber(edit.number)));
  }
}

void AtPage::cmdClearATTast_Click() {
  SendToEEprom(services_.exchange, services_.person,
               DeleteKeyTable(TableNumber(txtATTastNr->Wire())), " / cmdClearATTast");
}

void AtPage::cmdATRead_Click() {
  services_.person.Message(ScreenText(services_.exchange.SendQuery(AskAtTable()).text));
}

}  // namespace kelvo
