#pragma once

#include <QAbstractButton>
#include <QAction>
#include <QTabWidget>
#include <QWidget>
#include <fstream>

#include "inventory/journal.h"
#include "shell/tabs.h"
#include "store/database.h"
#include "store/statement.h"

namespace kelvo {

/// What the program may be at when something happens to it, at a line where nobody answers.
struct Scene {
  const char* what;
  Tab tab;
  const char* button;     ///< or the menu entry; empty: nothing
  bool asks = false;      ///< a box or a dialog keeps the main window from being closed
  const char* then = "";  ///< what is pressed next, as Presser takes it
  bool held = false;      ///< the other end has stopped the line
  /// What is pressed when its end is questioned.
  const char* end = "";
  /// A file that has to be there afterwards: what was begun can be gone on with.
  const char* leaves = "";
};
inline constexpr Scene kScenes[] = {
    {"idle", Tab::Status, ""},
    {"a question for the version", Tab::Status, "cmdGetVersion"},
    {"a macro is written", Tab::Macros, "cmdSetMakro"},
    {"the search for Terminals", Tab::Terminals, "cmdDovusuchen"},
    {"the quick search", Tab::Terminals, "cmdDovuSchnellsuche"},
    {"the question before erasing", Tab::Eeprom, "cmdClearEEprom", true},
    {"the name of a record", Tab::Macros, "cmdToolbar_8", true},
    {"a file dialog", Tab::Drawing, "mnuDateiLoad", true},
    {"the ports", Tab::Interfaces, "mnuOptionenAnschluesse", true},
    {"the search for a connection", Tab::Interfaces, "cmdVerbindungSuchen", true},
    {"a line that is held", Tab::Macros, "cmdSetMakro", false, "", true},
    {"an erase", Tab::Eeprom, "cmdClearEEprom", false, "Ja ?cmdInfoNichtWarten", false, "Ja"},
    {"a drawing for many", Tab::Drawing, "mnuDovuSenden", true, "cmdDovuAlleAktiv cmdSenden"},
    {"the help", Tab::Macros, "mnuHilfe_Seite"},
    {"the data sheet", Tab::Terminals, "mnuDateiDatenblatt", false, "?cmdDatenblattPdf"},
    {"an import", Tab::Macros, "mnuDateiImportieren", true, ":halle.kelvo ?cmdImportSchliessen"},
    {"a reading to compare", Tab::Eeprom, "mnuAnsichtVergleich", false, "cmdVergleichLesen"},
    {"an equipping", Tab::Eeprom, "mnuAusstatten", true,
     "+ctlAusstattenZiele cmdAusstatten Ja ?cmdAusstattenAnhalten", false, "", "kelvo.ausstattung"},
};

/// What some scenes need: Terminals in the list, a project, and what was written into another one.
inline void PrepareScenes(const std::string& folder) {
  Database database(folder + "/kelvo.mdb");
  Statement(database, "insert into DOVU values (5, 'Pult', 1, 1), (6, 'Tor', 1, 1)").Step();
  std::ofstream(folder + "/halle.kelvo")
      << R"({"kelvo": 1, "Makros": [{"Nummer": 7, "Bezeichnung": "Neu", "Inhalt": ["x"]}]})";
  WriteJournal(folder + "/" + kJournalFile)
      .Add({{},
            {"/dev/other", 5},
            Event::Acknowledged,
            {ItemChange::Kind::Written, {ItemKind::Macro, 7}},
            "Gruß",
            "\x1b"
            "EWM7,Hallo\x03"});
}

inline void ShowPageOf(const Scene& scene, const QWidget& window) {
  window.findChild<QTabWidget*>(QStringLiteral("cmdTab"))
      ->setCurrentIndex(static_cast<int>(scene.tab));
}
/// Returns when the scene is over.
inline void Begin(const Scene& scene, const QWidget& window) {
  const QString wanted = QString::fromUtf8(scene.button);
  if (wanted.isEmpty()) return;
  if (auto* const entry = window.findChild<QAction*>(wanted)) return entry->trigger();
  if (auto* const button = window.findChild<QAbstractButton*>(wanted)) button->click();
}

}  // namespace kelvo
