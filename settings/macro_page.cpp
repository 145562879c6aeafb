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
  names_.emplace(*cboMakro);
  drafts_.emplace(services_.macros, *names_, *cmdMakroVerwerfen);
  ConnectControls();
  services_.macros.SetRepositionHandler([this] { ShowRecord(); });
}

void MacroPage::FillNames() {
  names_->Fill(services_.macros);
  drafts_->MarkNames();
}

void MacroPage::SelectFirst() {
  services_.macros.MoveFirst();
  names_->Select(services_.macros.Bookmark());
}

MacroPage::Edit MacroPage::Stored() const {
  const Recordset& macros = services_.macros;
  // A text with characters that no wire can carry was put in by another program; it is shown as far
  // as it goes.
  const std::string text = macros.Text("wert").value_or("");
  std::string wire = WireText(text).value_or(Text(text).toLatin1().toStdString());
  return {std::move(wire), macros.Text("nr_im_display").value_or("")};
}

MacroPage::Edit MacroPage::Shown() const { return {txtMakro->Wire(), txtMakroNr->Wire()}; }

void MacroPage::ShowRecord() {
  if (const Edit* const draft = drafts_->Resume()) return Show(Edit(*draft));
  Restart(Stored());
}

// The current record shows just this, and nothing of it is edited.
void MacroPage::Restart(const Edit& edit) {
  Show(edit);
  drafts_->Begin(edit);
}

void MacroPage::Show(const Edit& edit) {
  showing_ = true;
  txtMakro->SetWire(edit.text);
  txtMakroNr->SetWire(edit.number);
  showing_ = false;
  ShowLength();
}

void MacroPage::Edited() {
  ShowLength();
  if (!showing_) drafts_->Note(Shown());
}

void MacroPage::ShowLength() {
  const std::size_t length = txtMakro->Wire().size();
  const bool tooLong = length > LongestMakro;
  lblMakroLaenge->setText(tr("%1 von höchstens %2 Zeichen%3")
                              .arg(length)
                              .arg(LongestMakro)
                              .arg(tooLong ? tr(" – zu lang") : QString()));
}

void MacroPage::ShowFreeBytes() {
  const auto bytes = services_.state.freeBytes;
  lblMakroFrei->setText(bytes ? tr("%1 Bytes, zuletzt gelesen").arg(Text(NumberText(*bytes)))
                              : tr("noch nicht gelesen"));
}

void MacroPage::cboMakro_Click() {
  Recordset& macros = services_.macros;
  if (!macros.FindFirst("Bezeichnung", names_->ChosenName())) macros.MoveFirst();
}

void MacroPage::chkMakroTyp_Click(int index) {
  if (!chkMakroTyp[static_cast<std::size_t>(index)]->isChecked()) return;
  services_.macros.SetSource(MakroSource(index));
  FillNames();
  SelectFirst();
}

void MacroPage::cmdMakroVerwerfen_Click() { Restart(Stored()); }

void MacroPage::NewMakro() {
  Recordset& macros = services_.macros;
  drafts_->Drop(0);
  macros.AddNew();
  macros.Set("Bezeichnung", std::string(NewRecordName));
  macros.Update();
  macros.MoveLast();
  names_->Append(macros.Bookmark(), NewRecordName);
  names_->Select(macros.Bookmark());
  Restart({{}, "-1"});
}

// Asks for a name until it is free or may be overwritten, and moves to its record, which is
// appended if need be; false when the operator gives up.
bool MacroPage::StoreName(const std::string& proposed, std::string& name) {
  name = proposed;
  for (;;) {
    const auto answer = services_.person.Input("Bezeichnung für dieses Makro :", name);
    if (!answer || answer->empty()) return false;
    name = *answer;
    if (!services_.macros.FindFirst("Bezeichnung", name)) {
      NewMakro();
      return true;
    }
    if (services_.person.Ask("Bezeichnung existiert schon, überschreiben ?", Icon::Question,
                             "Speichern")) {
      return true;
    }
  }
}

bool MacroPage::SaveMakro(const std::string& typ, const std::string& wire, double number,
                          const std::string& proposedName) {
  Recordset& macros = services_.macros;
  const std::int64_t edited = macros.Bookmark();
  std::string name;
  if (!StoreName(proposedName, name)) {
    macros.MoveToBookmark(edited);
    return false;
  }
  macros.Edit();
  macros.Set("Bezeichnung", name);
  macros.Set("typ", typ);
  macros.Set("lfdnr", static_cast<std::int64_t>(macros.RecordCount()) - 1);
  macros.Set("nr_im_display", number < 0 ? std::int64_t{-1} : static_cast<std::int64_t>(number));
  macros.Set("wert", ScreenText(wire));
  macros.Update();
  names_->Rename(macros.Bookmark(), name);
  names_->Select(macros.Bookmark());
  Restart(Stored());
  return true;
}

void MacroPage::SaveShown() {
  const Edit edit = Shown();
  const std::int64_t edited = services_.macros.Bookmark();
  if (!SaveMakro("Makro", edit.text, Val(edit.number), names_->ChosenName())) return;
  // Saved under whatever name, the edit is no draft any more.
  drafts_->Drop(edited);
}

void MacroPage::DeleteMakro() {
  Recordset& macros = services_.macros;
  const std::int64_t bookmark = macros.Bookmark();
  if (bookmark == 0) return;
  const std::string name = macros.Text("Bezeichnung").value_or("");
  if (!services_.person.Ask("Makro '" + name + "' löschen ?", Icon::Question)) return;
  macros.Delete();
  macros.MoveNext();
  drafts_->Drop(bookmark);
  names_->Remove(bookmark);
  if (macros.Eof() && macros.RecordCount() > 0) macros.MoveLast();
  names_->Select(macros.Bookmark());
}

void MacroPage::cmdInsertESC_Click() {
  txtMakro->setFocus();
  txtMakro->InsertWire(std::string(CmdPrefix));
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
  if (text.size() > LongestMakro) {
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
  const int free = RoundToEven(GetEEpromBytes(services_.exchange, services_.state));
  if (static_cast<int>(text.size()) > free - EepromReserve) {
    return services_.person.Message("nicht genügend Platz im EEprom", Icon::Exclamation);
  }
  SendToEEprom(services_.exchange, services_.person, WriteMakroCommand(number, text), suffix);
}

void MacroPage::cmdPlayMakro_Click() {
  const auto number = MakroNumber(txtMakroNrDisplay->Wire());
  if (!number) return InvalidNumber(txtMakroNrDisplay);
  services_.exchange.CommandBuffer = RunMakroCommand(*number);
  services_.exchange.SendCommand(Acknowledge::None);
}

void MacroPage::cmdClearMakro_Click() {
  // The number of the record is checked, the other one is sent: deliberately so. Without any number
  // to send there would be only macro 0 to delete, and nobody has asked for that.
  const auto number = AnyNumber(txtMakroNrDisplay->Wire());
  if (!MakroNumber(txtMakroNr->Wire()) || !number) return InvalidNumber(txtMakroNrDisplay);
  SendToEEprom(services_.exchange, services_.person, DeleteMakroCommand(*number),
               " / cmdClearMakro");
}

}  // namespace kelvo
