#include "settings/macro_page.h"

#include <QBoxLayout>
#include <QComboBox>
#include <QLabel>
#include <QPushButton>
#include <QRadioButton>
#include <algorithm>

#include "base/val.h"
#include "base/wire_text.h"
#include "graphics/device_font.h"
#include "link/control_characters.h"
#include "settings/macro_desk.h"
#include "settings/macro_edit.h"
#include "settings/macros.h"
#include "store/display_size.h"
#include "terminal/eeprom.h"
#include "widgets/handlers.h"
#include "widgets/number_note.h"
#include "widgets/texts.h"
#include "widgets/wire_field.h"

namespace kelvo {
namespace {

QString NumberInTerminal() {
  return MacroPage::tr(
      "Nummer im Terminal: 0 bis 255, die Nummer, unter der das Makro geschrieben wurde.");
}

}  // namespace

MacroPage::MacroPage(Services services, QWidget* parent)
    : QWidget(parent), services_(std::move(services)) {
  auto* bottom = new QHBoxLayout;
  QWidget* const records = MakeRecords();
  QWidget* const panes = MakePanes();
  bottom->addWidget(MakeWriting(), 1);
  bottom->addWidget(MakeRunning(), 1);
  auto* page = new QVBoxLayout(this);
  page->addWidget(records);
  page->addWidget(panes, 1);
  page->addLayout(bottom);
  ConnectControls();
  ConnectTable();
}

Fields MacroPage::FieldsOf(const std::string& typ, const std::string& wire, double number) {
  const std::int64_t whole = number < 0 ? -1 : RoundToEven(number);
  return {{"typ", typ}, {"nr_im_display", whole}, {"wert", ScreenText(wire)}};
}

// Without a number it has none in the Terminal; 0 would be the macro that starts by itself.
double MacroPage::NumberOf(const Edit& edit) {
  return AnyNumber(edit.number) ? Val(edit.number) : -1;
}

MacroPage::Edit MacroPage::OnScreen() const { return {txtMakro->Wire(), txtMakroNr->Wire()}; }

void MacroPage::Show(const Edit& edit) {
  if (txtMakro->Wire() != edit.text) txtMakro->SetWire(edit.text);  // else the caret stays
  txtMakroNr->SetWire(edit.number);
  ShowLength();
  OfferNumber();
  ShowContext();
  ShowRecordsSoon();
  lblMakroBelegt->Refresh();  // it is another record's
}

void MacroPage::Edited() {
  ShowLength();
  OfferNumber();
  records_->Edited();
  lblMakroBelegt->RefreshSoon();
}

// What is written under a number is mostly run under the same.
void MacroPage::OfferNumber() {
  const auto number = MakroNumber(txtMakroNr->Wire());
  cmdMakroNrNehmen->setEnabled(number.has_value());
  cmdMakroNrNehmen->setText(number ? tr("Nummer %1 übernehmen").arg(*number)
                                   : tr("Nummer übernehmen"));
}

// What the text is checked against: its own number, its kind, the display.
void MacroPage::ShowContext() {
  MacroContext context;
  const auto [width, height] = DisplaySizeIn(services_.defaults);
  context.display = {width, height};
  context.isMacro = services_.macros.Text("typ").value_or("Makro") == "Makro";
  context.number = MakroNumber(txtMakroNr->Wire());
  context.macroText = [this](int number) { return NumberedText(number); };
  context.hasGlyph = [this](int font, unsigned char character) {
    return services_.fonts.Font(font).HasGlyph(character);
  };
  desk_->SetContext(std::move(context));
}

void MacroPage::ShowLength() {
  const std::size_t length = txtMakro->Wire().size();
  const bool tooLong = length > kLongestMakro;
  lblMakroLaenge->setText(tr("%1 von höchstens %2 Zeichen%3")
                              .arg(length)
                              .arg(kLongestMakro)
                              .arg(tooLong ? tr(" – zu lang") : QString()));
}

void MacroPage::Shown() {
  records_->Refresh();
  ShowRecordsSoon();
  ShowContext();  // the display may be another one now
  ShowFreeBytes();
}

void MacroPage::ShowFreeBytes() {
  const TerminalState& state = services_.state;
  const QString said =
      state.freeBytes && state.freeBytesAsked && state.freeBytesLack.empty()
          ? tr("%1 Byte, zuletzt gelesen %2")
                .arg(Text(NumberText(*state.freeBytes)), MinuteText(*state.freeBytesAsked))
      : state.freeBytesLack.empty() ? tr("noch nicht gelesen")
                                    : Text(state.freeBytesLack);
  const bool changed = state.freeBytesChanged && state.freeBytesLack.empty();
  lblMakroFrei->setText((said + u' ' + Text(state.freeBytesElsewhere)).trimmed() +
                        (changed ? tr(", seither geschrieben") : QString()));
}

void MacroPage::chkMakroTyp_Click(int index) {
  if (!chkMakroTyp[static_cast<std::size_t>(index)]->isChecked()) return;
  try {
    records_->SetSource(MakroSource(index));
    shownTyp_ = index;
  } catch (const StoreError&) {
    TickTyp(shownTyp_);  // its records stay in the list
    throw;
  }
}

void MacroPage::TickTyp(int index) {
  for (std::size_t i = 0; i < chkMakroTyp.size(); ++i) {
    if (chkMakroTyp[i] == nullptr) continue;
    const QSignalBlocker quiet(chkMakroTyp[i]);
    chkMakroTyp[i]->setAutoExclusive(false);  // there may be none
    chkMakroTyp[i]->setChecked(static_cast<int>(i) == index);
    chkMakroTyp[i]->setAutoExclusive(true);
  }
}

void MacroPage::ShowRecord(std::int64_t bookmark) {
  for (QRadioButton* const kind : chkMakroTyp) {
    if (records_->Select(bookmark)) return;
    if (kind != nullptr) kind->click();
  }
  records_->Select(bookmark);
}

bool MacroPage::SaveMakro(const std::string& typ, const std::string& wire, double number,
                          const std::string& proposedName) {
  ShowRecordsSoon();
  return records_->Save(FieldsOf(typ, wire, number), {wire, {}}, proposedName);
}

void MacroPage::SaveShown() {
  const Edit edit = OnScreen();
  ShowRecordsSoon();
  records_->SaveShown(FieldsOf(TypToSave(), edit.text, NumberOf(edit)), edit);
}

// Of the kind that the list shows, so that it stays in the list.
void MacroPage::NewMakro() {
  records_->New({{}, "-1"}, {{"typ", ListedTyp()}, {"nr_im_display", std::int64_t{-1}}});
  txtMakro->setFocus();
}

std::string MacroPage::ListedTyp() const {
  for (const MakroTyp& kind : kMakroTypen) {
    if (chkMakroTyp[static_cast<std::size_t>(kind.index)]->isChecked()) return kind.typ;
  }
  return "Makro";
}

// What is no macro belongs to these, in the dative; empty for a macro and for what nobody knows.
std::string MacroPage::OthersOf(const std::string& typ) {
  if (typ == "Symbol") return "den Symbolen";
  const auto* const known =
      std::find_if(std::begin(kMakroTypen), std::end(kMakroTypen),
                   [&typ](const MakroTyp& kind) { return kind.index > 1 && kind.typ == typ; });
  return known == std::end(kMakroTypen) ? std::string() : known->plural;
}

// The list may show records of another kind.
std::string MacroPage::TypToSave() {
  const std::string typ = services_.macros.Text("typ").value_or("");
  const std::string others = OthersOf(typ);
  const bool stays =
      !others.empty() &&
      !services_.person.Ask("Der gezeigte Satz ist kein Makro, sondern gehört zu " + others +
                                ". Als Makro speichern ? Mit Nein bleibt er, was er ist.",
                            Icon::Exclamation, "Speichern");
  return stays ? typ : "Makro";
}

void MacroPage::cmdInsertESC_Click() {
  txtMakro->setFocus();
  txtMakro->InsertWire({kEsc});
  txtMakro->Complete();
}

void MacroPage::cmdInsertTextende_Click() {
  txtMakro->setFocus();
  txtMakro->InsertWire({kEot});
}

void MacroPage::InvalidNumber(QLineEdit* field) {
  services_.person.Message("Keine gültige Makro-Nummer", Icon::Exclamation);
  field->setFocus();
  field->setSelection(0, 3);
}

// Says on the page what is missing, because the message does not.
void MacroPage::LackingNumber(const QString& hint) {
  lblMakroHinweis->setText(hint);
  InvalidNumber(txtMakroNrDisplay);
}

void MacroPage::cmdSetMakro_Click() {
  const auto number = MakroNumber(txtMakroNr->Wire());
  if (!number) return InvalidNumber(txtMakroNr);
  WriteMakro(*number, " / cmdSetMakro");
}

void MacroPage::cmdSetAutostartMakro_Click() { WriteMakro(0, " / cmdSetAutoStartMakro"); }

// What is known to be wrong before the Terminal is asked anything.
bool MacroPage::CheckText(const std::string& text) {
  // The message names 1024 although 1024 characters are refused; it has always done so.
  if (text.size() > kLongestMakro) {
    services_.person.Message("Makro zu lang (max. 1024 Zeichen)", Icon::Exclamation);
    return false;
  }
  const std::size_t etx = EtxPosition(text);
  if (etx == 0) return true;
  services_.person.Message("Das Makro enthält an Position " + std::to_string(etx) +
                               " das Zeichen ETX (Code 3). Es beendet einen Makrotext und kann "
                               "nicht darin stehen; es wurde nichts gesendet.",
                           Icon::Exclamation);
  return false;
}

void MacroPage::WriteMakro(int number, const std::string& suffix) {
  const std::string text = txtMakro->Wire();
  if (!CheckText(text)) return;
  const Sending sending(services_.exchange, {records_->GivenName(), "Makro"});
  if (!HasRoom(services_.exchange, services_.state, services_.person, text.size())) return;
  SendToEEprom(services_.exchange, services_.person, kelvo::WriteMakro(number, text), suffix);
}

// The same checks as in front of a usual write.
std::optional<WriteOrder> MacroPage::OrderShown() {
  const auto number = MakroNumber(txtMakroNr->Wire());
  const std::string text = txtMakro->Wire();
  if (!number) InvalidNumber(txtMakroNr);
  if (!number || !CheckText(text)) return std::nullopt;
  WriteOrder order;
  order.item = {
      {ItemKind::Macro, *number}, kelvo::WriteMakro(*number, text).Text(), records_->GivenName()};
  order.frame.room = text.size();
  return order;
}

void MacroPage::cmdMakroNrNehmen_Click() {
  const auto number = MakroNumber(txtMakroNr->Wire());
  if (number) txtMakroNrDisplay->SetWire(std::to_string(*number));
}

void MacroPage::cmdPlayMakro_Click() {
  const auto number = MakroNumber(txtMakroNrDisplay->Wire());
  if (!number) return LackingNumber(NumberInTerminal());
  services_.exchange.SendString(RunMakro(*number));
}

void MacroPage::cmdClearMakro_Click() {
  // The number of the record is checked, the other one is sent: deliberately so. Without any number
  // to send there would be only macro 0 to delete, and nobody has asked for that.
  const auto number = AnyNumber(txtMakroNrDisplay->Wire());
  if (!MakroNumber(txtMakroNr->Wire())) {
    return LackingNumber(tr("Zum Löschen muss auch links eine Makro-Nummer von 0 bis 255 stehen."));
  }
  if (!number) return LackingNumber(NumberInTerminal());
  SendToEEprom(services_.exchange, services_.person, kelvo::DeleteMakro(*number),
               " / cmdClearMakro");
}

}  // namespace kelvo
