#include <QClipboard>
#include <QKeyEvent>
#include <filesystem>

#include "settings/macros.h"
#include "tests/window_fixture.h"

namespace kelvo {
namespace {

using testing_world::milliseconds;

class MacroPageTest : public WindowTest {
 protected:
  void StartOnPage() {
    terminal.Answer("\033E?F", "8000;");
    terminal.Answer("\x03", "\x06");
    StartOn(Tab::Macros);
  }
  void SaveAs(const std::string& name) {
    person.inputs = {name};
    Trigger("mnuDateiSave");
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

TEST_F(MacroPageTest, SavingAsksForANameAndBeforeOverwriting) {
  StartOnPage();
  Type("txtMakro", "neu");
  Type("txtMakroNr", "-5");
  person.inputs = {"Rahmen", "O'Brien"};
  person.answers = {false};
  Trigger("mnuDateiSave");
  EXPECT_EQ(person.prompts, (std::vector<std::string>{"Bezeichnung für dieses Makro :|Begrüßung",
                                                      "Bezeichnung für dieses Makro :|Rahmen"}));
  EXPECT_EQ(person.questions,
            std::vector<std::string>{"Bezeichnung existiert schon, überschreiben ?"});
  EXPECT_EQ(person.lastQuestion.title, "Speichern");
  EXPECT_EQ(Chosen("cboMakro"), "O'Brien");
  EXPECT_EQ(Stored("Makro", "wert", 3), "neu");
  EXPECT_EQ(Stored("Makro", "typ", 3) + Stored("Makro", "lfdnr", 3), "Makro3");
  EXPECT_EQ(Stored("Makro", "nr_im_display", 3), "-1");
  EXPECT_TRUE(Stored("Makro", "wert", 0).starts_with("\x1bGC"));

  Type("txtMakro", "anders");
  person.inputs = {"Rahmen"};
  person.answers = {true};
  Trigger("mnuDateiSave");
  EXPECT_EQ(Stored("Makro", "wert", 1), "anders");
  EXPECT_EQ(Entries("cboMakro").size(), 4u);
}

TEST_F(MacroPageTest, GivingUpTheNameSavesNothing) {
  StartOnPage();
  Type("txtMakro", "neu");
  for (const std::optional<std::string>& answer :
       {std::optional<std::string>(), std::optional<std::string>("")}) {
    person.inputs = {answer};
    Trigger("mnuDateiSave");
  }
  EXPECT_EQ(Entries("cboMakro").size(), 3u);
  EXPECT_EQ(Editor("txtMakro"), "neu");
}

TEST_F(MacroPageTest, NewRecordIsAppendedAndShown) {
  StartOnPage();
  Trigger("mnuDateiNeu");
  EXPECT_EQ(Chosen("cboMakro"), "(neuer Name)");
  EXPECT_EQ(Editor("txtMakro") + "|" + Text("txtMakroNr"), "|-1");
  EXPECT_EQ(Stored("Makro", "Bezeichnung", 3), "(neuer Name)");
}

TEST_F(MacroPageTest, LeftEditIsADraftUntilItIsSavedOrGivenUp) {
  StartOnPage();
  Type("txtMakro", "Entwurf");
  EXPECT_EQ(Entries("cboMakro")[0], "* Begrüßung");
  Choose("cboMakro", "Rahmen");
  EXPECT_TRUE(Editor("txtMakro").starts_with("\x1bGP0,0;"));
  Choose("cboMakro", "* Begrüßung");
  EXPECT_EQ(Editor("txtMakro"), "Entwurf");
  EXPECT_EQ(Stored("Makro", "wert", 0).substr(0, 3), "\x1bGC");

  window->close();
  EXPECT_TRUE(window->isVisible());
  ASSERT_EQ(person.questions.size(), 1u);
  EXPECT_NE(person.questions[0].find("\"Begrüßung\""), std::string::npos);

  Click("cmdMakroVerwerfen");
  EXPECT_TRUE(Editor("txtMakro").starts_with("\x1bGC"));
  EXPECT_EQ(Entries("cboMakro")[0], "Begrüßung");
  window->close();
  EXPECT_FALSE(window->isVisible());
  EXPECT_EQ(person.questions.size(), 1u);
}

TEST_F(MacroPageTest, DraftSavedUnderAnotherNameIsNoDraftAnyMore) {
  StartOnPage();
  Type("txtMakro", "Entwurf");
  SaveAs("Anderer");
  EXPECT_EQ(Entries("cboMakro"),
            (std::vector<std::string>{"Begrüßung", "Rahmen", "Display löschen", "Anderer"}));
  Choose("cboMakro", "Begrüßung");
  EXPECT_TRUE(Editor("txtMakro").starts_with("\x1bGC"));
}

TEST_F(MacroPageTest, DeletingAsksAndKeepsTheSelectionValid) {
  StartOnPage();
  Choose("cboMakro", "Display löschen");
  Trigger("mnuBearbeitenloeschen");
  EXPECT_EQ(person.questions, std::vector<std::string>{"Makro 'Display löschen' löschen ?"});
  EXPECT_EQ(Entries("cboMakro").size(), 3u);
  for (const char* shown : {"Rahmen", "Begrüßung", ""}) {
    person.answers = {true};
    Trigger("mnuBearbeitenloeschen");
    EXPECT_EQ(Chosen("cboMakro"), shown);
  }
  EXPECT_EQ(Editor("txtMakro"), "");
  Trigger("mnuBearbeitenloeschen");
  EXPECT_EQ(person.questions.size(), 4u);
}

TEST_F(MacroPageTest, ReadOnlyDatabaseSaysAtEachSaveThatItCannot) {
  std::filesystem::permissions(folder.Path("kelvo.mdb"), std::filesystem::perms::owner_read);
  StartOnPage();
  Type("txtMakro", "Entwurf");
  SaveAs("Neu");
  EXPECT_NE(person.LastMessage().find("schreibgeschützt"), std::string::npos);
  EXPECT_EQ(Editor("txtMakro"), "Entwurf");
  EXPECT_EQ(Entries("cboMakro").size(), 3u);
}

}  // namespace
}  // namespace kelvo
