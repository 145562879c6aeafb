#include <QMenu>
#include <QStatusBar>

#include "base/val.h"
#include "inventory/stored_records.h"
#include "inventory_page/compare_dialog.h"
#include "inventory_page/equip_dialog.h"
#include "inventory_page/inventory_view.h"
#include "inventory_page/write_desk.h"
#include "link/addresses.h"
#include "shell/frmhaupt.h"
#include "shell/head_strip.h"
#include "widgets/number_note.h"

// What the main window knows of what was written into the Terminals.

namespace kelvo {
namespace {

std::string ElsewhereWords(int address) {
  if (address == kUnknownAddress) return "ohne gewählte Adresse";
  if (address == kAllAddresses) return "bei allen zugleich";
  return "bei Adresse " + std::to_string(address);
}

}  // namespace

std::string frmhaupt::OpenDevice() {
  if (interfaces_ == nullptr) return {};  // the window is being built
  return data_.DeviceOf(interfaces_->OpenPortNumber(), outside_.folders.data);
}

InventoryView* frmhaupt::MakeInventory() {
  const std::string path = outside_.folders.data + "/" + kJournalFile;
  journal_.SetFailureListener([this, path](const std::string& reason) {
    outside_.person.Notify(
        "Was in die Terminals geschrieben wird, kann nicht aufgezeichnet werden: \"" + path +
            "\", " + reason + ". Gesendet wird trotzdem; der Bestand nennt es ungewiss.",
        Icon::Exclamation);
  });
  inventory_ =
      new InventoryView({journal_, outside_.person, [this] { return recorder_.Listener(); },
                         [this] { return HearingOf(lineState_); },
                         [this] {
                           const auto present = PresentFreeBytes();
                           return present && present->bytes;
                         },
                         [this] { return StoredRecords(data_.database); },
                         [this](int address) { return head_->NameOf(address); }});
  journal_.SetListener([this] { ShowInventory(); });
  freeBytes_.SetListener([this] { ShowInventory(); });
  connect(inventory_, &InventoryView::RecordWanted, this, &frmhaupt::ShowRecord);
  return inventory_;
}

void frmhaupt::MakeEquipping(QMenu* menu) {
  const auto selected = [this] { return lineState_.Meant(); };
  equip_ = new EquipDialog(
      {exchange_, outside_.loop, outside_.person, state_, journal_, data_.ctlDovuData,
       data_.Optionen, [this] { return StoredRecords(data_.database); },
       [this] { return OpenDevice(); }, selected, slot_.File("ausstattung")},
      this);
  connect(equip_, &EquipDialog::Finished, this, [this](const QString& result, bool failed) {
    chronicle_.Note(result.toStdString(), failed);
  });
  connect(terminals_, &SearchPage::EquipRequested, equip_, &EquipDialog::Open);
  connect(inventory_, &InventoryView::EquipRequested, equip_, &EquipDialog::Open);
  connect(inventory_, &InventoryView::CompareRequested, this, &frmhaupt::mnuAnsichtVergleich_Click);
  AddAction(menu, "mnuAusstatten", tr("Terminal &ausstatten …"), {},
            &frmhaupt::mnuAusstatten_Click);
}

void frmhaupt::mnuAusstatten_Click() { equip_->Open(); }

void frmhaupt::TakeLeftEquipping() {
  TakeLeft("ausstattung");
  if (!equip_->HasLeftOver()) return;
  chronicle_.Note(
      "Das Ausstatten von Terminals ist nicht zu Ende; Bearbeiten / Terminal ausstatten … setzt es "
      "fort.",
      true);
}

std::string frmhaupt::Taken(ItemKey key, const std::string& record, const std::string& command) {
  return TakenText(journal_.Of(recorder_.Listener()), key, record, command);
}

// Each page says what a number is taken by that it writes under.
void frmhaupt::NoteTakenNumbers() {
  const auto taken = [this](ItemKind kind) {
    return [this, kind](int number, const NumberNote::Shown& shown) {
      return Taken({kind, number}, shown.name, shown.command);
    };
  };
  macros_->Note().SetWords([this](int number, const NumberNote::Shown& shown) {
    const std::string own = Taken({ItemKind::Macro, number}, shown.name, shown.command);
    const std::string start = Taken({ItemKind::Macro, 0}, shown.name, shown.command);
    return !own.empty() || start.empty() ? own : "Autostart, " + start;
  });
  matrix_->Note().SetWords(taken(ItemKind::MatrixTable));
  at_->Note().SetWords(taken(ItemKind::AtTable));
}

// The box that asks for the number stays as it is.
void frmhaupt::TellTakenBitmap(std::optional<int> number) {
  const std::string words = number ? Taken({ItemKind::Bitmap, *number}, {}, {}) : std::string();
  statusBar()->showMessage(words.empty() ? QString() : "⚠ " + QString::fromStdString(words));
}

// Much may change at once.
void frmhaupt::ShowInventory() {
  if (std::exchange(inventoryWaits_, true)) return;
  QMetaObject::invokeMethod(this, &frmhaupt::ShowInventoryNow, Qt::QueuedConnection);
}

void frmhaupt::ShowInventoryNow() {
  inventoryWaits_ = false;
  const ShownInventory now{recorder_.Listener(), HearingOf(lineState_), journal_.Entries().size(),
                           freeBytes_.Asked()};
  if (std::exchange(shownInventory_, now) == now) return;
  inventory_->Refresh();
  ShowFreeBytes();
  writeDesk_->NoteChange();
  if (compare_ != nullptr) compare_->Follow();
  for (NumberNote* const note : {&macros_->Note(), &matrix_->Note(), &at_->Note()}) {
    note->Refresh();
  }
  ShowRecordStates();
}

// The table of the texts asks for each row; what it is told is of one moment.
void frmhaupt::ShowRecordStates() {
  const bool listens = HearingOf(lineState_) == Hearing::Listens;
  const auto inventory =
      std::make_shared<const Inventory>(listens ? journal_.Of(recorder_.Listener()) : Inventory());
  macros_->SetInTerminal([inventory](const MacroInQuestion& record) {
    return StateOf(*inventory, {0, record.typ, record.name, record.number, record.wire});
  });
}

// What the Terminal that listens has told, or what it has last left unanswered.
std::optional<FreeBytes> frmhaupt::PresentFreeBytes() const {
  auto said = freeBytes_.Of(recorder_.Listener());
  const bool listens = HearingOf(lineState_) == Hearing::Listens;
  return said && (listens || !said->bytes) ? said : std::nullopt;
}

// Those of one Terminal must not pass for those of another.
void frmhaupt::ShowFreeBytes() {
  const auto present = PresentFreeBytes();
  const auto said = present ? present : freeBytes_.LastAt(recorder_.Listener().device);
  const FreeBytes known = said.value_or(FreeBytes());
  state_.freeBytes = known.bytes;
  state_.freeBytesLack = known.lack;
  state_.freeBytesAsked = said ? std::optional(known.time) : std::nullopt;
  state_.freeBytesElsewhere = present || !said ? "" : ElsewhereWords(known.terminal.address);
  const Inventory there = said ? journal_.Of(known.terminal) : Inventory();
  state_.freeBytesChanged = there.FreeBytes().LastReading() && there.FreeBytes().Changed();
  macros_->ShowFreeBytes();
  eeprom_->ShowFreeBytes();
}

void frmhaupt::ShowRecord(ItemKind kind, qint64 record) {
  switch (kind) {
    case ItemKind::MatrixTable:
      SetTab(Tab::MatrixKeyboard);
      matrix_->Records().Select(record);
      return;
    case ItemKind::AtTable:
      SetTab(Tab::AtKeyboard);
      at_->Records().Select(record);
      return;
    default:
      SetTab(Tab::Macros);
      macros_->ShowRecord(record);
  }
}

// Made at its first use: until then nobody needs what was read earlier.
void frmhaupt::mnuAnsichtVergleich_Click() {
  if (compare_ == nullptr) {
    const auto addresses = [this] { return StoredAddresses(data_.ctlDovuData); };
    compare_ = new CompareDialog(
        {exchange_, outside_.loop, outside_.person, journal_,
         outside_.folders.data + "/" + kReadingsFile, *writeDesk_,
         [this] { return StoredRecords(data_.database); }, addresses,
         [this](int address) { return head_->NameOf(address); }, [this] { return UsedDevice(); },
         [this](const TerminalId& terminal) -> const Settings& {
           return recorder_.SetOn(terminal);
         }},
        this);
    connect(compare_, &CompareDialog::Finished, this, [this](const QString& what, bool failed) {
      chronicle_.Note(what.toStdString(), failed);
    });
  }
  compare_->Present();
}

}  // namespace kelvo
