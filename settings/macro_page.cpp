#include "settings/macro_page.h"

#include <QBoxLayout>
#include <QComboBox>
#include <QLabel>
#include <QPushButton>
#include <QRadioButton>

#include "base/val.h"
#include "base/wire_text.h"
#include "link/control_characters.h"
#include "settings/macros.h"
#include "terminal/eeprom.h"
#include "widgets/handlers.h"
#include "widgets/wire_field.h"

namespace kelvo {
namespace {

QString Text(const std::string& text) { return QString::fromStdString(text); }

Fields FieldsOf(const std::string& typ, const std::string& wire, double number) {
  const std::int64_t whole = number < 0 ? -1 : static_cast<std::int64_t>(number);
  return {{"typ", typ}, {"nr_im_display", whole}, {"wert", ScreenText(wire)}};
}

}  // namespace

MacroPage::MacroPage(Services services, QWidget* parent) : QWidget(parent), services_(services) {
  auto* bottom = new QHBoxLayout;
  QWidget* const records = MakeRecords();
  QWidget* const editor = MakeEditor();
  bottom->addWidget(MakeWriting(), 1);
  bottom->addWidget(MakeRunning(), 1);
  auto* page = new QVBoxLayout(this);
  page->addWidget(records);
  page->addWidget(editor, 1);
  page->addLayout(bottom);
  ConnectControls();
}

MacroPage::Edit MacroPage::OnScreen() const { return {txtMakro->Wire(), txtMakroNr->Wire()}; }

void MacroPage::Show(const Edit& edit) {
  txtMakro->SetWire(edit.text);
  txtMakroNr->SetWire(edit.number);
  ShowLength();
}

void MacroPage::Edited() {
  ShowLength();
  records_->Edited();
}

void MacroPage::ShowLength() {
  const std::size_t length = txtMakro->Wire().size();
  const bool tooLong = length > kLongestMakro;
  lblMakroLaenge->setText(tr("%1 von höchstens %2 Zeichen%3")
                              .arg(length)
                              .arg(kLongestMakro)
                              .arg(tooLong ? tr(" – zu lang") : QString()));
}

void MacroPage::ShowFreeBytes() {
  const auto bytes = services_.state.freeBytes;
  lblMakroFrei->setText(bytes ? tr("%1 Bytes, zuletzt gelesen").arg(Text(NumberText(*bytes)))
                              : tr("noch nicht gelesen"));
}

void MacroPage::chkMakroTyp_Click(int index) {
  if (!chkMakroTyp[static_cast<std::size_t>(index)]->isChecked()) return;
  records_->SetSource(MakroSource(index));
}

bool MacroPage::SaveMakro(const std::string& typ, const std::string& wire, double number,
                          const std::string& proposedName) {
  return records_->Save(FieldsOf(typ, wire, number), {wire, {}}, proposedName);
}

void MacroPage::SaveShown() {
  const Edit edit = OnScreen();
  records_->SaveShown(FieldsOf("Makro", edit.text, Val(edit.number)), edit);
}

void MacroPage::cmdInsertESC_Click() {
  txtMakro->setFocus();
  txtMakro->InsertWire({kEsc});
}

void MacroPage::InvalidNumber(QLineEdit* field) {
  services_.person.Message("Keine gültige Makro-Nummer", Icon::Exclamation);
  field->setFocus();
  field->setSelection(0, 3);
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
  if (!HasRoom(services_.exchange, services_.state, services_.person, text.size())) return;
  SendToEEprom(services_.exchange, services_.person, kelvo::WriteMakro(number, text), suffix);
}

void MacroPage::cmdPlayMakro_Click() {
  const auto number = MakroNumber(txtMakroNrDisplay->Wire());
  if (!number) return InvalidNumber(txtMakroNrDisplay);
  services_.exchange.SendString(RunMakro(*number));
}

void MacroPage::cmdClearMakro_Click() {
  // The number of the record is checked, the other one is sent: deliberately so. Without any number
  // to send there would be only macro 0 to delete, and nobody has asked for that.
  const auto number = AnyNumber(txtMakroNrDisplay->Wire());
  if (!MakroNumber(txtMakroNr->Wire()) || !number) return InvalidNumber(txtMakroNrDisplay);
  SendToEEprom(services_.exchange, services_.person, kelvo::DeleteMakro(*number),
               " / cmdClearMakro");
}

}  // namespace kelvo
