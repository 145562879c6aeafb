#include <QTableView>

#include "keyboards/at_list.h"
#include "tests/window_fixture.h"

namespace kelvo {
namespace {

using testing_world::milliseconds;

class AtPageTest : public WindowTest {
 protected:
  static constexpr milliseconds kSoon{5};

  AtList& List() { return static_cast<AtList&>(*Find<QTableView>("ctlATTabListe").model()); }
  const AtPairs& Pairs() { return List().Pairs(); }
  bool TypeCell(int row, int column, const char* text) {
    return List().setData(List().index(row, column), QString::fromUtf8(text), Qt::EditRole);
  }
  std::string CellText(int row, int column) {
    return List().index(row, column).data().toString().toStdString();
  }
  /// Learn mode until the actions that were scheduled have ended it; how long that took.
  testing_world::nanoseconds Learn() {
    const auto begin = loop.Now();
    Click("cmdATumkodierenStart");
    return loop.Now() - begin;
  }
  /// Whether the page can be used as before.
  void ExpectUsable() {
    EXPECT_TRUE(Find("cmdATumkodierenStart").isEnabled());
    EXPECT_FALSE(Find("cmdATumkodierenEnde").isEnabled());
    EXPECT_TRUE(Find("cboATTabBez").isEnabled());
    EXPECT_TRUE(Find("cmdSetATTab").isEnabled());
  }
};

TEST_F(AtPageTest, LearnsPairsOfKeys) {
  StartOn(Tab::AtKeyboard);
  loop.After(kSoon, [&] {
    EXPECT_EQ(Find<QTabWidget>("cmdATTab").currentIndex(), 1);
    EXPECT_TRUE(Find("lblATalterCodePfeil").isVisible());
    EXPECT_FALSE(Find("cmdSetATTab").isEnabled());
    port.Arrive("A");
  });
  loop.After(kSoon * 2, [&] {
    EXPECT_EQ(Text("lblATalterCode"), "A / 65");
    EXPECT_TRUE(Find("lblATneuerCodePfeil").isVisible());
    EXPECT_FALSE(Find("lblATalterCodePfeil").isVisible());
    port.Arrive("a");
  });
  // The same old key overwrites its row; a pair that is not complete is not entered.
  loop.After(kSoon * 3, [&] { port.Arrive("B\033Ab\xC4"); });
  loop.After(kSoon * 4, [&] { Click("cmdATumkodierenEnde"); });
  EXPECT_EQ(Learn(), kSoon * 4);
  EXPECT_EQ(Pairs(), (AtPairs{{65, 98}, {66, 27}}));
  EXPECT_EQ(CellText(1, 3), "27");
  EXPECT_EQ(List().rowCount(), 3);
  ExpectUsable();
}

TEST_F(AtPageTest, LosesNoKeyThatArrivesAtLineRate) {
  StartOn(Tab::AtKeyboard);
  // 128 pairs, 10 bits a character at 19200 bit/s, and some of them in one delivery.
  constexpr testing_world::nanoseconds character{520833};
  for (int code = 0; code < 256; ++code) {
    const long arrival = code - code % 3;
    loop.After(character * (arrival + 1),
               [this, code] { port.Arrive(std::string(1, static_cast<char>(code))); });
  }
  loop.After(character * 300, [&] { Click("cmdATumkodierenEnde"); });
  Learn();
  ASSERT_EQ(Pairs().size(), 128U);
  for (int pair = 0; pair < 128; ++pair) {
    EXPECT_EQ(Pairs()[static_cast<std::size_t>(pair)], (AtPair{2 * pair, 2 * pair + 1}));
  }
}

TEST_F(AtPageTest, LearningEndsAtOnceWithWhateverEndsIt) {
  const std::pair<const char*, std::function<void()>> ends[] = {
      {"fertig", [&] { Click("cmdATumkodierenEnde"); }},
      {"another page", [&] { Show(Tab::Macros); }},
      {"the test page", [&] { Find<QTabWidget>("cmdATTab").setCurrentIndex(0); }},
      {"a new table", [&] { Trigger("mnuDateiNeu"); }},
      {"the program ends", [&] { loop.closing = true; }},
      {"the line is lost", [&] { port.Lose(); }}};
  StartOn(Tab::AtKeyboard);
  for (const auto& [name, end] : ends) {
    SCOPED_TRACE(name);
    Show(Tab::AtKeyboard);
    // In the middle of a pair.
    loop.After(kSoon, [&] { port.Arrive("A"); });
    loop.After(kSoon * 2, end);
    EXPECT_EQ(Learn(), kSoon * 2);
    EXPECT_EQ(Pairs(), AtPairs{});
    loop.closing = false;
    ExpectUsable();
  }
  EXPECT_EQ(person.notices.size(), 1U);
}

TEST_F(AtPageTest, LearningIsOverEvenWhileThePageInFrontWaitsForTheTerminal) {
  StartOn(Tab::AtKeyboard);
  loop.After(kSoon, [&] { port.Arrive("A"); });
  loop.After(kSoon * 2, [&] { Show(Tab::Text); });
  // The text page still asks; the operator is back before it is done.
  loop.After(milliseconds(100), [&] {
    Show(Tab::AtKeyboard);
    ExpectUsable();
    loop.After(kSoon, [&] { port.Arrive("Bb"); });
    loop.After(kSoon * 2, [&] { Click("cmdATumkodierenEnde"); });
    Learn();
    EXPECT_EQ(Pairs(), (AtPairs{{66, 98}}));
  });
  Learn();
  EXPECT_EQ(Pairs(), (AtPairs{{66, 98}}));
  ExpectUsable();
}

TEST_F(AtPageTest, ReceiveEventsAreOffWhileLearningAndOnAgainOnTheTestPage) {
  StartOn(Tab::AtKeyboard);
  loop.After(kSoon, [&] { EXPECT_EQ(port.ReceiveThreshold(), 0); });
  loop.After(kSoon * 2, [&] { Click("cmdATumkodierenEnde"); });
  Learn();
  EXPECT_EQ(port.ReceiveThreshold(), 0);
  Find<QTabWidget>("cmdATTab").setCurrentIndex(0);
  EXPECT_EQ(port.ReceiveThreshold(), 1);
  loop.After(kSoon, [&] { Show(Tab::Macros); });
  Learn();
  EXPECT_EQ(port.ReceiveThreshold(), 1);
}

TEST_F(AtPageTest, WithAClosedPortThereIsNothingToLearnFrom) {
  StartOn(Tab::AtKeyboard);
  port.Close();
  Learn();
  EXPECT_EQ(person.LastMessage(), "stellen Sie zuerst eine Schnittstelle ein            ");
  EXPECT_EQ(Find<QTabWidget>("cmdTab").currentIndex(), 1);
}

TEST_F(AtPageTest, ShowsWhatTheKeyboardSends) {
  StartOn(Tab::AtKeyboard);
  port.Arrive("a\xE4");
  EXPECT_EQ(Find<QPlainTextEdit>("lblATKlartext").toPlainText().toStdString(), "aä");
  EXPECT_EQ(Text("lblAThexcode"), "228");
  Show(Tab::Macros);
  Show(Tab::AtKeyboard);
  EXPECT_EQ(Find<QPlainTextEdit>("lblATKlartext").toPlainText(), QString());
  EXPECT_EQ(Text("lblAThexcode"), "228");
  Click("cmdATKlartextclear");
  EXPECT_EQ(Text("lblAThexcode"), "");
}

TEST_F(AtPageTest, APairCanBeTypedByCharacterOrCode) {
  StartOn(Tab::AtKeyboard);
  EXPECT_TRUE(TypeCell(0, AtList::OldKey, "A"));
  EXPECT_EQ(CellText(0, AtList::OldCode), "65");
  EXPECT_EQ(List().rowCount(), 1);
  EXPECT_TRUE(TypeCell(0, AtList::NewCode, "228"));
  EXPECT_EQ(CellText(0, AtList::NewKey), "ä");
  EXPECT_EQ(List().rowCount(), 2);
  // Typed below once more, the row above is overwritten.
  TypeCell(1, AtList::OldCode, "65");
  TypeCell(1, AtList::NewKey, "x");
  EXPECT_EQ(Pairs(), (AtPairs{{65, 120}}));
  TypeCell(1, AtList::OldKey, "B");
  TypeCell(1, AtList::NewKey, "y");
  Find<QTableView>("ctlATTabListe").setCurrentIndex(List().index(0, 0));
  Click("cmdATPaarEntfernen");
  EXPECT_EQ(Pairs(), (AtPairs{{66, 121}}));
}

TEST_F(AtPageTest, RefusesWhatIsNoKeyAndASecondRowForAKey) {
  StartOn(Tab::AtKeyboard);
  List().SetPairs({{65, 97}, {66, 98}});
  for (const auto& [column, text] :
       std::initializer_list<std::pair<int, const char*>>{{AtList::OldCode, "256"},
                                                          {AtList::OldCode, "-1"},
                                                          {AtList::OldCode, "x"},
                                                          {AtList::OldKey, "AB"},
                                                          {AtList::NewKey, "€"},
                                                          {AtList::OldCode, "65"}}) {
    const int beeps = person.beeps;
    EXPECT_FALSE(TypeCell(1, column, text)) << text;
    EXPECT_EQ(person.beeps, beeps + 1) << text;
  }
  EXPECT_EQ(InStatusBar(), "Für den Code 65 gibt es schon eine Zeile.");
  EXPECT_EQ(Pairs(), (AtPairs{{65, 97}, {66, 98}}));
}

TEST_F(AtPageTest, WarnsOfRowsOutOfOrderAndSendsThemAsTheyAre) {
  StartOn(Tab::AtKeyboard);
  EXPECT_FALSE(Find("lblATHinweis").isVisible());
  terminal.Answer("E?F", "1000;", kSoon);
  terminal.Answer("EWK0,43;", "\x06", kSoon);
  List().SetPairs({{67, 99}, {65, 97}});
  EXPECT_TRUE(Find("lblATHinweis").isVisible());
  Click("cmdSetATTab");
  EXPECT_EQ(Written(), ReadableText("\033E?F\033EWK0,43;\033EAK0;"));
  Click("cmdATSortieren");
  EXPECT_FALSE(Find("lblATHinweis").isVisible());
  EXPECT_EQ(Pairs(), (AtPairs{{65, 97}, {67, 99}}));
  EXPECT_TRUE(person.questions.empty());
}

TEST_F(AtPageTest, AnEmptyTableIsNeitherSentNorSaved) {
  StartOn(Tab::AtKeyboard);
  terminal.Answer("E?F", "1000;", kSoon);
  Click("cmdSetATTab");
  Trigger("mnuDateiSave");
  Trigger("mnuDateiSaveAsMakro");
  ASSERT_EQ(person.messages.size(), 3U);
  for (const auto& shown : person.messages) {
    EXPECT_EQ(shown.text, "Die Tabelle ist leer / CreateATTab");
  }
  EXPECT_EQ(port.written, "\033E?F");
  EXPECT_TRUE(person.prompts.empty());
}

TEST_F(AtPageTest, ReportsWhatTheTerminalDoesNotTake) {
  StartOn(Tab::AtKeyboard);
  List().SetPairs({{65, 97}});
  terminal.Answer("E?F", "7;", kSoon);
  Click("cmdSetATTab");
  EXPECT_EQ(person.LastMessage(), "nicht genügend Platz im EEprom");
  terminal.Answer("E?F", "1000;", kSoon);
  Click("cmdSetATTab");
  EXPECT_EQ(person.LastMessage(), "keine Reaktion / cmdSetATTab");
  Type("txtATTastNr", "5");
  terminal.Answer("EDK5;", "\x15", kSoon);
  Click("cmdClearATTast");
  EXPECT_EQ(person.LastMessage(), "Fehler beim EEPROM");
  terminal.Answer("EA?", "5,41,61;", kSoon);
  Click("cmdATRead");
  EXPECT_EQ(person.LastMessage(), "5,41,61");
  EXPECT_EQ(port.written.find("EAK"), std::string::npos);
}

TEST_F(AtPageTest, KeepsTablesAndShowsThemAgain) {
  StartOn(Tab::AtKeyboard);
  List().SetPairs({{65, 97}});
  Type("txtATTastNr", "4");
  person.inputs = {"Übung 'eins'"};
  Trigger("mnuDateiSave");
  EXPECT_EQ(person.prompts.back(), "Bezeichnung für diese Tastaturtabelle :|(neuer Name)");
  Trigger("mnuDateiNeu");
  EXPECT_EQ(Pairs(), AtPairs{});
  Choose("cboATTabBez", "Übung 'eins'");
  EXPECT_EQ(Pairs(), (AtPairs{{65, 97}}));
  EXPECT_EQ(Text("txtATTastNr"), "4");
  const std::string source = "select * from Makro where typ = 'ATTab'";
  EXPECT_EQ(Stored(source, "wert"), "\033EWK4,41,61;");
  EXPECT_EQ(Stored(source, "ausgang") + Stored(source, "eingang"), "00");
  Trigger("mnuBearbeitenloeschen");
  EXPECT_EQ(person.questions.back(), "Umkodiertabelle 'Übung 'eins'' löschen ?");
}

TEST_F(AtPageTest, WhatIsBeingTypedIsSaved) {
  StartOn(Tab::AtKeyboard);
  auto& list = Find<QTableView>("ctlATTabListe");
  list.setFocus();
  TypeCell(0, AtList::OldKey, "A");
  list.edit(List().index(0, AtList::NewKey));
  auto* const editor = list.viewport()->findChild<QLineEdit*>();
  ASSERT_EQ(QApplication::focusWidget(), editor);
  editor->setText(QStringLiteral("a"));
  person.inputs = {"eins"};
  Trigger("mnuDateiSave");
  EXPECT_EQ(Pairs(), (AtPairs{{65, 97}}));
  EXPECT_EQ(Chosen("cboATTabBez"), "eins");
}

}  // namespace
}  // namespace kelvo
