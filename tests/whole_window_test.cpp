#include <QAccessible>
#include <QGroupBox>
#include <QKeyEvent>
#include <QMenu>
#include <QMenuBar>
#include <QToolButton>
#include <filesystem>
#include <fstream>
#include <map>

#include "graphics/wmf.h"
#include "tests/drawing_samples.h"
#include "tests/window_fixture.h"

namespace kelvo {
namespace {

std::string Joined(const std::vector<std::string>& texts, const std::string& name) {
  std::string joined;
  for (const std::string& text : texts) joined += "[" + name + " " + text + "]";
  return joined;
}

// Every button of the toolbar on every page. All questions are answered with No, all boxes are
// cancelled.
class ToolbarTest : public WindowTest {
 protected:
  ToolbarTest() {
    Sql("update Optionen set FirstRun = 0");
    Sql("insert into Makro (typ, lfdnr, Bezeichnung, wert) values ('ATTab', 0, 'Deutsch', "
        "char(27) || 'EWK1,65,66;')");
    Sql("insert into Makro (typ, lfdnr, Bezeichnung, wert) values ('MatrixTab', 0, 'Feld', '')");
    Sql("insert into DOVU values (3, 'Halle', 1, 1), (5, 'Tor', 1, 1)");  // both ways delete one
    file = folder.Path("drawing.wmf");
    const Drawing drawing = {Boxed(Kind::Rectangle, {20, 100}, {5, 90}, false)};
    std::ofstream(file, std::ios::binary) << WriteWmf(drawing, 240, 128).bytes;
  }
  void StartWithADrawing(int page) {
    window.reset();
    Start();
    Show(Tab::Drawing);
    person.file = file;
    Click("cmdToolbar_7");
    person.file.reset();
    Grafik().findChild<QAction*>(QStringLiteral("mnuGrafikAlles"))->trigger();
    Find<QTabWidget>("cmdTab").setCurrentIndex(page);
    Forget();
    records_ = Records();
  }
  // With the keyboard: the focus on the button, then the space bar.
  void Press(QToolButton* tool) {
    tool->setFocus();
    for (const auto type : {QEvent::KeyPress, QEvent::KeyRelease}) {
      QKeyEvent key(type, Qt::Key_Space, Qt::NoModifier);
      QApplication::sendEvent(tool, &key);
    }
  }
  // Uses the button or the menu's entry; whether it is enabled.
  bool Use(const QString& name) {
    auto* const entry = window->findChild<QAction*>(name);
    if (entry != nullptr && !entry->isSeparator()) {
      const bool enabled = entry->isEnabled();
      entry->trigger();
      return enabled;
    }
    auto* const tool = window->findChild<QToolButton*>(name);
    if (tool == nullptr) return false;
    const bool enabled = tool->isEnabled();
    Press(tool);
    return enabled;
  }
  std::map<std::string, std::size_t> Records() {
    Database database(folder.Path("kelvo.mdb"));
    std::map<std::string, std::size_t> counts;
    for (const char* source : {"Makro", "DOVU"}) {
      counts[source] = Recordset(database, source).RecordCount();
    }
    return counts;
  }
  std::string Effect() {
    std::string effect = port.written.empty() ? "" : "[wire " + Written() + "]";
    effect += Joined(person.dialogs, "dialog") + Joined(person.questions, "question") +
              Joined(person.prompts, "prompt");
    for (const auto& message : person.messages) effect += "[message " + message.text + "]";
    for (const auto& [table, count] : Records()) {
      if (count != records_[table]) {
        effect += "[" + table + (count > records_[table] ? " +" : " -") + "]";
      }
    }
    const std::size_t objects = Grafik().CurrentDrawing().size();
    return effect + (objects == 1 ? "" : "[objects " + std::to_string(objects) + "]");
  }

  std::string file;
  std::map<std::string, std::size_t> records_;
};

// What each button does on each page; where nothing is named it does nothing and is disabled. The
// buttons 0 and 1 do the same on every page.
const std::map<std::pair<int, Tab>, std::string> Effects = {
    {{0, {}}, "[wire ;♥♦←!A255;←R]"},
    {{1, {}}, "[message Die Zeichnung enthält kein Bild.]"},
    {{2, Tab::Drawing}, "[dialog save||Text (txt) |*.txt]"},
    {{6, Tab::Drawing}, "[wire ←GC←!C0;][objects 0]"},
    {{6, Tab::AtKeyboard}, "[Makro +]"},
    {{6, Tab::MatrixKeyboard}, "[Makro +]"},
    {{6, Tab::Macros}, "[Makro +]"},
    {{7, Tab::Drawing}, "[dialog open|Datei laden|Vistel(WMF) |*.wmf|Text (txt) |*.txt]"},
    {{8, Tab::Drawing}, "[dialog save|Datei speichern|Vistel(WMF) |*.wmf]"},
    {{8, Tab::AtKeyboard}, "[prompt Bezeichnung für diese Tastaturtabelle :|Deutsch]"},
    {{8, Tab::MatrixKeyboard}, "[prompt Bezeichnung für diese Tastaturtabelle :|Feld]"},
    {{8, Tab::Macros}, "[prompt Bezeichnung für dieses Makro :|Begrüßung]"},
    {{10, Tab::Drawing}, "[wire ←GC←GP 20, 27;←GR 5, 37;]"},
    {{11, Tab::Drawing}, "[prompt Bezeichnung für dieses Makro :|(neuer Name)]"},
    {{11, Tab::Text}, "[prompt Bezeichnung für dieses Makro :|(neuer Name)]"},
    {{11, Tab::AtKeyboard}, "[prompt Bezeichnung für dieses Makro :|(neuer Name)]"},
    {{11, Tab::MatrixKeyboard}, "[message Es ist keine Spalte angekreuzt / CreateMatrixMode]"},
    {{12, Tab::Drawing}, "[objects 0]"},
    {{12, Tab::AtKeyboard}, "[question Umkodiertabelle 'Deutsch' löschen ?]"},
    {{12, Tab::MatrixKeyboard}, "[question Umkodiertabelle 'Feld' löschen ?]"},
    {{12, Tab::Macros}, "[question Makro 'Begrüßung' löschen ?]"},
    {{12, Tab::Terminals}, "[DOVU -]"},
};

std::string EffectOf(int button, int page) {
  const auto effect = Effects.find({button, button < 2 ? Tab{} : static_cast<Tab>(page)});
  return effect == Effects.end() ? "" : effect->second;
}

// What does nothing on a page is tried in one window, one after the other; all else begins anew.
TEST_F(ToolbarTest, EveryButtonAndItsMenuEntryOnEveryPage) {
  std::vector<std::pair<QString, int>> ways = {
      {"mnuDateiNeu", 6},          {"mnuDateiLoad", 7},       {"mnuDateiSave", 8},
      {"mnuDateiSaveAsMakro", 11}, {"mnuBearbeitenSend", 10}, {"mnuBearbeitenloeschen", 12}};
  for (int i = 0; i <= 12; ++i) ways.emplace_back(QStringLiteral("cmdToolbar_%1").arg(i), i);
  for (int page = 0; page < kTabCount; ++page) {
    StartWithADrawing(page);
    for (const auto& [name, button] : ways) {
      if (!EffectOf(button, page).empty()) continue;
      EXPECT_FALSE(Use(name)) << name.toStdString() << page;
      EXPECT_EQ(Effect(), "") << name.toStdString() << page;
    }
    for (const auto& [name, button] : ways) {
      if (EffectOf(button, page).empty()) continue;
      StartWithADrawing(page);
      EXPECT_TRUE(Use(name)) << name.toStdString() << page;
      EXPECT_EQ(Effect(), EffectOf(button, page)) << name.toStdString() << page;
    }
  }
}

// Drawings that were loaded or saved are at hand in the menu, also after a new start.
TEST_F(ToolbarTest, RecentDrawings) {
  const std::string older = folder.Path("older.wmf");
  std::filesystem::copy_file(file, older);
  for (const std::string& loaded : {older, file}) {
    file = loaded;
    StartWithADrawing(static_cast<int>(Tab::Macros));
  }
  window.reset();
  Start();
  Show(Tab::Macros);
  EXPECT_EQ(Find<QAction>("mnuDateiZuletzt_0").text(), QStringLiteral("&1 drawing.wmf"));
  EXPECT_EQ(Find<QAction>("mnuDateiZuletzt_1").text(), QStringLiteral("&2 older.wmf"));
  Trigger("mnuDateiZuletzt_0");
  EXPECT_EQ(Find<QTabWidget>("cmdTab").currentIndex(), 0);
  EXPECT_EQ(Grafik().CurrentDrawing().size(), 1u);
  std::filesystem::remove(file);
  Trigger("mnuDateiZuletzt_0");
  EXPECT_EQ(person.LastMessage(), "Die Datei konnte nicht gelesen werden:\n" + file);
  EXPECT_EQ(Grafik().CurrentDrawing().size(), 1u);
  EXPECT_EQ(Find<QAction>("mnuDateiZuletzt_0").text(), QStringLiteral("&1 older.wmf"));
  EXPECT_FALSE(Find<QAction>("mnuDateiZuletzt_1").isVisible());
}

class WholeWindowTest : public WindowTest {};

// The answers to both would get mixed up.
TEST_F(WholeWindowTest, NothingElseIsAskedWhileTheEepromIsErased) {
  using testing_world::milliseconds;
  StartOn(Tab::Eeprom);
  terminal.Answer("?V", "1.0;");
  terminal.Answer(
      "\x1b"
      "EE",
      "\x06", milliseconds(5000));
  person.answers = {true};
  loop.After(milliseconds(2000), [&] {
    Show(Tab::Text);
    Click("cmdGetVersion");
    Click("cmdToolbar_0");
    QApplication::processEvents();
  });
  Click("cmdClearEEprom");
  EXPECT_EQ(Written(), "←?V←EE←E?F");
  EXPECT_TRUE(person.messages.empty());
  EXPECT_EQ(person.notices,
            std::vector<std::string>(
                2, "Das EEPROM wird gelöscht. Solange wird nichts anderes gesendet."));
  QApplication::processEvents();
  EXPECT_NE(Written().find("←?C"), std::string::npos) << "the page in front asks now";
}

TEST_F(WholeWindowTest, ADoubleClickBeginsNothingTwice) {
  StartOn(Tab::Macros);
  terminal.Answer("E?F", "8000;");
  terminal.Answer("\x03", "\x06");
  loop.After(testing_world::milliseconds(1), [&] { Click("cmdSetMakro"); });
  Type("txtMakro", "x");
  Click("cmdSetMakro");
  EXPECT_EQ(Written(), "←E?F←EWM1,x♥");
  EXPECT_TRUE(person.messages.empty());
}

// The answers to both would get mixed up.
TEST_F(WholeWindowTest, AButtonPressedInHasteActsWhenTheOneBeforeIsDone) {
  using testing_world::milliseconds;
  StartOn(Tab::Eeprom);
  terminal.Answer("E?F", "8024;", milliseconds(300));
  terminal.Answer(
      "\x1b"
      "EWC",
      "\x06", milliseconds(300));
  loop.After(milliseconds(24), [&] {
    Click("cmdSetConfig");
    Click("cmdSetConfig");
  });
  Click("cmdGetFreeBytes");
  EXPECT_EQ(Written(), "←E?F");
  EXPECT_EQ(Text("lblFreeBytes"), "8024");
  QApplication::processEvents();
  EXPECT_EQ(Written(), "←E?F←EWC");
  EXPECT_TRUE(person.messages.empty());
}

// Seven questions to a silent Terminal would keep the operator from the line for seconds.
TEST_F(WholeWindowTest, APageThatAsksGivesWayAndCanBeLeft) {
  using testing_world::milliseconds;
  StartOn(Tab::Macros);
  loop.After(milliseconds(600), [&] { Click("cmdTextClear"); });
  Show(Tab::Text);
  EXPECT_EQ(Written(), "←?C←?c");
  QApplication::processEvents();
  EXPECT_TRUE(Written().ends_with("←GC"));
  Show(Tab::Macros);
  Forget();
  loop.After(milliseconds(600), [&] { Show(Tab::Macros); });
  Show(Tab::Text);
  EXPECT_EQ(Written(), "←?C←?c");
}

TEST_F(WholeWindowTest, EveryButtonThatSendsSaysThatThePortIsClosed) {
  Start();
  port.Close();
  const std::pair<Tab, std::vector<const char*>> buttons[] = {
      {Tab::Drawing, {"cmdToolbar_0", "cmdToolbar_1", "cmdToolbar_10", "cmdDovuAktivieren"}},
      {Tab::Interfaces, {"cmdSetCom2", "cmdSendCom2"}},
      {Tab::Text,
       {"cmdSetCursor", "cmdSetCursorHome", "cmdGetCursor", "cmdSetText", "cmdGetText",
        "cmdTextClear", "cmdTextClr2", "cmdSenden", "cmdSetFesttext", "cmdBefehlSenden"}},
      {Tab::Status,
       {"cmdGetVersion", "cmdGetFlashInfo", "cmdGetAdresse", "cmdGetPort", "cmdSetPort",
        "cmdSetRes"}},
      {Tab::Eeprom, {"cmdSetConfig", "cmdClearConfig", "cmdClearEEprom", "cmdGetFreeBytes"}},
      {Tab::AtKeyboard, {"cmdSetATTab", "cmdClearATTast", "cmdATRead", "cmdATumkodierenStart"}},
      {Tab::MatrixKeyboard,
       {"cmdSetMatrixTab", "cmdClearMatrixTast", "cmdMatrixRead", "cmdMatrixEnable",
        "cmdMatrixDisable"}},
      {Tab::Macros, {"cmdSetMakro", "cmdSetAutostartMakro", "cmdPlayMakro", "cmdClearMakro"}},
      {Tab::Terminals, {"cmdDovusuchen"}}};
  for (const auto& [tab, names] : buttons) {
    for (const char* name : names) {
      Show(tab);
      Forget();
      Click(name);
      ASSERT_EQ(person.messages.size(), 1U) << name;
      EXPECT_EQ(person.LastMessage(), "stellen Sie zuerst eine Schnittstelle ein            ");
      EXPECT_EQ(Find<QTabWidget>("cmdTab").currentIndex(), static_cast<int>(Tab::Interfaces));
      EXPECT_TRUE(person.questions.empty());
    }
  }
}

// A screen reader says what has the focus.
TEST_F(WholeWindowTest, EveryControlHasAName) {
  Start();
  for (QWidget* control : QApplication::allWidgets()) {
    if (control->focusPolicy() == Qt::NoFocus || control->focusProxy() != nullptr ||
        control->objectName().startsWith(u"qt_") || control->isWindow() ||
        control->window()->windowType() == Qt::Popup) {
      continue;
    }
    QAccessibleInterface* const interface = QAccessible::queryAccessibleInterface(control);
    ASSERT_NE(interface, nullptr);
    EXPECT_FALSE(interface->text(QAccessible::Name).isEmpty())
        << control->metaObject()->className() << ' ' << control->objectName().toStdString()
        << " of " << control->window()->objectName().toStdString();
  }
}

// Everything that is reached with Alt and a letter.
QStringList Captions(const QWidget& part) {
  QStringList captions;
  for (const QWidget* widget : part.findChildren<QWidget*>()) {
    if (const auto* label = qobject_cast<const QLabel*>(widget); label && label->buddy()) {
      captions << label->text();
    } else if (const auto* button = qobject_cast<const QAbstractButton*>(widget)) {
      captions << button->text();
      EXPECT_EQ(button->shortcut(), QKeySequence::mnemonic(button->text()))
          << button->text().toStdString();
    } else if (const auto* group = qobject_cast<const QGroupBox*>(widget)) {
      captions << group->title();
    } else if (const auto* tabs = qobject_cast<const QTabWidget*>(widget)) {
      for (int i = 0; i < tabs->count(); ++i) captions << tabs->tabText(i);
    }
  }
  return captions;
}

TEST_F(WholeWindowTest, MnemonicsAreUniqueOnEachPage) {
  Start();
  QStringList everywhere = Captions(Find("ctlRS485"));
  for (const QAction* menu : window->menuBar()->actions()) everywhere << menu->text();
  auto& tabs = Find<QTabWidget>("cmdTab");
  for (int page = 0; page < kTabCount; ++page) {
    std::map<QKeySequence, QString> taken;
    for (const QString& caption : everywhere + Captions(*tabs.widget(page))) {
      const QKeySequence key = QKeySequence::mnemonic(caption);
      if (key.isEmpty()) continue;
      EXPECT_TRUE(taken.try_emplace(key, caption).second)
          << "page " << page << ": " << taken[key].toStdString() << ", " << caption.toStdString();
    }
  }
}

}  // namespace
}  // namespace kelvo
