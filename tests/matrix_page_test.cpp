#include "keyboards/matrix_page.h"
#include <QKeyEvent>

#include "keyboards/key_cell.h"
#include "tests/page_fixture.h"

namespace kelvo {
namespace {

using testing_world::milliseconds;

class MatrixPageTest : public PageTest {
 protected:
  void StartOnPage() {
    page = &Put(new MatrixPage({exchange, person, state, Records(kTables)}));
    QObject::connect(page, &MatrixPage::Hint,
                     [this](const QString& text) { hint = text.toStdString(); });
    page->Records().SelectFirst();
  }
  static constexpr milliseconds kSoon{5};
  static constexpr char kTables[] = "select * from Makro where typ = 'MatrixTab'";

  void AnswerFreeBytes(const std::string& bytes) { terminal.Answer("E?F", bytes + ";", kSoon); }
  void Tick(const char* array, std::initializer_list<int> lines) {
    for (int line = 0; line < 8; ++line) {
      const bool tick = std::find(lines.begin(), lines.end(), line) != lines.end();
      Find<QCheckBox>(Named(array, line).c_str()).setChecked(tick);
    }
  }
  void TickAll() {
    Tick("chkTastZeile", {0, 1, 2, 3, 4, 5, 6, 7});
    Tick("chkTastSpalte", {0, 1, 2, 3, 4, 5, 6, 7});
  }
  static std::string Named(const char* array, int index) {
    return std::string(array) + "_" + std::to_string(index);
  }
  KeyCell& Cell(int index) { return Find<KeyCell>(Named("txtTastMatrix", index).c_str()); }
  void LeaveCell(int index, Qt::FocusReason reason = Qt::TabFocusReason) {
    QFocusEvent leave(QEvent::FocusOut, reason);
    QApplication::sendEvent(&Cell(index), &leave);
  }
  void TypeCell(int index, const std::string& wire) {
    Cell(index).SetWire(wire);
    LeaveCell(index);
  }
  void Insert(const std::string& name, const std::string& values) {
    Sql("insert into Makro (typ, Bezeichnung, nr_im_display, ausgang, eingang, wert) values "
        "('MatrixTab', '" +
        name + "', " + values + ")");
  }

  MatrixPage* page = nullptr;
  std::string hint;  ///< the last one
};

TEST_F(MatrixPageTest, ShowsTheKeysOfWiredLinesAndEmptiesTheOthers) {
  StartOnPage();
  Tick("chkTastZeile", {2, 5});
  Tick("chkTastSpalte", {3});
  for (int index = 0; index < 64; ++index) {
    EXPECT_EQ(Cell(index).isVisible(), index == 26 || index == 29) << index;
  }
  Cell(26).SetWire("A");
  Find<QCheckBox>("chkTastZeile_2").setChecked(false);
  EXPECT_EQ(Cell(26).Wire(), "");
}

TEST_F(MatrixPageTest, RefusesWhatIsNoCodeWithABeepAndALineInTheStatusBar) {
  StartOnPage();
  TickAll();
  TypeCell(0, "&f");
  EXPECT_EQ(Cell(0).Wire(), "&0F");
  EXPECT_EQ(person.beeps, 0);
  // Another window in front is no other control.
  LeaveCell(0, Qt::ActiveWindowFocusReason);
  EXPECT_EQ(Cell(0).Wire(), "&0F");
  LeaveCell(0);
  EXPECT_EQ(Cell(0).Wire(), "");
  EXPECT_EQ(person.beeps, 1);
  const std::pair<const char*, const char*> refused[] = {
      {"&0F", "hinter & steht eine Hexadezimalzahl bis FF ohne führende Null."},
      {"#256", "hinter # steht eine Zahl von 0 bis 255."},
      {"ab", "erlaubt sind ein Zeichen, # mit Dezimalzahl und & mit Hexadezimalzahl."},
      {"€", "ein solches Zeichen gibt es im Terminal nicht."}};
  for (const auto& [typed, reason] : refused) {
    Cell(1).setText(QString::fromUtf8(typed));
    LeaveCell(1);
    EXPECT_EQ(Cell(1).text(), "");
    EXPECT_EQ(hint, "„" + std::string(typed) + "“ ist kein Tastencode: " + reason);
  }
  EXPECT_TRUE(person.messages.empty());
}

// Keys, menus and the toolbar begin an action without leaving the box.
TEST_F(MatrixPageTest, WhatIsBeingTypedIsCheckedBeforeAnActionBegins) {
  StartOnPage();
  TickAll();
  AnswerFreeBytes("1000");
  terminal.Answer(";", "\x06", kSoon);
  const auto type = [this](const char* text) {
    Cell(0).setFocus();
    Cell(0).setText(QString::fromUtf8(text));
    Cell(0).setModified(true);
    Forget();
  };
  for (const char* text : {"zz", "12345", "&1;"}) {
    type(text);
    Click("cmdSetMatrixTab");
    EXPECT_EQ(Written() + Cell(0).Wire(), "");
    type(text);
    Find("cmdSetMatrixTab").setFocus(Qt::MouseFocusReason);
    Click("cmdSetMatrixTab");
    EXPECT_EQ(Written() + Cell(0).Wire(), "");
  }
  type("&f");
  Click("cmdSetMatrixTab");
  EXPECT_NE(port.written.find("EWK0,80,0F,FF"), std::string::npos);
  EXPECT_TRUE(Cell(0).hasFocus());
  LeaveCell(0);
  EXPECT_EQ(Cell(0).Wire(), "&0F") << "it was left once";
  // Who has been told of the refusal and then presses means it.
  for (const char* control : {"cmdSetMatrixTab", "chkTastZeile_0"}) {
    type("zz");
    Find(control).setFocus(Qt::TabFocusReason);
    Forget();
    for (const auto press : {QEvent::KeyPress, QEvent::KeyRelease}) {
      QKeyEvent space(press, Qt::Key_Space, Qt::NoModifier);
      QCoreApplication::sendEvent(&Find("cmdSetMatrixTab"), &space);
    }
    EXPECT_NE(port.written, "") << control;
  }
}

TEST_F(MatrixPageTest, TabAndArrowsGoFromKeyToKey) {
  StartOnPage();
  Tick("chkTastZeile", {0, 1});
  Tick("chkTastSpalte", {0, 2});
  const auto press = [](int key) {
    QKeyEvent event(QEvent::KeyPress, key, Qt::NoModifier);
    QApplication::sendEvent(QApplication::focusWidget(), &event);
  };
  Find("chkTastZeile_7").setFocus();
  for (const int index : {0, 16, 1, 17}) {
    press(Qt::Key_Tab);
    EXPECT_TRUE(Cell(index).hasFocus()) << index;
  }
  for (const auto& [key, index] : {std::pair{Qt::Key_Left, 1}, std::pair{Qt::Key_Up, 0},
                                   std::pair{Qt::Key_Right, 16}, std::pair{Qt::Key_Down, 17}}) {
    press(key);
    EXPECT_TRUE(Cell(index).hasFocus()) << index;
  }
}

TEST_F(MatrixPageTest, TransmitsModeTableAndActivation) {
  StartOnPage();
  AnswerFreeBytes("1000");
  terminal.Answer(",FF;", "\x06", kSoon);
  Tick("chkTastZeile", {0});
  Tick("chkTastSpalte", {0, 1});
  TypeCell(0, "A");
  Type("txtTastTabNr", "07");
  Click("cmdSetMatrixTab");
  EXPECT_EQ(port.writes,
            (std::vector<std::string>{"\033E?F", "\x1BMS2,1;\x1BMC2,10,35,252,127,5;\x1BME",
                                      "\033EWK7,80,41,FF,FF,FF,FF,FF,FF,FF;", "\033EMK7;"}));
  EXPECT_TRUE(person.messages.empty());
}

TEST_F(MatrixPageTest, ANumberThatIsNoneSaysWhatWouldBeSent) {
  StartOnPage();
  const std::pair<const char*, const char*> numbers[] = {{"abc", "0 … 255 – gesendet würde 0"},
                                                         {"999", "0 … 255 – gesendet würde 999"},
                                                         {"255", "0 … 255"},
                                                         {"", "0 … 255 – leer: Tabelle 0"}};
  for (const auto& [typed, shown] : numbers) {
    Type("txtTastTabNr", typed);
    EXPECT_EQ(Text("lblTastTabNrBereich"), shown);
  }
}

TEST_F(MatrixPageTest, MeasuresTheFreeSpaceAgainstTheReplysOwnLength) {
  StartOnPage();
  TickAll();
  terminal.Answer(";", "\x06", kSoon);
  // The reply's two characters fit into 22 - 20 bytes, and do not into 21 - 20.
  AnswerFreeBytes("22");
  Click("cmdSetMatrixTab");
  EXPECT_TRUE(person.messages.empty());
  AnswerFreeBytes("21");
  Forget();
  Click("cmdSetMatrixTab");
  EXPECT_EQ(person.LastMessage(), "nicht genügend Platz im EEprom");
  EXPECT_EQ(port.writes.size(), 1U);
}

TEST_F(MatrixPageTest, FailsWithoutAColumnBeforeAnythingIsWritten) {
  StartOnPage();
  Tick("chkTastZeile", {0, 1});
  Click("cmdMatrixEnable");
  EXPECT_EQ(person.LastMessage(), "Es ist keine Spalte angekreuzt / CreateMatrixMode");
  EXPECT_EQ(port.written, "");
  AnswerFreeBytes("1000");
  Click("cmdSetMatrixTab");
  EXPECT_FALSE(page->MatrixMode());
  EXPECT_EQ(person.messages.size(), 3U);
  EXPECT_EQ(port.written, "\033E?F");
}

TEST_F(MatrixPageTest, ReportsARefusedAndAnUnansweredTable) {
  StartOnPage();
  TickAll();
  AnswerFreeBytes("1000");
  Click("cmdSetMatrixTab");
  EXPECT_EQ(person.LastMessage(), "keine Reaktion / cmdSetMatrixTab");
  EXPECT_EQ(port.written.find("EMK"), std::string::npos);
  terminal.Answer("EDK0;", "\x15", kSoon);
  Click("cmdClearMatrixTast");
  EXPECT_EQ(person.LastMessage(), "Fehler beim EEPROM");
  terminal.Answer("EDK0;", "X", kSoon);
  Click("cmdClearMatrixTast");
  EXPECT_EQ(person.LastMessage(), "unknown 88 / cmdClearMatrixTast");
}

TEST_F(MatrixPageTest, ShowsTheTableMemoryAsReceived) {
  StartOnPage();
  terminal.Answer("EM?", "3,80,\xE4;", kSoon);
  Click("cmdMatrixRead");
  EXPECT_EQ(person.LastMessage(), "3,80,ä");
  EXPECT_FALSE(Find("cmdMatrixUebernehmen").isEnabled());
  Click("cmdMatrixDisable");
  EXPECT_EQ(Written(), ReadableText("\033EM?\x1BMD"));
}

TEST_F(MatrixPageTest, TakesOverATableThatItUnderstandsAndGivesItBack) {
  StartOnPage();
  TypeCell(5, "k");
  const std::string before = Cell(5).Wire();
  terminal.Answer("EM?", "3,88,41,FF,FF,FF,FF,FF,FF,FF,FF,D,FF,FF,FF,FF,FF,FF;", kSoon);
  Click("cmdMatrixRead");
  EXPECT_EQ(Text("lblMatrixGelesen").substr(5), " gelesen: Tabelle 3");
  Click("cmdMatrixUebernehmen");
  EXPECT_EQ(Cell(1).Wire() + Cell(10).Wire() + Cell(5).Wire(), "A#13");
  EXPECT_EQ(Text("txtTastTabNr"), "3");
  EXPECT_TRUE(page->Records().DraftNames().size() == 1);
  person.Done().Undo();
  EXPECT_EQ(Cell(5).Wire() + Cell(1).Wire(), before);
  terminal.Answer("EM?", "3,88,41,FF", kSoon);
  Click("cmdMatrixRead");
  EXPECT_EQ(Text("lblMatrixGelesen").substr(5),
            ": nur 10 Zeichen kamen rechtzeitig. Rate zu niedrig?");
}

TEST_F(MatrixPageTest, KeysHaveTheDesktopsColours) {
  StartOnPage();
  QPalette dark;
  dark.setColor(QPalette::Base, Qt::black);
  dark.setColor(QPalette::Text, Qt::white);
  page->setPalette(dark);
  EXPECT_EQ(Cell(5).palette().color(QPalette::Base), QColor(Qt::black));
  EXPECT_EQ(Cell(5).palette().color(QPalette::Text), QColor(Qt::white));
}

TEST_F(MatrixPageTest, ShowsPressedKeys) {
  StartOnPage();
  // A key can be pressed to find out which lines it is wired to.
  port.Arrive("\x91");
  TickAll();
  EXPECT_EQ(Cell(9).Wire(), "$91");
  TypeCell(5, "k");
  TypeCell(9, "k");  // of two the first one is marked
  const auto colour = [this](int index) {
    return Cell(index).palette().color(QPalette::Base).name().toStdString();
  };
  port.Arrive("\x8A");
  EXPECT_EQ(Cell(16).Wire(), "$8A");
  EXPECT_EQ(colour(16), "#0000ff");
  loop.RunFor(milliseconds(1900));
  port.Arrive("k");
  EXPECT_EQ(colour(16), "#ffffff");
  EXPECT_EQ(colour(5), "#0000ff");
  port.Arrive("n");  // no box holds it: the last one stays
  EXPECT_EQ(colour(5), "#0000ff");
  EXPECT_EQ(Text("lblTastKlartext"), "kn");
  port.Arrive("\r");
  EXPECT_EQ(Text("lblTastKlartext"), "&13");
  // The highlight lasts as long from the last key on.
  loop.RunFor(milliseconds(1900));
  EXPECT_EQ(colour(5), "#0000ff");
  loop.RunFor(milliseconds(100));
  EXPECT_EQ(colour(5), "#ffffff");
  EXPECT_EQ(Text("lblTastKlartext"), "");
}

TEST_F(MatrixPageTest, WhatAKeyOrALineReplacesIsSaidAndCanBeTakenBack) {
  StartOnPage();
  std::vector<std::string> hints;
  QObject::connect(page, &MatrixPage::Hint, page,
                   [&](const QString& hint) { hints.push_back(hint.toStdString()); });
  TickAll();
  EXPECT_EQ(person.Done().Latest(), "");
  TypeCell(0, "#13");
  port.Arrive("\x80");
  port.Arrive("\x80");
  EXPECT_EQ(Cell(0).Wire(), "$80");
  EXPECT_EQ(person.Done().Latest(), "Ersetzen von #13 durch $80");
  ASSERT_EQ(hints.size(), 1u);
  EXPECT_EQ(hints[0],
            "Taste Zeile 0, Spalte 0: Der Tastendruck hat #13 durch $80 ersetzt. „Rückgängig“ "
            "bringt es zurück.");
  person.Done().Undo();
  EXPECT_EQ(Cell(0).Wire(), "#13");
  TypeCell(9, "k");
  Find<QCheckBox>("chkTastSpalte_1").click();
  EXPECT_EQ(Cell(9).Wire(), "");
  EXPECT_TRUE(hints.back().starts_with("Spalte 1 abgewählt und eine Taste geleert"))
      << hints.back();
  Find<QCheckBox>("chkTastZeile_7").click();  // takes nothing away
  person.Done().Undo();
  EXPECT_EQ(Cell(9).Wire(), "k");
  EXPECT_TRUE(Cell(9).isVisible());
  EXPECT_EQ(person.Done().Latest(), "");
}

TEST_F(MatrixPageTest, ShowsEachTableWithItsEdit) {
  Insert("eins", "1, '128', '3', char(27) || 'EWK1,80,41,42;'");
  StartOnPage();
  TypeCell(0, "#7");
  page->NewTastTab();
  EXPECT_EQ(Cell(0).Wire() + Cell(8).Wire(), "");
  EXPECT_TRUE(Cell(63).isVisible());
  Choose("cboTastTabBez", "* eins");
  EXPECT_EQ(Cell(0).Wire() + Cell(8).Wire(), "#7B");
  EXPECT_FALSE(Cell(63).isVisible());
  Click("cmdTastVerwerfen");
  EXPECT_EQ(Cell(0).Wire(), "A");
  person.answers = {true, true};
  page->DeleteTable();
  page->DeleteTable();
  EXPECT_FALSE(Cell(0).isVisible()) << "no table, no lines";
}

TEST_F(MatrixPageTest, DamagedTablesShowWhatCanBeRead) {
  Insert("kurz", "1, '192', '3', 'EWK'");
  Insert("leer", "NULL, NULL, NULL, NULL");
  Insert("Unsinn", "'x', 'abc', '-7', 'ü,€,ZZ,,;;,41'");
  Insert("Masken", "1e300, '1e300', '70000', char(27) || 'EWK1,80,41,ZZ'");
  Insert("Bytes", "4, '128', '1', x'1bff002c2c2c'");
  StartOnPage();
  for (const char* name : {"leer", "kurz", "Unsinn", "Bytes", "leer", "Masken"}) {
    Choose("cboTastTabBez", name);
    EXPECT_TRUE(person.messages.empty()) << name;
  }
  EXPECT_TRUE(Find<QCheckBox>("chkTastZeile_7").isChecked());
  EXPECT_EQ(Cell(0).Wire(), "A");
  EXPECT_EQ(Cell(8).Wire(), "#0");
  EXPECT_EQ(Cell(16).Wire(), "");
}

TEST_F(MatrixPageTest, StoresTheLinesAndTheCommand) {
  StartOnPage();
  Tick("chkTastZeile", {0});
  Tick("chkTastSpalte", {0});
  TypeCell(0, "Z");
  person.inputs = {"erste"};
  page->SaveTastTab();
  EXPECT_EQ(Stored(kTables, "wert"), "\033EWK0,80,5A,FF,FF,FF,FF,FF,FF,FF;");
  EXPECT_EQ(Stored(kTables, "ausgang") + "," + Stored(kTables, "eingang"), "128,1");
}

}  // namespace
}  // namespace kelvo
