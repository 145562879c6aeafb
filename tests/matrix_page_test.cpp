
#include "keyboards/key_cell.h"
#include "tests/window_fixture.h"

namespace kelvo {
namespace {

class MatrixPageTest : public WindowTest {
 protected:
  static constexpr testing_world::milliseconds kSoon{5};

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
};

TEST_F(MatrixPageTest, ShowsTheKeysOfWiredLinesAndEmptiesTheOthers) {
  StartOn(Tab::MatrixKeyboard);
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
  StartOn(Tab::MatrixKeyboard);
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
  EXPECT_NE(InStatusBar().find("&0F"), std::string::npos);
  Cell(1).setText(QStringLiteral("€"));
  LeaveCell(1);
  EXPECT_EQ(Cell(1).text(), "");
  EXPECT_GE(person.beeps, 2);
  EXPECT_TRUE(person.messages.empty());
}

TEST_F(MatrixPageTest, TransmitsModeTableAndActivation) {
  StartOn(Tab::MatrixKeyboard);
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

TEST_F(MatrixPageTest, MeasuresTheFreeSpaceAgainstTheReplysOwnLength) {
  StartOn(Tab::MatrixKeyboard);
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
  StartOn(Tab::MatrixKeyboard);
  Tick("chkTastZeile", {0, 1});
  Click("cmdMatrixEnable");
  EXPECT_EQ(person.LastMessage(), "Es ist keine Spalte angekreuzt / CreateMatrixMode");
  EXPECT_EQ(port.written, "");
  AnswerFreeBytes("1000");
  Click("cmdSetMatrixTab");
  Trigger("mnuDateiSaveAsMakro");
  EXPECT_EQ(person.messages.size(), 3U);
  EXPECT_TRUE(person.prompts.empty());
  EXPECT_EQ(port.written, "\033E?F");
}

TEST_F(MatrixPageTest, ReportsARefusedAndAnUnansweredTable) {
  StartOn(Tab::MatrixKeyboard);
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
  StartOn(Tab::MatrixKeyboard);
  terminal.Answer("EM?", "3,80,\xE4;", kSoon);
  Click("cmdMatrixRead");
  EXPECT_EQ(person.LastMessage(), "3,80,ä");
  Click("cmdMatrixDisable");
  EXPECT_EQ(Written(), ReadableText("\033EM?\x1BMD"));
}

TEST_F(MatrixPageTest, ShowsPressedKeys) {
  StartOn(Tab::MatrixKeyboard);
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
  port.Arrive("k");
  EXPECT_EQ(colour(16), "#ffffff");
  EXPECT_EQ(colour(5), "#0000ff");
  port.Arrive("n");  // no box holds it: the last one stays
  EXPECT_EQ(colour(5), "#0000ff");
  EXPECT_EQ(Text("lblTastKlartext"), "kn");
  port.Arrive("\r");
  EXPECT_EQ(Text("lblTastKlartext"), "&13");
  loop.RunFor(std::chrono::seconds(3));
  EXPECT_EQ(colour(5), "#ffffff");
  EXPECT_EQ(Text("lblTastKlartext"), "");
}

TEST_F(MatrixPageTest, ShowsEachTableWithItsEdit) {
  Insert("eins", "1, '128', '3', char(27) || 'EWK1,80,41,42;'");
  StartOn(Tab::MatrixKeyboard);
  TypeCell(0, "#7");
  Trigger("mnuDateiNeu");
  EXPECT_EQ(Cell(0).Wire() + Cell(8).Wire(), "");
  EXPECT_TRUE(Cell(63).isVisible());
  Choose("cboTastTabBez", "* eins");
  EXPECT_EQ(Cell(0).Wire() + Cell(8).Wire(), "#7B");
  EXPECT_FALSE(Cell(63).isVisible());
  Click("cmdTastVerwerfen");
  EXPECT_EQ(Cell(0).Wire(), "A");
  person.answers = {true, true};
  Trigger("mnuBearbeitenloeschen");
  Trigger("mnuBearbeitenloeschen");
  EXPECT_FALSE(Cell(0).isVisible()) << "no table, no lines";
}

TEST_F(MatrixPageTest, DamagedTablesShowWhatCanBeRead) {
  Insert("kurz", "1, '192', '3', 'EWK'");
  Insert("leer", "NULL, NULL, NULL, NULL");
  Insert("Unsinn", "'x', 'abc', '-7', 'ü,€,ZZ,,;;,41'");
  Insert("Masken", "1e300, '1e300', '70000', char(27) || 'EWK1,80,41,ZZ'");
  Insert("Bytes", "4, '128', '1', x'1bff002c2c2c'");
  StartOn(Tab::MatrixKeyboard);
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
  StartOn(Tab::MatrixKeyboard);
  Tick("chkTastZeile", {0});
  Tick("chkTastSpalte", {0});
  TypeCell(0, "Z");
  person.inputs = {"erste"};
  Trigger("mnuDateiSave");
  const std::string source = "select * from Makro where typ = 'MatrixTab'";
  EXPECT_EQ(Stored(source, "wert"), "\033EWK0,80,5A,FF,FF,FF,FF,FF,FF,FF;");
  EXPECT_EQ(Stored(source, "ausgang") + "," + Stored(source, "eingang"), "128,1");
}

TEST_F(MatrixPageTest, SavesItsModeAsAMacro) {
  StartOn(Tab::MatrixKeyboard);
  TickAll();
  person.inputs = {"Matrix an"};
  Trigger("mnuDateiSaveAsMakro");
  EXPECT_EQ(person.prompts.back(), "Bezeichnung für dieses Makro :|(neuer Name)");
  EXPECT_EQ(Stored("select * from Makro where Bezeichnung = 'Matrix an'", "wert"),
            "\x1BMS8,8;\x1BMC2,10,35,0,0,5;\x1BME");
}

}  // namespace
}  // namespace kelvo
