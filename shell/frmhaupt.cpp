#include "shell/frmhaupt.h"

#include <QAbstractButton>
#include <QApplication>
#include <QLabel>
#include <QMessageBox>
#include <QTabWidget>
#include <QTimer>
#include <QVBoxLayout>
#include <algorithm>

#include "base/guard.h"
#include "help/chapters.h"
#include "help/help_desk.h"
#include "interfaces/raw_command.h"
#include "inventory_page/inventory_view.h"
#include "inventory_page/write_desk.h"
#include "shell/drawing_desk.h"
#include "shell/head_strip.h"
#include "shell/port_dialog.h"
#include "shell/port_return.h"
#include "shell/simulator_desk.h"
#include "shell/status_display.h"
#include "shell/traffic_view.h"
#include "shell/welcome_page.h"
#include "store/data_folder.h"
#include "widgets/form.h"
#include "widgets/handlers.h"
#include "widgets/name_list.h"
#include "widgets/scrolled_page.h"

namespace kelvo {
namespace {

constexpr char kHelpName[] = "/kelvo.hlp";
constexpr char kFontFolder[] = "/fonts";
constexpr int kWidestForm = 190;  // characters

Chronicle::Moment WallClock() {
  using std::chrono::milliseconds;
  return std::chrono::time_point_cast<milliseconds>(std::chrono::system_clock::now());
}

std::string DatabaseOf(const Folders& folders) {
  return (folders.lack.empty() ? folders.data : folders.program) + "/" + kDatabaseFile;
}

Opening OpeningOf(const Folders& folders) {
  return folders.lack.empty() ? Opening::ToWrite : Opening::ToRead;
}

}  // namespace

frmhaupt::frmhaupt(Outside outside)
    : outside_(std::move(outside)),
      portControl_(outside_.com1, outside_.person),
      databaseWait_(outside_.loop, outside_.person, *this),
      slot_(outside_.folders.data),
      data_(DatabaseOf(outside_.folders), OpeningOf(outside_.folders)),
      memory_(data_.database),
      symbols_(data_.database),
      exchange_(outside_.com1, outside_.loop, outside_.tmrTimeout, outside_.tmrRS485),
      line_(outside_.com1, exchange_),
      lineState_(line_, outside_.loop, exchange_),
      chronicle_(line_, WallClock, [this] { return !outside_.person.Begun().RunsAlone().empty(); }),
      journal_(outside_.folders.data + "/" + kJournalFile),
      recorder_(
          {line_, lineState_, exchange_, outside_.loop, journal_, [this] { return OpenDevice(); }}),
      replies_(line_, outside_.loop, [this] { return recorder_.Listener(); }),
      freeBytes_(
          {line_, exchange_, outside_.loop, journal_, [this] { return recorder_.Listener(); }}),
      receive_(outside_.com1, exchange_),
      twins_(line_, outside_.com1, outside_.loop, TwinServices()),
      help_(std::make_unique<HelpDesk>(outside_.person, outside_.folders.program,
                                       [this] { return ShownChapter(); })) {
  Named(this, "frmhaupt");
  data_.database.SetPatience(databaseWait_);
  setWindowTitle(QApplication::applicationDisplayName());
  RecordTraffic(line_, outside_.loop, record_);
  missingFonts_ = fonts_.Load(outside_.folders.program + kFontFolder);
  MakePages();
  const auto editors = Records();
  drafts_.emplace(
      slot_.File("entwuerfe"), std::vector<RecordEditorBase*>(editors.begin(), editors.end()),
      outside_.person, [this](const std::string& problem) {
        ShowHint(
            tr("Der Entwurf kann nicht gesichert werden: %1").arg(QString::fromStdString(problem)));
      });
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
    // A full disc is said, and keeps nobody from the Terminal.
    Guarded(outside_.person, "Form_Load", [this] { NoteFirstRunIsOver(); });
  }
  ShowInventory();
  connect(cmdTab, &QTabWidget::currentChanged, this, &frmhaupt::cmdTab_Click);
  EnableToolbar();
  cmdTab->setFocus();
}

frmhaupt::~frmhaupt() { outside_.person.SetAdviser({}); }

void frmhaupt::MakePages() {
  writeDesk_ = new WriteDesk({exchange_, outside_.loop, outside_.person, state_, lineState_,
                              data_.ctlDovuData, data_.Optionen, journal_},
                             this);
  interfaces_ =
      new InterfacePage({exchange_, outside_.com1, portControl_, outside_.person, data_.ctlComData,
                         data_.Default, [this](int number) { return DescribePort(number); }});
  status_ = new StatusPage({exchange_, outside_.person, state_, data_.Default});
  eeprom_ = new EepromPage(
      {exchange_, outside_.person, state_, data_.Optionen, MakeInventory(), writeDesk_});
  macros_ = new MacroPage({exchange_, outside_.person, state_, data_.ctlMakroData, data_.Default,
                           fonts_, writeDesk_, [this] { return interfaces_->BaudRate(); },
                           [this] { return Present(); }});
  auto* const raw = new RawCommand(exchange_, outside_.person);
  text_ = new TextPage({exchange_, outside_.person, fonts_, raw});
  connect(raw, &RawCommand::Hint, this, &frmhaupt::ShowHint);
  connect(text_, &TextPage::Hint, this, &frmhaupt::ShowHint);
  connect(text_, &TextPage::TextSent, status_, &StatusPage::BlankSysInfo);
  connect(interfaces_, &InterfacePage::PortChanged, this, &frmhaupt::ShowPort);
  MakeKeyboardPages();
  NoteTakenNumbers();
  MakeDrawingDesk();
}

void frmhaupt::MakeDrawingDesk() {
  desk_ = std::make_unique<DrawingDesk>(DrawingDesk::Services{
      outside_, exchange_, state_, fonts_, memory_, symbols_, data_.Optionen, data_.Default,
      *writeDesk_, [this] { return interfaces_->BaudRate(); },
      [this](const std::string& text) {
        return macros_->SaveMakro("Grafik", text, -1, kNewRecordName);
      },
      [this] { return StoredTexts(data_.database); }, [this] { return FensterMitZoomen_; },
      slot_.File("entwurf"), [this](std::optional<int> number) { TellTakenBitmap(number); }});
  connect(desk_.get(), &DrawingDesk::SendShown, this, [this](bool on) {
    ctlSendeanzeige->setText(on ? tr("●") : tr("○"));
    if (!on) statusDisplay_->WatchDrawing();
  });
  connect(&desk_->Editor(), &frmGrafik::FileUsed, this, [this](const QString& path) {
    memory_.NoteFile(path);
    ShowRecentFiles();
  });
  connect(status_, &StatusPage::ResolutionSet, &desk_->Editor(), &frmGrafik::SetDisplaySize);
}

void frmhaupt::MakeKeyboardPages() {
  at_ = new AtPage({exchange_, outside_.com1, outside_.loop, outside_.person, state_,
                    data_.ctlATData, writeDesk_});
  matrix_ = new MatrixPage({exchange_, outside_.person, state_, data_.ctlTastData, writeDesk_});
  connect(at_, &AtPage::Hint, this, &frmhaupt::ShowHint);
  connect(matrix_, &MatrixPage::Hint, this, &frmhaupt::ShowHint);
}

void frmhaupt::MakeBus() {
  terminals_ = new SearchPage({exchange_, outside_.loop, outside_.person, state_, data_.Optionen,
                               data_.ctlDovuData, [this] { return interfaces_->ReopenPort(); },
                               outside_.com1});
  dovu_ = new frmDovu({exchange_, outside_.loop, outside_.person, data_.ctlDovuData,
                       [this] { return desk_->TryCreatePic(); }},
                      this);
  connect(terminals_, &SearchPage::AddressChosen, this,
          [this](int address) { head_->SetAddress(address); });
  connect(terminals_, &SearchPage::Hint, this, &frmhaupt::ShowHint);
  connect(terminals_, &SearchPage::SendRequested, dovu_, &frmDovu::Open);
  connect(terminals_, &SearchPage::SearchingChanged, this,
          [this] { mnuDovuSenden->setEnabled(!terminals_->Searching()); });
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
  statusDisplay_ = Named(new StatusDisplay(exchange_, outside_.person.Begun()), "ctlStatusleiste");
  setStatusBar(statusDisplay_);
  connect(statusDisplay_, &StatusDisplay::HeldChanged, this, [this] { head_->ShowState(); });
  connect(statusDisplay_, &StatusDisplay::StopWanted, this, [this] {
    if (outside_.com1.IsOpen()) outside_.com1.DiscardOutput();
  });
  ctlSendeanzeige = Named(new QLabel(tr("○")), "ctlSendeanzeige");
  ctlSendeanzeige->setToolTip(tr("Gefüllt, während eine Zeichnung gesendet wird"));
  ctlSendeanzeige->setAccessibleName(ctlSendeanzeige->toolTip());
  statusDisplay_->addPermanentWidget(ctlSendeanzeige);
  simulator_ = std::make_unique<SimulatorDesk>(
      outside_, [this](const std::string& device) { return ConnectTo(device); });
  traffic_ = new TrafficView(record_, outside_.person, this);
  MakeHistory();
  MakeTwins();
  portDialog_ = new PortDialog(
      outside_, data_.Anschluss,
      [this](const std::string& device) { return DescribeDevice(device); }, this);
  state_.SetListener([this] { ShowTerminal(); });
}

void frmhaupt::MakeTabs() {
  auto* const welcome = new WelcomePage;
  connect(welcome, &WelcomePage::LinkFollowed, this, &frmhaupt::FollowLink);
  const std::array<std::pair<const char*, QWidget*>, kTabCount> pages{
      {{"Zeichnung", desk_->Page()},
       {"Schnittstellen", interfaces_},
       {"Text", text_},
       {"Status", status_},
       {"EEPROM", eeprom_},
       {"AT-Tastatur", at_},
       {"Matrix-Tastatur", matrix_},
       {"Makros", macros_},
       {"Willkommen", welcome},
       {"Terminals", terminals_}}};
  // Forms that are no better for more width stay together.
  for (QWidget* form : std::initializer_list<QWidget*>{interfaces_, status_, matrix_, welcome}) {
    form->setMaximumWidth(fontMetrics().averageCharWidth() * kWidestForm);
  }
  for (const auto& [title, page] : pages) cmdTab->addTab(new ScrolledPage(page), tr(title));
}

void frmhaupt::ConnectLink() {
  MakeAdviser();
  outside_.person.SetPort([this] { return outside_.com1.IsOpen(); }, [this] { AskForPort(); });
  outside_.person.Begun().SetIdleListener([this] {
    if (pageWaits_) QMetaObject::invokeMethod(this, &frmhaupt::AskForPage, Qt::QueuedConnection);
  });
  outside_.com1.SetLostHandler([this] { com1_Lost(); });
  outside_.com1.SetErrorHandler([this](const std::string& error) {
    outside_.person.Notify("Der Anschluss " + interfaces_->ChosenPort() + " meldet: " + error +
                               ". Die Verbindung bleibt offen; es wird weiter versucht.",
                           Icon::Exclamation);
  });
  portControl_.SetFailureHandler([this] { interfaces_->ShowNoPort(); });
  ConnectPorts();
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
  const auto pause = static_cast<std::int64_t>(options.Number("rs485wait"));
  outside_.tmrRS485.SetInterval(std::chrono::milliseconds(pause));
}

bool frmhaupt::FirstRun() const { return data_.Optionen.YesNo("FirstRun"); }

void frmhaupt::FollowLink(const QString& link) {
  if (link.startsWith(kTabLink)) return SetTab(static_cast<Tab>(link.mid(kTabLink.size()).toInt()));
  if (auto* const action = findChild<QAction*>(link)) return action->trigger();
  if (auto* const button = findChild<QAbstractButton*>(link)) button->click();
}

void frmhaupt::ShowFirstTab() { SetTab(FirstRun() ? Tab::Welcome : Tab::Drawing); }

// Another program may have stored another option since.
void frmhaupt::StoreOption(const char* field, bool on) {
  data_.Optionen.Refresh();
  data_.Optionen.Edit();
  data_.Optionen.Set(field, std::int64_t{on});
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
  TellOfNoSaving();
  TellOfOddValues();
  TellOfMissingFonts();
  TellOfFirstProgram();
  TakeLeft("entwurf");
  TakeLeftEquipping();
  desk_->Editor().OfferDraft();
  Guarded(outside_.person, "Form_Paint", [this] {
    drafts_->Offer(slot_.LeftBehind("entwuerfe"));
    if (!slot_.FollowsAKill()) return;
    for (RecordEditorBase* const records : Records()) records->TakeUnused();
  });
  Q_EMIT Loaded();
}

void frmhaupt::TellOfMissingFonts() {
  if (missingFonts_.empty()) return;
  std::string numbers;
  for (const int font : missingFonts_) {
    numbers += (numbers.empty() ? "" : ", ") + std::to_string(font);
  }
  outside_.person.Message("Im Ordner \"" + outside_.folders.program + kFontFolder +
                              "\" fehlen Schriften des Terminals oder sind beschädigt: " + numbers +
                              ". Texte in diesen Schriften zeigt kelvo nicht; gesendet werden sie.",
                          Icon::Exclamation);
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
  const QString own = focusWidget() == nullptr ? QString() : ChapterAt(*focusWidget());
  return own.isEmpty() ? QString::fromLatin1(kChapters[static_cast<std::size_t>(ShownTab())]) : own;
}

void frmhaupt::cmdTab_Click() {
  const Tab tab = ShownTab();
  receive_.SetFront(dynamic_cast<Receiver*>(ShownPage()));
  EnableToolbar();
  // It goes on while another page is in front.
  if (tab == Tab::Drawing) desk_->Editor().SetAutomaticSend(SofortSenden_);
  Guarded(outside_.person, "cmdTab", [this, tab] {
    if (tab == Tab::Drawing) desk_->Page()->ShowDrawing();
    if (tab != Tab::AtKeyboard) at_->Left();
    if (tab != Tab::Text) text_->Left();
    RefreshPage();
  });
  AskForPage();
}

// The page in front reads its records anew.
void frmhaupt::RefreshPage() {
  const Tab tab = ShownTab();
  if (tab == Tab::Interfaces) interfaces_->Refresh();
  if (tab == Tab::AtKeyboard) at_->Shown();
  if (tab == Tab::MatrixKeyboard) matrix_->Shown();
  if (tab == Tab::Macros) macros_->Shown();
  if (tab == Tab::Terminals) terminals_->Refresh();
}

// What a page asks the Terminal when it is shown waits until nothing else is being asked: the
// answers to both would get mixed up.
void frmhaupt::AskForPage() {
  pageWaits_ = outside_.person.Begun().HandlersRun();
  if (pageWaits_) return;
  const Undertakings::Talking talking(outside_.person.Begun());
  Guarded(outside_.person, "cmdTab", [this] {
    if (ShownTab() == Tab::Text) text_->Shown();
    if (ShownTab() == Tab::Status) status_->Shown();
  });
}

void frmhaupt::mnuDovuSenden_Click() { dovu_->Open(); }

// What needs the port cannot begin without one. The twelve blanks have always been there.
void frmhaupt::AskForPort() {
  outside_.person.Message("stellen Sie zuerst eine Schnittstelle ein            ",
                          Icon::Exclamation);
  if (outside_.com1.IsOpen()) return;  // its device has come back meanwhile
  SetTab(Tab::Interfaces);
  if (QApplication::activeModalWidget() != nullptr) return;  // a dialog stays where it was
  raise();                                                   // the editor may be in front
  activateWindow();
}

std::string frmhaupt::DescribeDevice(const std::string& device) {
  const bool connected = outside_.com1.IsOpen() && data_.DeviceOf(interfaces_->OpenPortNumber(),
                                                                  outside_.folders.data) == device;
  if (connected) return "verbunden";
  return outside_.machine.describeDevice ? outside_.machine.describeDevice(device) : std::string();
}

}  // namespace kelvo
