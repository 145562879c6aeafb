#include "keyboards/at_page.h"

#include <QComboBox>
#include <QGroupBox>
#include <QLabel>
#include <QPlainTextEdit>
#include <QPushButton>
#include <QTabWidget>
#include <QTableView>

#include <algorithm>

#include "base/guard.h"
#include "base/val.h"
#include "base/wire_text.h"
#include "keyboards/at_list.h"
#include "keyboards/key_codes.h"
#include "keyboards/table_number_hint.h"
#include "keyboards/table_order.h"
#include "terminal/eeprom.h"
#include "widgets/handlers.h"
#include "widgets/number_note.h"
#include "widgets/wire_field.h"

namespace kelvo {
namespace {

enum InnerPage { TestPage, LearnPage };

// A test of the keyboard needs no more than this.
constexpr std::size_t kKlartextKept = 2000;
// A key may send several characters, as the arrows do; nobody presses the next one so soon.
constexpr std::chrono::milliseconds kKeyGap{50};

}  // namespace

AtPage::Edit AtPage::OnScreen() const { return {list_->Pairs(), txtATTastNr->Wire()}; }

void AtPage::Show(const Edit& edit) {
  txtATTastNr->SetWire(edit.number);
  lblATTastBelegt->Refresh();                                     // it is another record's
  if (list_->Pairs() != edit.pairs) list_->SetPairs(edit.pairs);  // else the cursor stays
}

// A record that was never saved has no table: the list stays as it is then.
void AtPage::DisplayATTab(std::optional<std::string> table) {
  if (!table) table = tables_->Wert();
  if (table) list_->SetPairs(ReadAtTable(*table));
}

void AtPage::ShowStored() {
  txtATTastNr->SetWire(tables_->NumberField());
  lblATTastBelegt->Refresh();
  DisplayATTab();
}

void AtPage::Edited() {
  ShowOrder();
  tables_->Edited();
  lblATTastBelegt->RefreshSoon();
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

// A row that is only begun would be lost.
bool AtPage::RowsComplete() {
  if (!list_->HalfTyped()) return true;
  services_.person.Beep();
  Q_EMIT Hint(tr("Die letzte Zeile ist erst halb eingegeben: Es fehlt eine Taste."));
  ctlATTabListe->setFocus();
  ctlATTabListe->setCurrentIndex(list_->MissingCell());
  return false;
}

// The stored text is what is sent, and that holds rows in ascending order alone, and no key that
// keeps its code. False when the operator does not want to lose the others.
bool AtPage::StoredFormHoldsAllRows() {
  if (list_->Pairs().empty()) return true;
  if (!SentAsShown(list_->Pairs())) {
    cmdATSortieren_Click();
    Q_EMIT Hint(tr("Die Zeilen wurden nach dem alten Code sortiert."));
  }
  const std::vector<int> lost = LostRows(list_->Pairs());
  if (lost.empty()) return true;
  std::string codes;
  for (const int code : lost) codes += (codes.empty() ? "" : ", ") + std::to_string(code);
  return services_.person.Ask(
      "Tasten, die ihren Code behalten, stehen in der gespeicherten Tabelle "
      "in keiner Zeile: " +
          codes + ". Ohne diese Zeilen speichern ?",
      Icon::Exclamation, "Speichern");
}

void AtPage::NewATTab() {
  StopLearning();
  tables_->New({});
}

void AtPage::SaveATTab() {
  StopLearning();
  if (!RowsComplete() || !StoredFormHoldsAllRows()) return;
  Edit edit = OnScreen();
  const auto fields = FieldsOf(edit);
  if (!fields) return;
  std::erase_if(edit.pairs, [](const AtPair& pair) { return pair.oldCode == pair.newCode; });
  tables_->SaveShown(*fields, edit);  // the page shows what is stored
}

// A draft may be stored whose rows nobody has sorted.
std::optional<Fields> AtPage::FieldsOf(Edit edit) {
  if (!SentAsShown(edit.pairs)) edit.pairs = SortedPairs(std::move(edit.pairs));
  const auto command = TableCommand(edit);
  if (!command) return std::nullopt;
  return Fields{{"ausgang", "0"},
                {"eingang", "0"},
                {"nr_im_display", RoundToEven(Val(edit.number))},
                {"wert", ScreenText(command->Text())}};
}

// Number, and old and new code of each pair.
std::vector<std::string> AtPage::Pack(const Edit& edit) {
  std::vector<std::string> packed{edit.number};
  for (const AtPair& pair : edit.pairs) {
    packed.push_back(std::to_string(pair.oldCode));
    packed.push_back(std::to_string(pair.newCode));
  }
  return packed;
}

AtPage::Edit AtPage::Unpack(const std::vector<std::string>& packed) {
  const auto code = [&packed](std::size_t at) {
    return std::clamp(RoundToEven(Val(packed[at])), 0, 255);
  };
  Edit edit;
  if (!packed.empty()) edit.number = packed.front();
  for (std::size_t i = 1; i + 1 < packed.size(); i += 2) {
    EnterPair(edit.pairs, {code(i), code(i + 1)});
  }
  return edit;
}

void AtPage::DeleteTable() {
  StopLearning();
  tables_->Delete();
}

void AtPage::cmdATPaarEntfernen_Click() {
  const int row = ctlATTabListe->currentIndex().row();
  if (row < 0) return Q_EMIT Hint(tr("Nichts entfernt: In der Liste ist keine Zeile gewählt."));
  list_->Remove(row);
}

void AtPage::cmdATSortieren_Click() { list_->SetPairs(SortedPairs(list_->Pairs())); }

// The learn mode.

// Rows that are stored, or nowhere but here and then asked about, may go.
bool AtPage::MayLearnAnew() {
  const bool unsaved = tables_->CurrentIsEdited() && !list_->Pairs().empty();
  return !unsaved ||
         services_.person.Ask(
             "Die Zeilen der Liste sind nicht gespeichert. Verwerfen und neu beginnen ?",
             Icon::Exclamation);
}

void AtPage::cmdATumkodierenStart_Click() {
  if (!MayLearnAnew()) return;
  const std::int64_t record = services_.tables.Bookmark();
  const AtPairs before = list_->Pairs();
  cmdATTab->setCurrentIndex(LearnPage);
  LearnStopFlag = false;
  ShowLearning(true);
  Guarded(services_.person, "GetATtab", [this] { GetATtab(); });
  StopLearning();
  if (before.empty()) return;
  services_.person.Done().Note("Anlernen", [this, record, before] {
    if (record == 0 || tables_->Select(record)) list_->SetPairs(before);
  });
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
  while (LearnGoesOn()) {
    services_.com1.DiscardInput();
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
  const std::string key = ReadKey();
  if (key.empty()) return std::nullopt;
  const int code = static_cast<unsigned char>(key.front());
  shown.setText(tr("%1 / %2").arg(GlyphText(key)).arg(code));
  return code;
}

// All that one key sends, as far as it follows at once.
std::string AtPage::ReadKey() {
  std::string key;
  auto last = services_.loop.Now();
  while (LearnGoesOn() && services_.loop.Now() - last < kKeyGap) {
    services_.com1.SetReceiveThreshold(0);
    const std::string more = services_.com1.Input();
    key += more;
    if (more.empty()) {
      services_.loop.WaitForEvent(last + kKeyGap - services_.loop.Now());
    } else {
      last = services_.loop.Now();
    }
  }
  return key;
}

void AtPage::ShowAwaited(Awaited key) {
  lblATalterCodePfeil->setVisible(key == Awaited::OldKey);
  lblATneuerCodePfeil->setVisible(key == Awaited::NewKey);
  switch (key) {
    case Awaited::OldKey:
      return lblATLernhinweis->setText(tr(
          "Jetzt am Terminal die Taste drücken, die geändert werden soll, eine nach der anderen. "
          "Beenden mit \"fertig\" oder Esc."));
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
  if (!RowsComplete()) return std::nullopt;
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
  if (!RowsComplete()) return;
  const Edit edit = OnScreen();
  const Sending sending(services_.exchange, {tables_->GivenName(), "ATTab"});
  if (!HasRoomForTable(services_.exchange, services_.state, services_.person)) return;
  const auto command = TableCommand(edit);
  if (!command) return;
  if (SendToEEprom(services_.exchange, services_.person, *command, " / cmdSetATTab")) {
    services_.exchange.SendString(ActivateAtTable(TableNumber(edit.number)));
  }
}

std::optional<WriteOrder> AtPage::OrderShown() {
  if (!RowsComplete()) return std::nullopt;
  const Edit edit = OnScreen();
  const auto command = TableCommand(edit);
  if (!command) return std::nullopt;
  return TableOrder(ItemKind::AtTable, *command, tables_->GivenName(), services_.person,
                    {{}, ActivateAtTable(TableNumber(edit.number)).Text(), 0});
}

NumberNote::Shown AtPage::TableToWrite() const {
  const Edit edit = OnScreen();
  if (edit.pairs.empty()) return {tables_->GivenName(), {}};
  return {tables_->GivenName(), CreateATTab(Val(edit.number), edit.pairs).Text()};
}

void AtPage::cmdClearATTast_Click() {
  SendToEEprom(services_.exchange, services_.person,
               DeleteKeyTable(TableNumber(txtATTastNr->Wire())), " / cmdClearATTast");
}

void AtPage::cmdATRead_Click() {
  const Reply reply = services_.exchange.SendQuery(AskAtTable());
  read_ = reply.Failed() ? std::nullopt : AtTableOf(reply.text);
  ShowReadTable(*cmdATUebernehmen, *lblATGelesen, services_.writeDesk, reply,
                read_ ? std::optional(read_->number) : std::nullopt);
  services_.person.Message(ScreenText(reply.text));
}

void AtPage::cmdATUebernehmen_Click() {
  if (!read_) return;
  StopLearning();
  const std::int64_t record = services_.tables.Bookmark();
  const Edit before = OnScreen();
  Show({read_->pairs, std::to_string(read_->number)});
  Edited();
  services_.person.Done().Note("Übernehmen der Tabelle", [this, record, before] {
    if (record != 0 && !tables_->Select(record)) return;
    Show(before);
    Edited();
  });
  Q_EMIT Hint(tr("Die gelesene Tabelle steht in der Liste; gespeichert ist sie noch nicht."));
}

}  // namespace kelvo
