#include "shell/port_dialog.h"

#include <QComboBox>
#include <QDialogButtonBox>
#include <QGridLayout>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>

#include "base/guard.h"
#include "store/program_data.h"
#include "widgets/form.h"
#include "widgets/tame_text.h"
#include "widgets/texts.h"
#include "widgets/window_size.h"

namespace kelvo {
namespace {

constexpr char kSimulator[] = "simulator.tty";

}  // namespace

PortDialog::PortDialog(const Outside& outside, Recordset& ports, Describer describe,
                       QWidget* parent)
    : QDialog(parent), outside_(outside), ports_(ports), describe_(std::move(describe)) {
  Named(this, "frmAnschluesse");
  setWindowTitle(tr("Anschlüsse"));
  KeepPlace(this);
  auto* grid = new QGridLayout(this);
  auto* text = new QLabel(
      tr("Welches Gerät steht hinter welchem Anschluss? Die Liste zeigt die Schnittstellen, die "
         "dieser "
         "Rechner jetzt hat. Ein Name ohne „/“ am Anfang liegt im Ordner der Datenbank."));
  text->setWordWrap(true);
  grid->addWidget(text, 0, 0, 1, 3);
  const int em = fontMetrics().averageCharWidth();
  for (int row = 0; row < kPortCount; ++row) {
    const auto i = static_cast<std::size_t>(row);
    cboGeraet[i] = Named(new QComboBox, ArrayName("cboGeraet", row));
    cboGeraet[i]->setEditable(true);
    cboGeraet[i]->setMinimumWidth(em * 34);
    lblZustand[i] = Named(new QLabel, ArrayName("lblZustand", row));
    lblZustand[i]->setWordWrap(true);
    lblZustand[i]->setMinimumWidth(em * 40);
    grid->addWidget(LabelFor(cboGeraet[i], tr("Com &%1:").arg(row + 1)), row + 1, 0);
    grid->addWidget(cboGeraet[i], row + 1, 1);
    grid->addWidget(lblZustand[i], row + 1, 2);
    connect(cboGeraet[i], &QComboBox::editTextChanged, this, [this, row] { Describe(row); });
    // A chosen entry also carries the port's description; only the device is the text.
    connect(cboGeraet[i], &QComboBox::activated, this, [this, i](int entry) {
      cboGeraet[i]->setEditText(cboGeraet[i]->itemData(entry).toString());
    });
  }
  grid->setColumnStretch(2, 1);
  auto* buttons = new QDialogButtonBox;
  auto* refresh = MakeButton("cmdAnschluesseLesen", tr("&Aktualisieren"));
  auto* store = MakeButton("cmdAnschluesseSpeichern", tr("&Speichern"));
  auto* cancel = MakeButton("cmdAnschluesseAbbrechen", tr("A&bbrechen"));
  store->setDefault(true);
  buttons->addButton(refresh, QDialogButtonBox::ActionRole);
  buttons->addButton(store, QDialogButtonBox::AcceptRole);
  buttons->addButton(cancel, QDialogButtonBox::RejectRole);
  grid->addWidget(buttons, kPortCount + 1, 0, 1, 3);
  connect(refresh, &QPushButton::clicked, this, &PortDialog::Refresh);
  connect(buttons, &QDialogButtonBox::accepted, this, &PortDialog::accept);
  connect(buttons, &QDialogButtonBox::rejected, this, &PortDialog::reject);
}

void PortDialog::Load() {
  ports_.Refresh();
  for (int row = 0; row < kPortCount; ++row) {
    const bool found = ports_.FindFirst("ComNr", std::int64_t{row + 1});
    cboGeraet[static_cast<std::size_t>(row)]->setEditText(
        found ? Text(ports_.Text("Geraet").value_or("")) : QString());
  }
  Refresh();
}

void PortDialog::Refresh() {
  const std::vector<MachinePort> ports =
      outside_.machine.ports ? outside_.machine.ports() : std::vector<MachinePort>();
  for (int row = 0; row < kPortCount; ++row) {
    QComboBox& box = *cboGeraet[static_cast<std::size_t>(row)];
    const QString device = box.currentText();
    box.clear();
    for (const MachinePort& port : ports) {
      box.addItem(Tamed(Text(port.description + " – " + port.device)), Text(port.device));
    }
    box.addItem(tr("Simulator – %1").arg(QLatin1String(kSimulator)), QLatin1String(kSimulator));
    box.setEditText(device);
    Describe(row);
  }
}

std::string PortDialog::Device(int row) const {
  return cboGeraet[static_cast<std::size_t>(row)]->currentText().trimmed().toStdString();
}

// All rows of a device say the same of it, and that there are several.
void PortDialog::Describe(int row) {
  const std::string state = describe_(AbsoluteDevice(Device(row), outside_.folders.data));
  for (int other = 0; other < kPortCount; ++other) {
    if (Device(other) == Device(row)) states_[static_cast<std::size_t>(other)] = state;
    ShowState(other);
  }
  ShowState(row);
}

void PortDialog::ShowState(int row) {
  QStringList others;
  for (int other = 0; other < kPortCount; ++other) {
    if (other != row && !Device(row).empty() && Device(other) == Device(row)) {
      others << tr("Com %1").arg(other + 1);
    }
  }
  const auto i = static_cast<std::size_t>(row);
  const QString state = Text(states_[i]);
  lblZustand[i]->setText(
      others.isEmpty() ? state
                       : tr("%1; dasselbe Gerät wie %2").arg(state, others.join(tr(" und "))));
}

void PortDialog::Store() {
  for (int row = 0; row < kPortCount; ++row) {
    const bool found = ports_.FindFirst("ComNr", std::int64_t{row + 1});
    if (found && ports_.Text("Geraet") == Device(row)) continue;
    if (found) {
      ports_.Edit();
    } else {
      ports_.AddNew();
      ports_.Set("ComNr", std::int64_t{row + 1});
    }
    ports_.Set("Geraet", Device(row));
    ports_.Update();
  }
}

void PortDialog::accept() {
  Guarded(outside_.person, "Anschlüsse", [this] {
    Store();
    QDialog::accept();
  });
}

}  // namespace kelvo
