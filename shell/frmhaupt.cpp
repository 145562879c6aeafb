#include "shell/frmhaupt.h"

#include <QApplication>
#include <QCloseEvent>
#include <QLabel>
#include <QMessageBox>
#include <QPushButton>
#include <QSpinBox>
#include <QTabWidget>
#include <QTimer>
#include <QVBoxLayout>

#include "base/guard.h"
#include "help/help_desk.h"
#include "interfaces/raw_command.h"
#include "shell/drawing_desk.h"
#include "shell/port_dialog.h"
#include "shell/status_display.h"
#include "shell/traffic_view.h"
#include "shell/welcome_page.h"
#include "store/data_folder.h"
#include "widgets/form.h"
#include "widgets/name_list.h"

namespace kelvo {
namespace {

constexpr char kHelpName[] = "/kelvo.hlp";
constexpr char kFontFolder[] = "/fonts";
constexpr int kHintMilliseconds = 8000;

std::string JoinNames(const std::vector<std::string>& names) {
  std::string joined;
  for (const std::string& name : names) joined += (joined.empty() ? "\"" : ", \"") + name + "\"";
  return joined;
}

}  // namespace

frmhaupt::frmhaupt(Outside outside)
    : outside_(std::move(outside)),
      portControl_(outside_.com1, outside_.person),
      data_(outside_.folders.data + "/" + kDatabaseFile),
      memory_(data_.database),
      exchange_(outside_.com1, outside_.loop, outside_.tmrTimeout, outside_.tmrRS485),
      receive_(outside_.com1, exchange_),
      help_(std::make_unique<HelpDesk>(outside_.person, outside_.folders.program,
                                       [this] { return ShownChapter(); })) {
  Named(this, "frmhaupt");
  setWindowTitle(QApplication::applicationDisplayName());
  // A font that is missing draws nothing.
  fonts_.Load(outside_.folders.program + kFontFolder);
  MakePages();
  MakeBus();
  MakeFrame();
  MakeMenus();
  MakeToolbar();
  RestoreWindows();
  ConnectLink();
  ReadOptions();
  outside_.tmrTimeout.SetEnabled(true);
  status_->ShowStoredResolution();
  ShowFirstTab();
  if (FirstRun()) {
    // Later starts leave the built-in name, deliberately.
    help_->SetFile(outside_.folders.program + kHelpName);
    NoteFirstRunIsOver();
  }
  connect(cmdTab, &QTabWidget::currentChanged, this, &frmhaupt::cmdTab_Click);
  EnableToolbar();
  cmdTab->setFocus();
}

frmhaupt::~frmhaupt() = default;

void frmhaupt::MakePages() {
  interfaces_ =
      new InterfacePage({exchange_, outside_.com1, portControl_, outside_.person, data_.ctlComData,
                         data_.Default, [this](int number) { return DescribePort(number); }});
  status_ = new StatusPage({exchange_, outside_.person, state_, data_.Default});
  eeprom_ = new EepromPage({exchange_, outside_.person, state_, data_.Optionen});
  macros_ = new MacroPage({exchange_, outside_.person, state_, data_.ctlMakroData});
  text_ = new TextPage(
      {exchange_, outside_.person, fonts_, new RawCommand(exchange_, outside_.person)});
  connect(text_, &TextPage::TextSent, status_, &StatusPage::BlankSysInfo);
  connect(interfaces_, &InterfacePage::PortChanged, this, &frmhaupt::ShowPort);
  MakeKeyboardPages();
  MakeDrawingDesk();
}

void frmhaupt::MakeDrawingDesk() {
  desk_ = std::make_unique<DrawingDesk>(
      DrawingDesk::Services{outside_, exchange_, state_, fonts_, data_.Optionen, data_.Default,
                            [this] { return interfaces_->BaudRate(); },
                            [this](const std::string& text) {
                              return macros_->SaveMakro("Grafik", text, -1, kNewRecordName);
                            },
                            [this] { return FensterMitZoomen_; }});
  connect(desk_.get(), &DrawingDesk::PortWanted, this, &frmhaupt::AskForPort);
  connect(desk_.get(), &DrawingDesk::Sending, this, [this](bool on) {
    ctlSendeanzeige->setText(on ? tr("●") : tr("○"));
    statusDisplay_->WatchLine();
  });
  connect(&desk_->Editor(), &frmGrafik::FileUsed, this, [this](const QString& path) {
    memory_.NoteFile(path);
    ShowRecentFiles();
  });
  connect(status_, &StatusPage::ResolutionSet, &desk_->Editor(), &frmGrafik::SetDisplaySize);
}

void frmhaupt::MakeKeyboardPages() {
  at_ = new AtPage(
      {exchange_, outside_.com1, outside_.loop, outside_.person, state_, data_.ctlATData});
  matrix_ = new MatrixPage({exchange_, outside_.person, state_, data_.ctlTastData});
  const auto showHint = [this](const QString& text) {
    statusBar()->showMessage(text, kHintMilliseconds);
  };
  connect(at_, &AtPage::Hint, this, showHint);
  connect(matrix_, &MatrixPage::Hint, this, showHint);
  connect(at_, &AtPage::PortWanted, this, &frmhaupt::AskForPort);
}

void frmhaupt::MakeBus() {
  terminals_ = new SearchPage({exchange_, outside_.loop, outside_.person, state_, data_.Optionen,
                               data_.ctlDovuData, [this] { return interfaces_->ReopenPort(); }});
  dovu_ = new frmDovu({exchange_, outside_.loop, outside_.person, data_.ctlDovuData,
                       [this] { return desk_->TryCreatePic(); }},
                      this);
  connect(terminals_, &SearchPage::AddressChosen, this,
          [this](int address) { ctlUpDownAdrDovu->setValue(address); });
  connect(terminals_, &SearchPage::SendRequested, dovu_, &frmDovu::Open);
  connect(terminals_, &SearchPage::PortWanted, this, &frmhaupt::AskForPort);
  connect(terminals_, &SearchPage::SearchingChanged, this,
          [this] { mnuDovuSenden->setEnabled(!terminals_->Searching()); });
  connect(dovu_, &frmDovu::PortWanted, this, &frmhaupt::AskForPort);
}

void frmhaupt::MakeFrame() {
  auto* centre = new QWidget;
  auto* column = new QVBoxLayout(centre);
  column->addWidget(MakeAddressStrip());
  cmdTab = Named(new QTabWidget, "cmdTab");
  cmdTab->setUsesScrollButtons(true);
  MakeTabs();
  column->addWidget(cmdTab, 1);
  setCentralWidget(centre);
  statusDisplay_ = Named(new StatusDisplay(exchange_), "ctlStatusleiste");
  setStatusBar(statusDisplay_);
  ctlSendeanzeige = Named(new QLabel(tr("○")), "ctlSendeanzeige");
  ctlSendeanzeige->setToolTip(tr("Gefüllt, während eine Zeichnung gesendet wird"));
  ctlSendeanzeige->setAccessibleName(ctlSendeanzeige->toolTip());
  statusDisplay_->addPermanentWidget(ctlSendeanzeige);
  traffic_ = new TrafficView(outside_.com1, outside_.person, this);
  portDialog_ = new PortDialog(
      outside_, data_.Anschluss,
      [this](const std::string& device) { return DescribeDevice(device); }, this);
  state_.SetListener([this] { ShowTerminal(); });
}

void frmhaupt::MakeTabs() {
  const std::array<std::pair<const char*, QWidget*>, kTabCount> pages{
      {{"Zeichnung", desk_->Page()},
       {"Schnittstellen", interfaces_},
       {"Text", text_},
       {"Status", status_},
       {"EEPROM", eeprom_},
       {"AT-Tastatur", at_},
       {"Matrix-Tastatur", matrix_},
       {"Makros", macros_},
       {"Willkommen", new WelcomePage},
       {"Terminals", terminals_}}};
  for (const auto& [title, page] : pages) cmdTab->addTab(page, QString::fromUtf8(title));
}

// A slim strip at the top edge: which Terminal of the bus listens.
QWidget* frmhaupt::MakeAddressStrip() {
  auto* strip = Named(new QFrame, "ctlRS485");
  auto* row = new QHBoxLayout(strip);
  row->setContentsMargins(0, 0, 0, 0);
  ctlUpDownAdrDovu = Named(new QSpinBox, "ctlUpDownAdrDovu");
  ctlUpDownAdrDovu->setRange(0, 255);
  cmdDovuAktivieren =
      MakeButton("cmdDovuAktivieren", tr("Terminal wählen"),
                 tr("Von nun an hört das Terminal mit dieser Adresse (255: alle)."));
  row->addWidget(LabelFor(ctlUpDownAdrDovu, tr("Bus-Adresse:")));
  row->addWidget(ctlUpDownAdrDovu);
  row->addWidget(new QLabel(tr("0 … 255")));
  row->addWidget(cmdDovuAktivieren);
  row->addStretch();
  connect(cmdDovuAktivieren, &QPushButton::clicked, this,
          [this] { Guard("cmdDovuAktivieren", &frmhaupt::cmdDovuAktivieren_Click); });
  return strip;
}

void frmhaupt::ConnectLink() {
  outside_.com1.SetReceiveHandler(
      [this] { Guarded(outside_.person, "com1", [this] { receive_.com1_OnComm(); }); });
  outside_.com1.SetLostHandler([this] { com1_Lost(); });
  outside_.com1.SetErrorHandler([this](const std::string& error) {
    outside_.person.Notify("Der Anschluss " + interfaces_->ChosenPort() + " meldet: " + error +
                               ". Die Verbindung bleibt offen; es wird weiter versucht.",
                           Icon::Exclamation);
  });
  portControl_.SetFailureHandler([this] { interfaces_->ShowNoPort(); });
  if (outside_.machine.setDevices) {
    outside_.machine.setDevices(
        [this](int number) { return data_.DeviceOf(number, outside_.folders.data); });
  }
}

void frmhaupt::ReadOptions() {
  const Recordset& options = data_.Optionen;
  FensterMitZoomen_ = options.YesNo("FensterMitZoomen");
  mnuOptionenZoom->setChecked(FensterMitZoomen_);
  SofortSenden_ = options.YesNo("sofortsenden");
  mnuOptionenSofortSenden->setChecked(SofortSenden_);
  // Within what a timer can hold; the pause is meant to be some hundredths of a second.
  const double pause = std::clamp(options.Number("rs485wait"), 1.0, 60000.0);
  outside_.tmrRS485.SetInterval(std::chrono::milliseconds(static_cast<long>(pause)));
}

bool frmhaupt::FirstRun() const { return data_.Optionen.YesNo("FirstRun"); }

void frmhaupt::ShowFirstTab() { SetTab(FirstRun() ? Tab::Welcome : Tab::Drawing); }

void frmhaupt::NoteFirstRunIsOver() {
  if (data_.database.ReadOnly()) return;  // said at the first paint, once
  data_.Optionen.Edit();
  data_.Optionen.Set("FirstRun", std::int64_t{0});
  data_.Optionen.Update();
}

void frmhaupt::paintEvent(QPaintEvent* event) {
  QMainWindow::paintEvent(event);
  // Behind the paint, because the port's messages run a loop of their own.
  if (portControl_.FormLoading) QTimer::singleShot(0, this, &frmhaupt::FirstPaint);
}

void frmhaupt::FirstPaint() {
  if (!portControl_.FormLoading) return;
  Q_EMIT FirstSeen();
  Guarded(outside_.person, "Form_Paint", [this] {
    for (RecordEditorBase* const records : Records()) records->SelectFirst();
    interfaces_->SelectStoredRecord();
    portControl_.FormLoading = false;
    if (!interfaces_->OpenChosenPort()) SetTab(Tab::Interfaces);
  });
  portControl_.FormLoading = false;
  if (ShownTab() == Tab::Drawing) desk_->Editor().SetAutomaticSend(SofortSenden_);
  if (data_.database.ReadOnly()) {
    outside_.person.Message("Die Datenbank \"" + data_.database.Path() +
                                "\" ist schreibgeschützt. Es kann nichts gespeichert werden.",
                            Icon::Exclamation);
  }
  desk_->Editor().OfferDraft();
  Q_EMIT Loaded();
}

void frmhaupt::closeEvent(QCloseEvent* event) {
  const std::vector<std::string> drafts = DraftNames();
  if (!drafts.empty() && !outside_.loop.Closing() &&
      !outside_.person.Ask(
          "Nicht gespeicherte Änderungen: " + JoinNames(drafts) + ". Trotzdem beenden ?",
          Icon::Question)) {
    return event->ignore();
  }
  if (!outside_.loop.Closing() && !desk_->Editor().MayEnd()) return event->ignore();
  event->accept();
  for (const QWidget* some : RememberedWindows()) memory_.Remember(*some);
  if (const QWidget* const help = help_->Made()) memory_.Remember(*help);
  if (outside_.com1.IsOpen()) outside_.com1.Close();
  desk_->Editor().SetAutomaticSend(false);
  desk_->Editor().hide();
  traffic_->hide();
  dovu_->hide();
  help_->Close();
  Q_EMIT Unloaded();
}

std::array<QWidget*, 4> frmhaupt::RememberedWindows() {
  return {this, &desk_->Editor(), dovu_, traffic_};
}

void frmhaupt::RestoreWindows() {
  for (QWidget* some : RememberedWindows()) memory_.Restore(*some);
  connect(help_.get(), &HelpDesk::WindowMade, this,
          [this](QWidget& window) { memory_.Restore(window); });
}

std::array<RecordEditorBase*, 3> frmhaupt::Records() const {
  return {&macros_->Records(), &matrix_->Records(), &at_->Records()};
}

std::vector<std::string> frmhaupt::DraftNames() const {
  std::vector<std::string> names;
  for (const RecordEditorBase* const records : Records()) {
    const std::vector<std::string> some = records->DraftNames();
    names.insert(names.end(), some.begin(), some.end());
  }
  return names;
}

void frmhaupt::Guard(const char* routine, void (frmhaupt::*handler)()) {
  Guarded(outside_.person, routine, [this, handler] { (this->*handler)(); });
}

void frmhaupt::SetTab(Tab tab) { cmdTab->setCurrentIndex(static_cast<int>(tab)); }

Tab frmhaupt::ShownTab() const { return static_cast<Tab>(cmdTab->currentIndex()); }

// In the order of the tabs.
QString frmhaupt::ShownChapter() const {
  static constexpr std::array<const char*, kTabCount> kChapters{
      "zeichnung.html",       "schnittstellen.html", "text.html",
      "status.html",          "eeprom.html",         "at-tastatur.html",
      "matrix-tastatur.html", "makros.html",         "willkommen.html",
      "terminals.html"};
  return QString::fromLatin1(kChapters[static_cast<std::size_t>(ShownTab())]);
}

void frmhaupt::cmdTab_Click() {
  const Tab tab = ShownTab();
  receive_.SetFront(dynamic_cast<Receiver*>(cmdTab->currentWidget()));
  EnableToolbar();
  desk_->Editor().SetAutomaticSend(tab == Tab::Drawing && SofortSenden_);
  Guarded(outside_.person, "cmdTab", [this, tab] {
    if (tab == Tab::Drawing) desk_->Page()->ShowDrawing();
    if (tab != Tab::AtKeyboard) at_->Left();
    if (tab == Tab::Interfaces) interfaces_->Refresh();
    if (tab == Tab::Text) text_->Shown();
    if (tab == Tab::Status) status_->Shown();
    if (tab == Tab::AtKeyboard) at_->Shown();
    if (tab == Tab::MatrixKeyboard) matrix_->Shown();
    if (tab == Tab::Macros) macros_->ShowFreeBytes();
    if (tab == Tab::Terminals) terminals_->Refresh();
  });
}

void frmhaupt::cmdDovuAktivieren_Click() {
  exchange_.SendString(SelectAddress(ctlUpDownAdrDovu->value()));
}

void frmhaupt::mnuDovuSenden_Click() { dovu_->Open(); }

// What needs the port cannot begin without one. The twelve blanks have always been there.
void frmhaupt::AskForPort() {
  outside_.person.Message("stellen Sie zuerst eine Schnittstelle ein            ",
                          Icon::Exclamation);
  SetTab(Tab::Interfaces);
  raise();  // the editor may be in front
  activateWindow();
}

// The device went away. Waits have ended with the port; the handlers that waited report their own
// failures, and this is said once.
void frmhaupt::com1_Lost() {
  const std::string port = interfaces_->ChosenPort();
  interfaces_->ShowNoPort();
  outside_.person.Notify("Die Verbindung zu " + port +
                             " ist verloren gegangen. Bitte das Gerät wieder anschließen und den "
                             "Anschluss auf der Seite \"Schnittstellen\" neu wählen.",
                         Icon::Exclamation);
}

void frmhaupt::ShowPort() {
  statusDisplay_->ShowPort(interfaces_->PortText());
  desk_->Editor().OptionsChanged();
}

void frmhaupt::ShowTerminal() {
  statusDisplay_->ShowTerminal(state_);
  macros_->ShowFreeBytes();
  desk_->Editor().OptionsChanged();
}

std::string frmhaupt::DescribePort(int number) {
  const std::string device = data_.DeviceOf(number, outside_.folders.data);
  if (device.empty()) return "Kein Gerät eingetragen (Optionen / Anschlüsse …).";
  const std::string state = DescribeDevice(device);
  return device + (state.empty() ? "" : ": " + state);
}

std::string frmhaupt::DescribeDevice(const std::string& device) {
  const bool connected = outside_.com1.IsOpen() && data_.DeviceOf(interfaces_->OpenPortNumber(),
                                                                  outside_.folders.data) == device;
  if (connected) return "verbunden";
  return outside_.machine.describeDevice ? outside_.machine.describeDevice(device) : std::string();
}

}  // namespace kelvo
