#include <QClipboard>
#include <QKeyEvent>

#include "settings/macros.h"
#include "tests/window_fixture.h"

namespace kelvo {
namespace {

class MacroPageTest : public WindowTest {
 protected:
  void StartOnPage() {
    terminal.Answer("\033E?F", "8000;");
    terminal.Answer("\x03", "\x06");
    StartOn(Tab::Macros);
  }
};

TEST_F(MacroPageTest, StartShowsEveryRecordAndTheFirstOfThem) {
  Sql("insert into Makro (typ, Bezeichnung, wert) values ('ATTab', 'Tabelle', 'x')");
  StartOnPage();
  EXPECT_EQ(Entries("cboMakro"),
            (std::vector<std::string>{"Begrüßung", "Rahmen", "Display löschen", "Tabelle"}));
  EXPECT_TRUE(Editor("txtMakro").starts_with("\x1bGC\x1bGP8,40;"));
  EXPECT_EQ(Text("txtMakroNr"), "1");
  EXPECT_EQ(Text("txtMakroNrDisplay"), "-1");
  Click("chkMakroTyp_3");
  EXPECT_EQ(Entries("cboMakro"), std::vector<std::string>{"Tabelle"});
  EXPECT_EQ(Editor("txtMakro"), "x");
  Click("chkMakroTyp_4");
  EXPECT_TRUE(Entries("cboMakro").empty());
  EXPECT_EQ(Editor("txtMakro") + Text("txtMakroNr"), "");
}

TEST_F(MacroPageTest, MacroGoesOutCharacterForCharacter) {
  StartOnPage();
  Type("txtMakro", "GC\x1bTH");
  Type("txtMakroNr", "07");
  Click("cmdSetMakro");
  ASSERT_EQ(port.writes.size(), 2u);
  EXPECT_EQ(port.writes[0], "\033E?F");
  EXPECT_EQ(port.writes[1], "\033EWM7,GC\x1bTH\x03");
  Forget();
  const std::string all = "\r\n;\xFC\x04\x7F\t|";
  Type("txtMakro", all);
  Click("cmdSetAutostartMakro");
  EXPECT_EQ(port.writes.at(1), "\033EWM0," + all + "\x03");
  EXPECT_TRUE(person.messages.empty());
}

TEST_F(MacroPageTest, NumbersOutsideTheTerminalsRangeAreRefused) {
  StartOnPage();
  const struct {
    const char* button;
    const char* field;
  } cases[] = {{"cmdSetMakro", "txtMakroNr"}, {"cmdPlayMakro", "txtMakroNrDisplay"}};
  for (const auto& c : cases) {
    for (const char* number : {"-1", "256", "", "abc", "99999999999", "1.5"}) {
      Forget();
      Type(c.field, number);
      Click(c.button);
      EXPECT_EQ(person.LastMessage(), "Keine gültige Makro-Nummer") << number;
      EXPECT_EQ(Written(), "");
    }
  }
  for (const char* number : {"0", "255"}) {
    Type("txtMakroNrDisplay", number);
    Forget();
    Click("cmdPlayMakro");
    EXPECT_EQ(Written(), std::string("←ECM") + number + ";");
  }
}

TEST_F(MacroPageTest, DeletingChecksOneNumberAndSendsTheOther) {
  StartOnPage();
  terminal.Answer("\033EDM9;", "\x06");
  Type("txtMakroNr", "300");
  Type("txtMakroNrDisplay", "9");
  Click("cmdClearMakro");
  EXPECT_EQ(person.LastMessage(), "Keine gültige Makro-Nummer");
  EXPECT_EQ(Written(), "");
  Type("txtMakroNr", "4");
  Forget();
  Click("cmdClearMakro");
  EXPECT_EQ(Written(), "←EDM9;");
  EXPECT_TRUE(person.messages.empty());
  Type("txtMakroNrDisplay", "");
  Forget();
  Click("cmdClearMakro");
  EXPECT_EQ(Written(), "");
}

TEST_F(MacroPageTest, LengthAndSpaceAreCheckedBeforeWriting) {
  const struct {
    std::size_t length;
    const char* free;
    const char* message;
    std::size_t writes;
  } cases[] = {{1024, "8000;", "Makro zu lang (max. 1024 Zeichen)", 0},
               {1023, "8000;", "", 2},
               {981, "1000;", "nicht genügend Platz im EEprom", 1},
               {980, "1000;", "", 2}};
  StartOnPage();
  for (const auto& c : cases) {
    terminal.Answer("\033E?F", c.free);
    Type("txtMakro", std::string(c.length, 'a'));
    Forget();
    Click("cmdSetMakro");
    EXPECT_EQ(person.LastMessage(), c.message) << c.length;
    EXPECT_EQ(port.writes.size(), c.writes) << c.length;
  }
}

TEST_F(MacroPageTest, TextWithItsOwnEndMarkIsRefusedNamingThePosition) {
  StartOnPage();
  Type("txtMakro", "abc\x03xyz");
  Click("cmdSetMakro");
  EXPECT_NE(person.LastMessage().find("Position 4"), std::string::npos);
  EXPECT_EQ(Written(), "");
}

TEST_F(MacroPageTest, FailedWritesNameTheirHandler) {
  StartOnPage();
  terminal.Answer("\x03", "");
  Click("cmdSetMakro");
  EXPECT_EQ(person.LastMessage(), "keine Reaktion / cmdSetMakro");
  Click("cmdSetAutostartMakro");
  EXPECT_EQ(person.LastMessage(), "keine Reaktion / cmdSetAutoStartMakro");
  Type("txtMakroNrDisplay", "1");
  Click("cmdClearMakro");
  EXPECT_EQ(person.LastMessage(), "keine Reaktion / cmdClearMakro");
  terminal.Answer("\x03", "\x15");
  Click("cmdSetMakro");
  EXPECT_EQ(person.LastMessage(), "Fehler beim EEPROM");
}

TEST_F(MacroPageTest, EscIsInsertedAtTheCaret) {
  StartOnPage();
  Type("txtMakro", "abXXcd");
  auto& editor = Find<WireEdit>("txtMakro");
  QTextCursor cursor = editor.textCursor();
  cursor.setPosition(2);
  cursor.setPosition(4, QTextCursor::KeepAnchor);
  editor.setTextCursor(cursor);
  Click("cmdInsertESC");
  EXPECT_EQ(Editor("txtMakro"), "ab\033cd");
  editor.undo();
  EXPECT_EQ(Editor("txtMakro"), "abXXcd");
}

TEST_F(MacroPageTest, OnlyCharactersOfTheLineGetIntoTheFields) {
  StartOnPage();
  auto& editor = Find<WireEdit>("txtMakro");
  Type("txtMakro", "");
  const auto paste = [&](const QString& text) {
    QApplication::clipboard()->setText(text);
    editor.paste();
  };
  paste(QStringLiteral("100 €"));
  EXPECT_EQ(Editor("txtMakro"), "");
  EXPECT_EQ(person.beeps, 1);
  paste(QStringLiteral("\x1bGT\u00fc\x04\nzwei"));
  EXPECT_EQ(Editor("txtMakro"), "\x1bGT\xFC\x04\r\nzwei");
  EXPECT_EQ(editor.toPlainText(), QStringLiteral("←GTü♦\nzwei"));
  editor.selectAll();
  editor.copy();
  EXPECT_EQ(QApplication::clipboard()->text(), QStringLiteral("\x1bGT\u00fc\x04\nzwei"));
  QKeyEvent key(QEvent::KeyPress, 0, Qt::NoModifier, QStringLiteral("€"));
  QApplication::sendEvent(&editor, &key);
  EXPECT_EQ(person.beeps, 2);
}

TEST_F(MacroPageTest, KeepsMacrosUnderTheirNames) {
  StartOnPage();
  Trigger("mnuDateiNeu");
  EXPECT_EQ(Editor("txtMakro") + "|" + Text("txtMakroNr"), "|-1");
  Type("txtMakroNr", "-5");
  person.inputs = {"Rahmen", "O'Brien"};
  Trigger("mnuDateiSave");
  EXPECT_EQ(person.prompts.at(0), "Bezeichnung für dieses Makro :|(neuer Name)");
  EXPECT_EQ(person.lastQuestion.title, "Speichern");
  EXPECT_EQ(Chosen("cboMakro"), "O'Brien");
  EXPECT_EQ(Stored("Makro", "typ", 4) + Stored("Makro", "nr_im_display", 4), "Makro-1");
  EXPECT_EQ(Text("txtMakroNr"), "-1");
  Trigger("mnuBearbeitenloeschen");
  EXPECT_EQ(person.questions,
            (std::vector<std::string>{"Bezeichnung existiert schon, überschreiben ?",
                                      "Makro 'O'Brien' löschen ?"}));
}

TEST_F(MacroPageTest, ClosingAsksWhenThereAreDrafts) {
  StartOnPage();
  Type("txtMakro", "Entwurf");
  window->close();
  EXPECT_TRUE(window->isVisible());
  EXPECT_NE(person.questions.at(0).find("\"Begrüßung\""), std::string::npos);
  Click("cmdMakroVerwerfen");
  EXPECT_TRUE(Editor("txtMakro").starts_with("\x1bGC"));
  window->close();
  EXPECT_FALSE(window->isVisible());
}

}  // namespace
}  // namespace kelvo
