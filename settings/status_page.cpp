#include "settings/status_page.h"

#include <QBoxLayout>
#include <QCheckBox>
#include <QGridLayout>
#include <QGroupBox>
#include <QLabel>
#include <QPlainTextEdit>
#include <QPushButton>

#include "base/val.h"
#include "link/chronicle.h"
#include "link/commands.h"
#include "settings/status.h"
#include "terminal/eeprom.h"
#include "terminal/version.h"
#include "widgets/form.h"
#include "widgets/handlers.h"
#include "widgets/read_mark.h"
#include "widgets/wire_field.h"

namespace kelvo {
namespace {

QString Number(double number) { return QString::fromStdString(NumberText(number)); }

QLineEdit* NumberField(const char* name) {
  auto* field = Named(new WireField, name);
  field->setMaximumWidth(field->fontMetrics().horizontalAdvance(QStringLiteral("0")) * 10);
  return field;
}

}  // namespace

StatusPage::StatusPage(Services services, QWidget* parent) : QWidget(parent), services_(services) {
  auto* left = new QGridLayout;
  left->addWidget(MakeIdentity(), 0, 0);
  left->addWidget(MakeFlash(), 1, 0);
  left->addWidget(lblFlashLack, 1, 0, Qt::AlignTop);
  left->setRowStretch(0, 1);
  auto* right = new QVBoxLayout;
  for (QWidget* group : {MakeAddress(), MakeResolution(), MakePorts()}) right->addWidget(group);
  right->addStretch();
  auto* page = new QHBoxLayout(this);
  page->addLayout(left, 1);
  page->addLayout(right);
  ConnectControls();
  ShowFlashFrame();
}

QWidget* StatusPage::MakeIdentity() {
  auto* group = new QGroupBox(tr("Terminal"));
  lblVersion = MakeValue("lblVersion");
  lblSysInfo = Named(new QPlainTextEdit, "lblSysInfo");
  lblSysInfo->setReadOnly(true);
  lblSysInfo->setTabChangesFocus(true);
  cmdGetVersion = MakeButton("cmdGetVersion", tr("&Version und Info lesen"));
  QFormLayout* form = MakeForm(group);
  form->setFieldGrowthPolicy(QFormLayout::ExpandingFieldsGrow);
  form->addRow(LabelFor(lblVersion, tr("Firmware-Version:")), lblVersion);
  form->addRow(LabelFor(lblSysInfo, tr("System&information:")), lblSysInfo);
  lblVersionStand = new ReadMark("lblVersionStand", tr("noch nicht gelesen"));
  form->addRow(QString(), ButtonRow({cmdGetVersion, lblVersionStand}));
  return group;
}

QWidget* StatusPage::MakeFlash() {
  ctlFlashFrame = Named(new QGroupBox(tr("Flash-Speicher")), "ctlFlashFrame");
  QSizePolicy policy = ctlFlashFrame->sizePolicy();
  policy.setRetainSizeWhenHidden(true);
  ctlFlashFrame->setSizePolicy(policy);
  lblSektorAnzahl = MakeValue("lblSektorAnzahl");
  lblSektorSize = MakeValue("lblSektorSize");
  cmdGetFlashInfo = MakeButton("cmdGetFlashInfo", tr("Flash-Info &lesen"));
  cmdFlashUpdate = MakeButton("cmdFlashUpdate", tr("Flash a&ktualisieren …"));
  QFormLayout* form = MakeForm(ctlFlashFrame);
  AddRow(form, tr("Sektoren:"), lblSektorAnzahl);
  AddRow(form, tr("Sektorgröße:"), lblSektorSize, tr("Byte"));
  lblFlashStand = new ReadMark("lblFlashStand");
  form->addRow(ButtonRow({cmdGetFlashInfo, cmdFlashUpdate, lblFlashStand}));
  // In its place.
  lblFlashLack = Named(new QLabel, "lblFlashLack");
  return ctlFlashFrame;
}

QWidget* StatusPage::MakeAddress() {
  auto* group = new QGroupBox(tr("Busadresse"));
  txtAdresse = NumberField("txtAdresse");
  txtAdresse->setText(QStringLiteral("0"));
  cmdGetAdresse = MakeButton("cmdGetAdresse", tr("Adresse lese&n"));
  cmdSetAdresse = MakeButton("cmdSetAdresse", tr("Adresse &setzen"));
  QFormLayout* form = MakeForm(group);
  AddRow(form, tr("Ad&resse:"), txtAdresse, tr("0 … 255 (255 = alle)"));
  lblAdresseStand = new ReadMark("lblAdresseStand", tr("noch nicht gelesen"));
  form->addRow(ButtonRow({cmdGetAdresse, cmdSetAdresse, lblAdresseStand}));
  return group;
}

QWidget* StatusPage::MakeResolution() {
  auto* group = new QGroupBox(tr("Auflösung des Displays"));
  txtDisplayX = NumberField("txtDisplayX");
  txtDisplayY = NumberField("txtDisplayY");
  txtDisplayOption = Named(new WireField, "txtDisplayOption");
  txtDisplayOption->setText(QStringLiteral("0"));
  txtDisplayOption->setMaximumWidth(txtDisplayX->maximumWidth());
  cmdSetRes =
      MakeButton("cmdSetRes", tr("Auflösung set&zen"),
                 tr("Setzt die Auflösung, speichert die Konfiguration im EEPROM und startet "
                    "das Terminal neu."));
  QFormLayout* form = MakeForm(group);
  AddRow(form, tr("Breite &X:"), txtDisplayX, tr("20 … 640 Pixel"));
  AddRow(form, tr("Höhe &Y:"), txtDisplayY, tr("20 … 480 Pixel"));
  AddRow(form, tr("O&ption:"), txtDisplayOption, tr("je nach Display"));
  form->addRow(ButtonRow({cmdSetRes}));
  return group;
}

QWidget* StatusPage::MakePorts() {
  auto* group = new QGroupBox(tr("Portleitungen"));
  auto* grid = new QGridLayout(group);
  lblPortP0 = MakeValue("lblPortP0");
  lblPortP1 = MakeValue("lblPortP1");
  lblPortP0->setText(QStringLiteral("0"));
  lblPortP1->setText(QStringLiteral("?"));
  cmdSetPort = MakeButton("cmdSetPort", tr("P0 se&tzen"),
                          tr("Setzt alle acht Ausgänge, auch die, deren Stand nicht bekannt ist: "
                             "Diese werden ausgeschaltet."));
  cmdGetPort = MakeButton("cmdGetPort", tr("P1 l&esen"), tr("Liest die acht Eingänge."));
  grid->addWidget(new QLabel(tr("Leitung:")), 0, 0);
  grid->addWidget(new QLabel(tr("P0 (Ausgänge):")), 1, 0);
  grid->addWidget(new QLabel(tr("P1 (Eingänge):")), 2, 0);
  for (int line = 0; line < 8; ++line) {
    const auto i = static_cast<std::size_t>(line);
    const int column = 8 - line;  // line 7 stands left, as in a binary number
    chkPortP0[i] = Named(new QCheckBox, ArrayName("chkPortP0", line));
    chkPortP1[i] = Named(new QCheckBox, ArrayName("chkPortP1", line));
    chkPortP0[i]->setAccessibleName(tr("Ausgang P0 Leitung %1").arg(line));
    chkPortP1[i]->setAccessibleName(tr("Eingang P1 Leitung %1").arg(line));
    // What has neither been read nor set is not known.
    for (QCheckBox* const box : {chkPortP0[i], chkPortP1[i]}) {
      box->setCheckState(Qt::PartiallyChecked);
    }
    // The inputs show what the Terminal reports; nobody sets them here.
    chkPortP1[i]->setAttribute(Qt::WA_TransparentForMouseEvents);
    chkPortP1[i]->setFocusPolicy(Qt::NoFocus);
    grid->addWidget(new QLabel(QString::number(line)), 0, column, Qt::AlignHCenter);
    grid->addWidget(chkPortP0[i], 1, column, Qt::AlignHCenter);
    grid->addWidget(chkPortP1[i], 2, column, Qt::AlignHCenter);
  }
  for (QLabel* value : {lblPortP0, lblPortP1}) {
    value->setMinimumWidth(value->fontMetrics().horizontalAdvance(QStringLiteral("0000")));
  }
  lblPortP0->setAccessibleName(tr("P0 als Zahl"));
  lblPortP1->setAccessibleName(tr("P1 als Zahl"));
  grid->addWidget(lblPortP0, 1, 9);
  grid->addWidget(lblPortP1, 2, 9);
  grid->addWidget(cmdSetPort, 1, 10);
  grid->addWidget(cmdGetPort, 2, 10);
  lblPortP0Stand = new ReadMark("lblPortP0Stand", tr("nicht bekannt"));
  lblPortP1Stand = new ReadMark("lblPortP1Stand", tr("noch nicht gelesen"));
  grid->addWidget(lblPortP0Stand, 1, 11);
  grid->addWidget(lblPortP1Stand, 2, 11);
  grid->addWidget(new QLabel(tr("P0 setzen setzt alle acht; was nicht bekannt ist, geht aus.")), 3,
                  0, 1, 12);
  grid->setColumnStretch(12, 1);
  return group;
}

void StatusPage::ConnectControls() {
  Operator& person = services_.person;
  OnSend(cmdGetVersion, this, person, &StatusPage::cmdGetVersion_Click);
  OnSend(cmdGetFlashInfo, this, person, &StatusPage::cmdGetFlashInfo_Click);
  OnClick(cmdFlashUpdate, this, person, &StatusPage::cmdFlashUpdate_Click);
  OnSend(cmdGetAdresse, this, person, &StatusPage::cmdGetAdresse_Click);
  OnSend(cmdSetAdresse, this, person, &StatusPage::cmdSetAdresse_Click);
  OnSend(cmdGetPort, this, person, &StatusPage::cmdGetPort_Click);
  OnSend(cmdSetPort, this, person, &StatusPage::cmdSetPort_Click);
  OnSend(cmdSetRes, this, person, &StatusPage::cmdSetRes_Click);
  for (QCheckBox* line : chkPortP0) OnClick(line, this, person, &StatusPage::chkPortP0_Click);
  connect(txtAdresse, &QLineEdit::textChanged, this, &StatusPage::txtAdresse_Change);
  connect(txtAdresse, &QLineEdit::textEdited, lblAdresseStand, &ReadMark::clear);
  connect(txtDisplayX, &QLineEdit::editingFinished, this, &StatusPage::txtDisplayX_LostFocus);
  connect(txtDisplayY, &QLineEdit::editingFinished, this, &StatusPage::txtDisplayY_LostFocus);
  connect(txtAdresse, &QLineEdit::returnPressed, cmdSetAdresse, &QPushButton::click);
  for (QLineEdit* field : {txtAdresse, txtDisplayX, txtDisplayY}) {
    connect(field, &QLineEdit::inputRejected, this, [&person] { person.Beep(); });
  }
  connect(txtDisplayOption, &WireField::Refused, this, [&person] { person.Beep(); });
}

void StatusPage::ShowStoredResolution() {
  txtDisplayX->setText(Number(services_.defaults.Number("displayx")));
  txtDisplayY->setText(Number(services_.defaults.Number("displayy")));
}

void StatusPage::ShowFlashFrame() {
  const FlashState flash = services_.state.flash;
  ShowFlash(flash == FlashState::Yes, flash == FlashState::No ? tr("keiner") : tr("nicht bekannt"));
}

void StatusPage::ShowFlash(bool has, const QString& lack) {
  ctlFlashFrame->setVisible(has);
  lblFlashLack->setText(tr("Flash-Speicher: %1").arg(lack));
  lblFlashLack->setVisible(!has);
}

void StatusPage::Shown() {
  if (services_.state.flash == FlashState::Unknown) {
    // Collected by time, so that the closing ";" can be seen behind the "F".
    const std::string reply = AskVersionByTime(services_.exchange, services_.state);
    if (reply.find("F;") != std::string::npos) cmdGetFlashInfo_Click();
  }
  ShowFlashFrame();
}

std::string StatusPage::Mark(const Reply& reply) const {
  return MarkWords(reply, services_.exchange);
}

void StatusPage::BlankSysInfo() { lblSysInfo->clear(); }

void StatusPage::ForgetPorts() {
  for (const auto& lines : {chkPortP0, chkPortP1}) {
    for (QCheckBox* const line : lines) line->setCheckState(Qt::PartiallyChecked);
  }
  lblPortP0->setText(QStringLiteral("0"));
  lblPortP0Stand->setText(tr("nicht bekannt"));
  lblPortP1->setText(QStringLiteral("?"));
  lblPortP1Stand->setText(tr("noch nicht gelesen"));
}

void StatusPage::cmdGetVersion_Click() {
  lblVersion->clear();
  const Reply version = QueryVersion(services_.exchange, services_.state);
  if (!version.Failed()) lblVersion->setText(GlyphText(version.text));
  lblVersionStand->Show(Mark(version));
  const QString why = QString::fromStdString(Mark(version));
  ShowFlash(ReadVersion(version.text).hasFlash,
            why.isEmpty() ? tr("keiner") : tr("nicht bekannt (%1)").arg(why));
  lblSysInfo->clear();
  services_.exchange.SendString(AskSystemInfo());
  const Reply info = services_.exchange.WaitAnswer({});
  lblSysInfo->setPlainText(GlyphText(info.text));
  if (Mark(info).empty() || !Mark(version).empty()) return;
  lblVersionStand->setText(tr("Info: %1").arg(QString::fromStdString(Mark(info))));
}

void StatusPage::cmdGetAdresse_Click() {
  // A Terminal may repeat the query's letters in front of the number.
  const Reply address = services_.exchange.SendQuery(AskAddress());
  const std::string& reply = address.text;
  const std::size_t digit = reply.find_first_of("0123456789");
  txtAdresse->setText(Number(digit == std::string::npos ? 0 : Val(reply.substr(digit))));
  lblAdresseStand->Show(Mark(address));
}

void StatusPage::cmdSetAdresse_Click() {
  services_.exchange.SendString(SelectAddress(txtAdresse->text().toStdString()));
  lblAdresseStand->clear();  // what was read was another's
}

void StatusPage::txtAdresse_Change() {
  const double value = Val(txtAdresse->text().toStdString());
  const QString text = Number(value);
  if (text != txtAdresse->text()) txtAdresse->setText(text);
  cmdSetAdresse->setEnabled(IsByteNumber(value));
}

void StatusPage::cmdGetPort_Click() {
  const Reply reply = services_.exchange.SendQuery(AskPort());
  const double value = reply.Number();
  lblPortP1->setText(Number(value));
  const PortLines lines = ReadPortLines(value);
  for (std::size_t i = 0; i < lines.size(); ++i) {
    chkPortP1[i]->setTristate(false);
    chkPortP1[i]->setCheckState(lines[i] ? Qt::Checked : Qt::Unchecked);
  }
  lblPortP1Stand->Show(Mark(reply));
}

void StatusPage::chkPortP0_Click() {
  PortLines lines{};
  for (std::size_t i = 0; i < lines.size(); ++i) {
    lines[i] = chkPortP0[i]->checkState() == Qt::Checked;
    // Once chosen it is on or off.
    if (chkPortP0[i]->checkState() != Qt::PartiallyChecked) chkPortP0[i]->setTristate(false);
  }
  lblPortP0->setText(QString::number(PortNumberOf(lines)));
  lblPortP0Stand->setText(tr("noch nicht gesendet"));
}

void StatusPage::cmdSetPort_Click() {
  services_.exchange.SendString(SetPort(lblPortP0->text().toStdString()));
  for (QCheckBox* const line : chkPortP0) {
    const bool on = line->checkState() == Qt::Checked;
    line->setTristate(false);
    line->setCheckState(on ? Qt::Checked : Qt::Unchecked);
  }
  lblPortP0Stand->ShowSent();
}

void StatusPage::txtDisplayX_LostFocus() {
  txtDisplayX->setText(
      QString::fromStdString(ClampDisplay(txtDisplayX->text().toStdString(), kLargestDisplayX)));
}

void StatusPage::txtDisplayY_LostFocus() {
  txtDisplayY->setText(
      QString::fromStdString(ClampDisplay(txtDisplayY->text().toStdString(), kLargestDisplayY)));
}

void StatusPage::cmdSetRes_Click() {
  // A key that presses the button leaves the field where it is.
  txtDisplayX_LostFocus();
  txtDisplayY_LostFocus();
  const std::string x = txtDisplayX->text().toStdString();
  const std::string y = txtDisplayY->text().toStdString();
  const Undertakings::Alone alone(services_.person.Begun(), "Die Konfiguration wird gespeichert.");
  services_.exchange.SendString(SetResolution(x, y, txtDisplayOption->Wire()));
  SendToEEprom(services_.exchange, services_.person, WriteConfig(), " / cmdSetRes");
  services_.exchange.SendString(Restart());
  Q_EMIT ResolutionSet(static_cast<int>(Val(x)), static_cast<int>(Val(y)));
  services_.defaults.Refresh();  // another field may have been stored since
  services_.defaults.Edit();
  services_.defaults.Set("displayx", static_cast<std::int64_t>(Val(x)));
  services_.defaults.Set("displayy", static_cast<std::int64_t>(Val(y)));
  services_.defaults.Update();
}

void StatusPage::cmdGetFlashInfo_Click() {
  const Reply reply = services_.exchange.SendQuery(AskFlash());
  const FlashInfo info = ReadFlashInfo(reply.text);
  lblFlashStand->Show(Mark(reply));
  lblSektorAnzahl->setText(Number(info.sectors));
  lblSektorSize->setText(Number(info.sectorSize));
}

void StatusPage::cmdFlashUpdate_Click() {
  // Deliberately a stub: the Terminal's way of taking a new firmware is not settled.
  services_.person.Message("noch nicht implementiert");
}

}  // namespace kelvo
