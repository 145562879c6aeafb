#include <QClipboard>
#include <QKeyEvent>

#include "settings/macro_page.h"
#include "tests/page_fixture.h"
#include "tests/test_fonts.h"

namespace kelvo {
namespace {

class MacroPageTest : public PageTest {
 protected:
  void StartOnPage() {
    terminal.Answer("\033E?F", "8000;");
    terminal.Answer("\x03", "\x06");
    page = &Put(new MacroPage(
        {exchange, person, state, Records("Makro"), Records("Default"), TestFonts()}));
    page->Records().SelectFirst();
  }
  MacroPage* page = nullptr;
};

TEST_F(MacroPageTest, StartShowsEveryRecordAndTheFirstOfThem) {
  Sql("insert into Makro (typ, Bezeichnung, wert) values ('MatrixTab', 'Feld', 'm'), "
      "('ATTab', 'Tabelle', 'x'), ('Grafik', 'Bild', 'g')");
  StartOnPage();
  const std::vector<std::string> macros{"Begrüßung", "Rahmen", "Display löschen"};
  EXPECT_EQ(Entries("cboMakro").size(), macros.size() + 3);
  EXPECT_TRUE(Editor("txtMakro").starts_with("\x1bGC\x1bGP8,40;"));
  EXPECT_EQ(Text("txtMakroNr"), "1");
  EXPECT_EQ(Text("txtMakroNrDisplay"), "-1");
  for (const auto& [kind, name] : {std::pair("chkMakroTyp_3", "Tabelle"),
                                   {"chkMakroTyp_2", "Feld"},
                                   {"chkMakroTyp_4", "Bild"}}) {
    Click(kind);
    EXPECT_EQ(Entries("cboMakro"), std::vector<std::string>{name});
  }
  EXPECT_EQ(Editor("txtMakro"), "g");
  Click("chkMakroTyp_1");
  EXPECT_EQ(Entries("cboMakro"), macros);
  Sql("delete from Makro where typ = 'ATTab'");
  Click("chkMakroTyp_3");
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
    const char* focused;
  } cases[] = {{"cmdSetMakro", "txtMakroNr", "txtMakroNr"},
               {"cmdPlayMakro", "txtMakroNrDisplay", "txtMakroNrDisplay"},
               {"cmdClearMakro", "txtMakroNr", "txtMakroNrDisplay"}};
  for (const auto& c : cases) {
    for (const std::string number : {"-1", "256", "", "abc", "99999999999", "1.5"}) {
      Forget();
      Find("txtMakro").setFocus();
      Type("txtMakroNrDisplay", "2000");
      Type(c.field, number);
      Click(c.button);
      EXPECT_EQ(person.LastMessage(), "Keine gültige Makro-Nummer") << number;
      EXPECT_EQ(Written(), "");
      EXPECT_TRUE(Find(c.focused).hasFocus());
      EXPECT_EQ(Find<QLineEdit>(c.focused).selectedText().toStdString(),
                Text(c.focused).substr(0, 3));
    }
  }
  for (const char* number : {"0", "255"}) {
    Type("txtMakroNrDisplay", number);
    Forget();
    Click("cmdPlayMakro");
    EXPECT_EQ(Written(), std::string("←ECM") + number + ";");
  }
}

TEST_F(MacroPageTest, NumberOfTheRecordIsOfferedAndAMissingOneIsExplained) {
  StartOnPage();
  std::string hint;
  person.duringMessage = [&] { hint = Text("lblMakroHinweis"); };
  Click("cmdPlayMakro");
  EXPECT_EQ(person.LastMessage(), "Keine gültige Makro-Nummer");
  EXPECT_NE(hint.find("Nummer im Terminal"), std::string::npos) << hint;
  EXPECT_EQ(Text("cmdMakroNrNehmen"), "Nummer 1 übernehmen");
  Click("cmdMakroNrNehmen");
  EXPECT_EQ(Text("txtMakroNrDisplay"), "1");
  EXPECT_EQ(Text("lblMakroHinweis"), "");
  Forget();
  Click("cmdPlayMakro");
  EXPECT_EQ(Written(), "←ECM1;");
  for (const char* none : {"-1", "", "256"}) {
    Type("txtMakroNr", none);
    EXPECT_FALSE(Find("cmdMakroNrNehmen").isEnabled()) << none;
  }
  Click("cmdClearMakro");
  EXPECT_NE(hint.find("links"), std::string::npos) << hint;
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

TEST_F(MacroPageTest, AMacroWithoutANumberHasNoneHoweverItIsLeft) {
  StartOnPage();
  page->NewMakro();
  Type("txtMakro", "x");
  Choose("cboMakro", "Rahmen");
  Choose("cboMakro", "* (neuer Name)");
  EXPECT_EQ(Text("txtMakroNr"), "-1");
  const std::pair<const char*, const char*> numbers[] = {
      {"-1", "-1"}, {"", "-1"}, {"(Nr)", "-1"}, {"99999999999999999999", "2147483647"}};
  for (const auto& [typed, stored] : numbers) {
    Type("txtMakroNr", typed);
    person.inputs = {"neu"};
    person.answers = {true};
    page->SaveShown();
    EXPECT_EQ(Stored("select * from Makro where Bezeichnung = 'neu'", "nr_im_display"), stored);
  }
}

TEST_F(MacroPageTest, SavingLeavesTheCaretWhereItIs) {
  StartOnPage();
  Type("txtMakro", "abc");
  auto& editor = Find<WireEdit>("txtMakro");
  editor.moveCursor(QTextCursor::End);
  person.inputs = {"Begrüßung"};
  person.answers = {true};
  page->SaveShown();
  EXPECT_EQ(editor.textCursor().position(), 3);
}

TEST_F(MacroPageTest, ARecordOfAnotherKindKeepsItUnlessToldOtherwise) {
  Sql("insert into Makro (typ, Bezeichnung, wert) values ('Grafik', 'Bild', 'x')");
  StartOnPage();
  Click("chkMakroTyp_4");
  for (const char* typ : {"Grafik", "Makro"}) {
    Type("txtMakro", typ);
    person.answers = {typ == std::string("Makro"), true};
    person.inputs = {"Bild"};
    page->SaveShown();
    EXPECT_EQ(Stored("select * from Makro where Bezeichnung = 'Bild'", "typ"), typ);
    EXPECT_EQ(Stored("select * from Makro where Bezeichnung = 'Bild'", "wert"), typ);
  }
}

TEST_F(MacroPageTest, KeepsMacrosUnderTheirNames) {
  StartOnPage();
  page->NewMakro();
  EXPECT_EQ(Editor("txtMakro") + "|" + Text("txtMakroNr"), "|-1");
  Type("txtMakroNr", "-5");
  person.inputs = {"Rahmen", "O'Brien"};
  page->SaveShown();
  EXPECT_EQ(person.prompts.at(0), "Bezeichnung für dieses Makro :|(neuer Name)");
  EXPECT_EQ(person.lastQuestion.title, "Speichern");
  EXPECT_EQ(Chosen("cboMakro"), "O'Brien");
  EXPECT_EQ(Stored("Makro", "typ", 3) + Stored("Makro", "nr_im_display", 3), "Makro-1");
  EXPECT_EQ(Text("txtMakroNr"), "-1");
  page->DeleteMakro();
  EXPECT_EQ(person.questions,
            (std::vector<std::string>{"Bezeichnung existiert schon, überschreiben ?",
                                      "Makro 'O'Brien' löschen ?"}));
}

}  // namespace
}  // namespace kelvo
