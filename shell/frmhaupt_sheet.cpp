#include <QMenu>
#include <QPrintDialog>

#include "bus/stored_terminals.h"
#include "sheet/collect.h"
#include "sheet_page/sheet_dialog.h"
#include "shell/frmhaupt.h"
#include "shell/head_strip.h"
#include "widgets/form.h"

// The data sheet of the Terminals.

namespace kelvo {
namespace {

bool ChoosePrinter(QPrinter& printer, QWidget* parent) {
  QPrintDialog dialog(&printer, parent);
  return dialog.exec() == QDialog::Accepted;
}

}  // namespace

void frmhaupt::AddSheetActions(QMenu* file) {
  AddAction(file, "mnuDateiDatenblatt", tr("&Datenblatt …"), QKeySequence(tr("Ctrl+Shift+D")),
            &frmhaupt::mnuDateiDatenblatt_Click);
  connect(terminals_, &SearchPage::SheetRequested, this, &frmhaupt::mnuDateiDatenblatt_Click);
}

// Where no port was opened yet, the device of the one that is chosen.
std::string frmhaupt::UsedDevice() {
  const std::string open = OpenDevice();
  if (!open.empty()) return open;
  const int position = ComPosition(ComPortNr, data_.ctlComData.Text("ComNr").value_or(""));
  return data_.DeviceOf(position + 1, outside_.folders.data);
}

// Of the Terminal that is chosen on the page Terminals, elsewhere of the one that listens.
std::optional<TerminalId> frmhaupt::SheetWanted() {
  const std::string device = UsedDevice();
  const Recordset& list = data_.ctlDovuData;
  const int chosen = list.Bookmark() != 0 ? CurrentAddress(list) : kNoAddress;
  if (ShownTab() == Tab::Terminals && chosen != kNoAddress) return TerminalId{device, chosen};
  const auto meant = lineState_.Meant();
  return meant ? std::optional(TerminalId{device, *meant}) : std::nullopt;
}

void frmhaupt::MakeSheet() {
  const auto terminals = [this] {
    journal_.Refresh();
    auto readings = std::make_shared<Readings>(outside_.folders.data + "/" + kReadingsFile);
    replies_.AddTo(*readings);
    readings_ = std::move(readings);
    const TerminalId listener{UsedDevice(), lineState_.Meant().value_or(kUnknownAddress)};
    return SheetTerminals(data_, journal_, listener,
                          [this](int address) { return head_->NameOf(address); });
  };
  const auto sources = [this](std::vector<SheetTerminal> some) {
    return SourcesOf(data_, journal_, readings_, std::move(some));
  };
  sheet_ = new SheetDialog(
      {outside_.loop, outside_.person, fonts_, terminals, sources, ChoosePrinter}, this);
  connect(sheet_, &SheetDialog::Finished, this, [this](const QString& result, bool failed) {
    chronicle_.Note(result.toStdString(), failed);
  });
  memory_.Restore(*sheet_);
}

// Made at its first use: few need it often.
void frmhaupt::mnuDateiDatenblatt_Click() {
  if (sheet_ == nullptr) MakeSheet();
  sheet_->Present(SheetWanted());
}

}  // namespace kelvo
