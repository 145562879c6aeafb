#include <QAction>
#include <QCloseEvent>
#include <algorithm>

#include "base/guard.h"
#include "bus/frmDovu.h"
#include "help/help_desk.h"
#include "sheet_page/sheet_dialog.h"
#include "shell/drawing_desk.h"
#include "shell/frmhaupt.h"
#include "shell/history_view.h"
#include "shell/simulator_desk.h"
#include "shell/traffic_view.h"
#include "store/file_calls.h"
#include "twin_page/twin_wall.h"

// What the main window keeps from run to run, and how it ends.

namespace kelvo {
namespace {

constexpr int kBesideFirst = 48;         // pixels
constexpr std::size_t kShownValue = 40;  // characters
constexpr char kTrafficColumns[] = "ctlVerkehr";
constexpr char kMacroPanes[] = "Makro-Seite";
constexpr char kDocks[] = "frmhauptDocks";

// An empty record that stays is no reason to keep anybody waiting.
template <typename Editors>
void RemoveUnused(const Editors& editors) {
  try {
    for (RecordEditorBase* const records : editors) records->RemoveUnused();
  } catch (const StoreLocked&) {
    return;
  }
}

}  // namespace

void frmhaupt::closeEvent(QCloseEvent* event) {
  databaseWait_.SetEnding(true);
  if (!outside_.loop.Closing() && !MayEnd()) {
    databaseWait_.SetEnding(false);
    return event->ignore();
  }
  event->accept();
  if (!leavesDrafts_) {
    Guarded(outside_.person, "Form_Unload", [this] {
      drafts_->Remove();
      RemoveUnused(Records());
    });
  }
  Unload();
}

// Whoever tells the program to end waits for no answer.
void frmhaupt::EndNow() {
  if (outside_.loop.Closing()) return;
  databaseWait_.SetEnding(true);
  Guarded(outside_.person, "Form_Unload", [this] {
    drafts_->Keep();
    desk_->Editor().KeepDraft();
    RemoveUnused(Records());
  });
  hide();
  Unload();
}

// As one change: the database may be busy, the disc slow. Not worth a message.
void frmhaupt::RememberPlaces() try {
  Transaction together(data_.database);
  for (const QWidget* some : RememberedWindows()) memory_.Remember(*some);
  if (const QWidget* const help = help_->Made()) memory_.Remember(*help);
  if (sheet_ != nullptr) memory_.Remember(*sheet_);
  memory_.RememberState(kTrafficColumns, traffic_->Columns());
  memory_.RememberState(kMacroPanes, macros_->Arrangement());
  memory_.RememberState(kDocks, saveState());
  together.Commit();
} catch (const StoreError&) {
}

void frmhaupt::Unload() {
  RememberPlaces();
  if (outside_.com1.IsOpen()) outside_.com1.Close();
  if (!mnuOptionenSimulatorBehalten->isChecked()) simulator_->End();
  desk_->Editor().SetAutomaticSend(false);
  desk_->Editor().hide();
  traffic_->hide();
  history_->hide();
  wall_->hide();
  dovu_->hide();
  if (sheet_ != nullptr) sheet_->hide();
  help_->Close();
  Q_EMIT Unloaded();
}

void frmhaupt::TellOfNoSaving() {
  const std::string& lack = outside_.folders.lack;
  if (!lack.empty()) {
    outside_.person.Message(
        lack + "\nGezeigt wird, was mitgeliefert ist. Es kann nichts gespeichert werden.",
        Icon::Exclamation);
  } else if (data_.database.ReadOnly()) {
    outside_.person.Message("Die Datenbank \"" + data_.database.Path() +
                                "\" ist schreibgeschützt. Es kann nichts gespeichert werden.",
                            Icon::Exclamation);
  }
}

// What is stored stays, until the operator stores something else.
void frmhaupt::TellOfOddValues() {
  std::string words;
  for (const Recordset* const records : {&data_.Optionen, &data_.Default}) {
    for (const OddValue& odd : records->OddValues()) {
      words += "\n" + odd.field + ": gespeichert ist " + odd.stored.substr(0, kShownValue) +
               ", verwendet wird " + odd.used;
    }
  }
  if (words.empty()) return;
  outside_.person.Message("Die Datenbank \"" + data_.database.Path() +
                              "\" enthält Werte, die kelvo so nicht verwenden kann:" + words,
                          Icon::Exclamation);
}

// Both work, and no save overwrites the other's unasked; but drafts are kept apart.
void frmhaupt::TellOfFirstProgram() {
  if (!slot_.HasNeighbour()) return;
  outside_.person.Notify(
      "Ein anderes kelvo benutzt diese Datenbank schon. Bevor hier etwas "
      "überschrieben wird, was dort gespeichert wurde, wird gefragt.",
      Icon::Information);
}

// What a program has left behind that died is offered as this one's own. Where it cannot be had it
// stays for a later one.
void frmhaupt::TakeLeft(const char* ending) {
  const std::vector<std::string> left = slot_.LeftBehind(ending);
  const std::string own = slot_.File(ending);
  if (left.empty() || IsThere(own)) return;
  Files().Rename(left.front(), own);
}

// Nothing of what the Terminal does can be stopped from here.
bool frmhaupt::MayLeaveErase() {
  return outside_.person.Begun().RunsAlone() != kErasing ||
         outside_.person.Ask(
             "Das EEPROM wird gelöscht. Das Terminal löscht auch ohne kelvo zu Ende; ob es "
             "gelingt, erfahren Sie dann nicht. Trotzdem beenden ?",
             Icon::Exclamation);
}

// What is not saved is saved, given up, or keeps the program running.
bool frmhaupt::MayEnd() {
  leavesDrafts_ = false;
  if (!MayLeaveErase()) return false;
  const std::string drafts = DraftsLeft();
  if (!drafts.empty()) {
    const Decision decision =
        outside_.person.AskToSave("Nicht gespeicherte Änderungen: " + drafts + ".");
    if (decision == Decision::Cancel) return false;
    if (decision == Decision::Save && !SaveDrafts()) return false;
  }
  return desk_->Editor().MayEnd();
}

bool frmhaupt::SaveDrafts() {
  bool saved = false;
  Guarded(outside_.person, "Form_Unload", [&] {
    const auto all = Records();
    try {
      saved = std::all_of(all.begin(), all.end(), [](auto* some) { return some->SaveDrafts(); });
    } catch (const StoreLocked& locked) {
      if (!drafts_->Keep()) throw;
      saved = leavesDrafts_ = LeavesDrafts(locked);
    }
  });
  return saved;
}

// Whoever holds the database does not keep this program from ending.
bool frmhaupt::LeavesDrafts(const StoreLocked& locked) {
  return outside_.person.Ask(std::string(locked.what()) + "\n\nNicht gespeichert: " + DraftsLeft() +
                                 ". Das bleibt als Entwurf erhalten und wird beim nächsten Start "
                                 "angeboten. Trotzdem beenden ?",
                             Icon::Exclamation);
}

std::array<QWidget*, 6> frmhaupt::RememberedWindows() {
  return {this, &desk_->Editor(), dovu_, traffic_, history_, wall_};
}

void frmhaupt::NoteFirstRunIsOver() {
  if (data_.database.ReadOnly()) return;  // said at the first paint, once
  // Not worth a wait: it is the first run once more.
  const Database::Impatience now(data_.database);
  try {
    StoreOption("FirstRun", false);
  } catch (const StoreLocked&) {
    return;
  }
}

void frmhaupt::RestoreWindows() {
  for (QWidget* some : RememberedWindows()) memory_.Restore(*some);
  traffic_->RestoreColumns(memory_.State(kTrafficColumns));
  macros_->Arrange(memory_.State(kMacroPanes));
  restoreState(memory_.State(kDocks));
  // A second program opens beside the first one.
  if (slot_.Number() > 1) move(pos() + QPoint(kBesideFirst, kBesideFirst) * (slot_.Number() - 1));
  connect(help_.get(), &HelpDesk::WindowMade, this,
          [this](QWidget& window) { memory_.Restore(window); });
}

std::array<RecordEditorBase*, 3> frmhaupt::Records() const {
  return {&macros_->Records(), &matrix_->Records(), &at_->Records()};
}

std::string frmhaupt::DraftsLeft() const {
  std::vector<std::vector<std::string>> names;
  for (const RecordEditorBase* const records : Records()) names.push_back(records->DraftNames());
  return DraftWords(names);
}

}  // namespace kelvo
