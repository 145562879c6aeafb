#pragma once

#include <QMainWindow>
#include <array>
#include <map>
#include <memory>
#include <optional>
#include <span>
#include <string>
#include <vector>

#include "bus/frmDovu.h"
#include "bus/search_page.h"
#include "graphics/device_font.h"
#include "interfaces/interface_page.h"
#include "interfaces/port_control.h"
#include "inventory/free_bytes.h"
#include "inventory/hearing.h"
#include "inventory/readings.h"
#include "inventory/reply_memory.h"
#include "inventory/write_recorder.h"
#include "keyboards/at_page.h"
#include "keyboards/matrix_page.h"
#include "link/chronicle.h"
#include "link/exchange.h"
#include "link/line_state.h"
#include "link/line_watch.h"
#include "link/receive_events.h"
#include "settings/eeprom_page.h"
#include "settings/macro_page.h"
#include "settings/status_page.h"
#include "settings/text_page.h"
#include "shell/database_wait.h"
#include "shell/outside.h"
#include "shell/program_slot.h"
#include "shell/record_drafts.h"
#include "shell/symbol_records.h"
#include "shell/tabs.h"
#include "shell/window_memory.h"
#include "store/program_data.h"
#include "terminal/terminal_state.h"
#include "twin/twins.h"
#include "widgets/plain_texts.h"
#include "widgets/wheel_guard.h"

class QAction;
class QDockWidget;
class QLabel;
class QTabWidget;
class QToolButton;

namespace kelvo {

class CompareDialog;
class DrawingDesk;
class EquipDialog;
class HeadStrip;
class HelpDesk;
class HistoryView;
class InventoryView;
class PortDialog;
class PortReturn;
class ProjectDesk;
class SheetDialog;
class SimulatorDesk;
class StatusDisplay;
class TrafficView;
class TwinPanel;
class TwinWall;
class WriteDesk;

/// The main window. It opens the database while it is built (StoreError when that fails) and the
/// port at its first paint.
class frmhaupt : public QMainWindow {
  Q_OBJECT

 public:
  explicit frmhaupt(Outside outside);
  ~frmhaupt() override;

  /// What is kept from run to run of where things were.
  WindowMemory& Memory() { return memory_; }

  /// Ends the program as its cross does, but asks nothing: what is not saved is offered at the next
  /// start.
  void EndNow();

  enum class TrafficAt { Now, LastFailure };
  /// Opens the window of the traffic.
  void ShowTraffic(TrafficAt where);

 Q_SIGNALS:
  /// The window is seen for the first time; messages may follow.
  void FirstSeen();
  /// The first paint is done: the port has been opened, or could not be.
  void Loaded();
  /// The window has been closed: every wait is to end, and the program with it.
  void Unloaded();

 protected:
  void closeEvent(QCloseEvent* event) override;
  void paintEvent(QPaintEvent* event) override;

 private:
  // The load, in its order.
  void MakePages();
  void MakeKeyboardPages();
  void ShowHint(const QString& text);
  void MakeDrawingDesk();
  void MakeBus();
  void MakeFrame();
  void MakeTabs();
  void MakeHistory();
  void MakeTwins();
  PresentTerminal Present();
  void AddTwinActions(QMenu* view);
  Twins::Services TwinServices();
  /// The address under which nobody is known to listen.
  std::optional<int> AbsentAddress() const;
  void FollowBus();
  void MakeAdviser();
  InventoryView* MakeInventory();
  void MakeEquipping(QMenu* menu);
  void mnuAusstatten_Click();
  void TakeLeftEquipping();
  void AddSheetActions(QMenu* file);
  void MakeSheet();
  std::optional<TerminalId> SheetWanted();
  void mnuDateiDatenblatt_Click();
  std::string UsedDevice();
  std::string OpenDevice();
  std::string Taken(ItemKey key, const std::string& record, const std::string& command);
  void NoteTakenNumbers();
  void TellTakenBitmap(std::optional<int> number);
  /// What the pages say of the Terminals' EEPROMs rests on it.
  struct ShownInventory {
    TerminalId listener;
    Hearing hearing{};
    std::size_t entries = 0;
    std::size_t freeBytesAsked = 0;
    bool operator==(const ShownInventory&) const = default;
  };
  void ShowInventory();
  void MakeProjectDesk(QMenu* file);
  void TakeImported();
  void RefreshPage();
  void ShowInventoryNow();
  void ShowRecordStates();
  std::optional<FreeBytes> PresentFreeBytes() const;
  void ShowFreeBytes();
  void ShowRecord(ItemKind kind, qint64 record);
  QWidget* MakeAddressStrip();
  void ReadOptions();
  bool FirstRun() const;
  void ShowFirstTab();
  void FollowLink(const QString& link);
  void NoteFirstRunIsOver();
  void StoreOption(const char* field, bool on);
  void FirstPaint();
  void ConnectLink();

  // Menus and toolbar.
  void MakeMenus();
  void MakeFileMenu();
  void MakeEditMenu();
  void MakeRecentMenu(QMenu* file);
  void MakePageMenu();
  void MakeViewMenu();
  void MakeOptionMenu();
  void AddPortOptions(QMenu* options);
  void MakeHelpMenu();
  void MakeToolbar();
  void ShowRecentFiles();
  void ShowLatestDeed();
  void ShowPageActions();
  void RestoreWindows();
  std::array<QWidget*, 6> RememberedWindows();
  QAction* AddAction(QMenu* menu, const char* name, const QString& text,
                     const QKeySequence& shortcut, void (frmhaupt::*handler)());
  void AddToolbarAction(QMenu* menu, const char* name, const QString& text,
                        const QKeySequence& shortcut, int button);
  void EnableToolbar();

  /// What a button of the toolbar does on a page, or on every page.
  struct Command {
    int button;
    std::optional<Tab> tab;
    const char* routine;  ///< named when it fails
    void (*run)(frmhaupt& window);
    bool sends = false;
  };
  static std::span<const Command> Commands();
  static const Command* CommandOf(int button, Tab tab);

  void Guard(const char* routine, void (frmhaupt::*handler)());
  void SetTab(Tab tab);
  Tab ShownTab() const;
  QWidget* ShownPage() const;
  QString ShownChapter() const;
  std::array<RecordEditorBase*, 3> Records() const;
  void OutdateMarks();
  std::string DraftsLeft() const;
  bool MayLeaveErase();
  bool MayEnd();
  bool SaveDrafts();
  bool LeavesDrafts(const StoreLocked& locked);
  void RememberPlaces();
  void Unload();
  void TellOfFirstProgram();
  void TellOfNoSaving();
  void TellOfMissingFonts();
  void TakeLeft(const char* ending);
  void TellOfOddValues();

  void cmdTab_Click();
  void AskForPage();
  void cmdToolbar_Click(int index);
  void ResetAll();
  void SaveAsMakro(const std::optional<std::string>& text);
  void cmdDovuAktivieren_Click();
  void cmdVerbindungPruefen_Click();
  void mnuDateiZuletzt_Click(int index);
  void mnuDateiExportieren_Click();
  void mnuDateiImportieren_Click();
  void mnuBearbeitenRueckgaengig_Click();
  void mnuDovuSenden_Click();
  void AskForPort();
  void mnuOptionenSofortSenden_Click();
  void mnuOptionenZoom_Click();
  void mnuOptionenAnschluesse_Click();
  void mnuOptionenSimulator_Click();
  void mnuOptionenSimulatorBehalten_Click();
  bool ConnectTo(const std::string& device);
  void mnuAnsichtGrafik_Click();
  void mnuAnsichtDatenverkehr_Click();
  void mnuAnsichtVerlauf_Click();
  void mnuAnsichtAnzeigen_Click();
  void mnuAnsichtVergleich_Click();
  void mnuHilfe_Inhalt_Click();
  void mnuHilfe_index_Click();
  void mnuHilfe_Seite_Click();
  void mnuHilfe_about_Click();
  void com1_Lost();
  void ForgetClosedPort();
  void ConnectPorts();
  void com1_Returned();
  void mnuOptionenWiederOeffnen_Click();
  bool ReturnsByItself() const;
  void ShowPort();
  void ShowStoredTerminals();
  void ShowTerminal();
  std::string DescribePort(int number);
  std::string DescribeDevice(const std::string& device);

  Outside outside_;
  InterfacePage* interfaces_ = nullptr;  // who follows the line asks it from the start on
  PortControl portControl_;              // FormLoading is true from here to the first paint
  DatabaseWait databaseWait_;
  ProgramSlot slot_;
  ProgramData data_;
  WindowMemory memory_;
  SymbolRecords symbols_;
  Exchange exchange_;
  LineWatch line_;
  TrafficRecord record_;
  LineState lineState_;
  Chronicle chronicle_;
  std::pair<Listening, std::optional<int>> markedListener_{};  // whose values the marks tell of
  WriteJournal journal_;
  WriteRecorder recorder_;
  ReplyMemory replies_;
  FreeBytesMemory freeBytes_;
  ReceiveEvents receive_;
  TerminalState state_;
  DeviceFonts fonts_;
  std::vector<int> missingFonts_;
  Twins twins_;

  std::optional<RecordDrafts> drafts_;
  bool inventoryWaits_ = false;
  ShownInventory shownInventory_;
  bool pageWaits_ = false;  // it has something to ask, but something else is being asked
  bool portWasOpen_ = false;
  bool leavesDrafts_ = false;  // they could not be saved, and the program ends
  int losses_ = 0;             // of a device
  bool SofortSenden_ = false;
  bool FensterMitZoomen_ = false;

  QTabWidget* cmdTab = nullptr;
  HeadStrip* head_ = nullptr;
  StatusPage* status_ = nullptr;
  EepromPage* eeprom_ = nullptr;
  InventoryView* inventory_ = nullptr;
  EquipDialog* equip_ = nullptr;
  TextPage* text_ = nullptr;
  AtPage* at_ = nullptr;
  MatrixPage* matrix_ = nullptr;
  MacroPage* macros_ = nullptr;
  WriteDesk* writeDesk_ = nullptr;
  CompareDialog* compare_ = nullptr;
  ProjectDesk* projects_ = nullptr;
  SheetDialog* sheet_ = nullptr;
  std::shared_ptr<const Readings> readings_;  // when the sheet was asked for last
  std::unique_ptr<DrawingDesk> desk_;
  std::unique_ptr<HelpDesk> help_;
  std::unique_ptr<SimulatorDesk> simulator_;
  std::unique_ptr<PortReturn> portReturn_;
  WheelGuard wheelGuard_;
  PlainTexts plainTexts_;
  QLabel* ctlSendeanzeige = nullptr;
  SearchPage* terminals_ = nullptr;
  frmDovu* dovu_ = nullptr;
  StatusDisplay* statusDisplay_ = nullptr;
  TrafficView* traffic_ = nullptr;
  HistoryView* history_ = nullptr;
  QDockWidget* dckAnzeige = nullptr;
  TwinPanel* twin_ = nullptr;
  TwinWall* wall_ = nullptr;
  PortDialog* portDialog_ = nullptr;
  QAction* mnuOptionenSofortSenden = nullptr;
  QAction* mnuOptionenZoom = nullptr;
  QAction* mnuOptionenSimulatorBehalten = nullptr;
  QAction* mnuOptionenWiederOeffnen = nullptr;
  QAction* mnuDovuSenden = nullptr;
  QAction* mnuBearbeitenRueckgaengig = nullptr;
  QMenu* mnuDateiZuletzt = nullptr;
  QMenu* mnuAktionen = nullptr;
  std::map<int, QToolButton*> cmdToolbar;
  std::multimap<int, QAction*> toolbarActions_;
};

}  // namespace kelvo
