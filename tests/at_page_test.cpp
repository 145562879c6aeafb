#include <QKeyEvent>
#include <QTableView>

#include "keyboards/at_list.h"
#include "keyboards/at_page.h"
#include "tests/page_fixture.h"
#include "widgets/handlers.h"

namespace kelvo {
namespace {

using testing_world::milliseconds;

class AtPageTest : public PageTest {
 protected:
  void StartOnPage() {
    page = &Put(new AtPage({exchange, com1, loop, person, state, Records(kTables)}));
    QObject::connect(page, &AtPage::Hint,
                     [this](const QString& text) { hint = text.toStdString(); });
    page->Records().SelectFirst();
    page->Shown();
  }
  static constexpr milliseconds kSoon{100};
  static constexpr char kTables[] = "select * from Makro where typ = 'ATTab'";

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

  AtPage* page = nullptr;
  std::string hint;  ///< the last one
};

TEST_F(AtPageTest, LearnsPairsOfKeys) {
  StartOnPage();
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
  loop.After(kSoon * 3, [&] { port.Arrive("B"); });
  loop.After(kSoon * 4, [&] { port.Arrive("\033"); });
  loop.After(kSoon * 5, [&] { port.Arrive("A"); });
  loop.After(kSoon * 6, [&] { port.Arrive("b"); });
  loop.After(kSoon * 7, [&] { port.Arrive("\xC4"); });
  loop.After(kSoon * 8, [&] { Click("cmdATumkodierenEnde"); });
  EXPECT_EQ(Learn(), kSoon * 8);
  EXPECT_EQ(Pairs(), (AtPairs{{65, 98}, {66, 27}}));
  EXPECT_EQ(CellText(1, 3), "27");
  EXPECT_EQ(List().rowCount(), 3);
  ExpectUsable();
}

TEST_F(AtPageTest, AKeyThatSendsSeveralCharactersCountsAsItsFirst) {
  StartOnPage();
  loop.After(kSoon, [&] {
    port.Arrive("\033");
    port.ArriveAfter(milliseconds(1), "[A");  // while the gap behind the first still runs
  });
  loop.After(kSoon * 2, [&] {
    EXPECT_EQ(Text("lblATalterCode"), "←[A / 27");
    port.Arrive("x");
    port.ArriveAfter(kSoon / 2, "\033[B");  // pressed before the next pair begins
  });
  loop.After(kSoon * 4, [&] { port.Arrive("A"); });
  loop.After(kSoon * 5, [&] { port.Arrive("a"); });
  loop.After(kSoon * 6, [&] { Click("cmdATumkodierenEnde"); });
  Learn();
  EXPECT_EQ(Pairs(), (AtPairs{{27, 'x'}, {'A', 'a'}}));
}

TEST_F(AtPageTest, OthersMaySpeakWhileItLearns) {
  StartOnPage();
  QPushButton other;
  bool spoken = false;
  ConnectClick(&other, person, Speaks::Yes, [&] { spoken = true; });
  loop.After(kSoon, [&] {
    other.click();
    EXPECT_TRUE(spoken);
  });
  loop.After(kSoon * 2, [&] { Click("cmdATumkodierenEnde"); });
  Learn();
}

TEST_F(AtPageTest, RowsThatAreNotStoredAreNotWipedUnasked) {
  StartOnPage();
  List().SetPairs({{65, 97}});
  Learn();
  EXPECT_EQ(Pairs(), (AtPairs{{65, 97}}));
  EXPECT_EQ(person.questions.size(), 1U);
  person.inputs = {"eins"};
  page->SaveATTab();
  loop.After(kSoon, [&] { Click("cmdATumkodierenEnde"); });
  Learn();
  EXPECT_EQ(Pairs(), AtPairs{});
  EXPECT_EQ(person.questions.size(), 1U);
}

TEST_F(AtPageTest, LearningEndsAtOnceWithWhateverEndsIt) {
  const std::pair<const char*, std::function<void()>> ends[] = {
      {"fertig", [&] { Click("cmdATumkodierenEnde"); }},
      {"another page", [&] { page->Left(); }},
      {"the test page", [&] { Find<QTabWidget>("cmdATTab").setCurrentIndex(0); }},
      {"a new table", [&] { page->NewATTab(); }},
      {"the program ends", [&] { loop.closing = true; }},
      {"the line is lost", [&] { port.Lose(); }}};
  StartOnPage();
  for (const auto& [name, end] : ends) {
    SCOPED_TRACE(name);
    page->Shown();
    // In the middle of a pair.
    loop.After(kSoon, [&] { port.Arrive("A"); });
    loop.After(kSoon * 2, end);
    EXPECT_EQ(Learn(), kSoon * 2);
    EXPECT_EQ(Pairs(), AtPairs{});
    loop.closing = false;
    ExpectUsable();
  }
}

TEST_F(AtPageTest, ReceiveEventsAreOffWhileLearningAndOnAgainOnTheTestPage) {
  StartOnPage();
  loop.After(kSoon, [&] { EXPECT_EQ(port.ReceiveThreshold(), 0); });
  loop.After(kSoon * 2, [&] { Click("cmdATumkodierenEnde"); });
  Learn();
  EXPECT_EQ(port.ReceiveThreshold(), 0);
  Find<QTabWidget>("cmdATTab").setCurrentIndex(0);
  EXPECT_EQ(port.ReceiveThreshold(), 1);
  loop.After(kSoon, [&] { page->Left(); });
  Learn();
  EXPECT_EQ(port.ReceiveThreshold(), 1);
}

TEST_F(AtPageTest, WithAClosedPortThereIsNothingToLearnFrom) {
  StartOnPage();
  port.Close();
  Learn();
  EXPECT_EQ(portsWanted, 1);
  EXPECT_EQ(Find<QTabWidget>("cmdATTab").currentIndex(), 0);
}

TEST_F(AtPageTest, ShowsWhatTheKeyboardSends) {
  StartOnPage();
  port.Arrive("a\xE4");
  EXPECT_EQ(Find<QPlainTextEdit>("lblATKlartext").toPlainText().toStdString(), "aä");
  EXPECT_EQ(Text("lblAThexcode"), "228");
  page->Left();
  page->Shown();
  EXPECT_EQ(Find<QPlainTextEdit>("lblATKlartext").toPlainText(), QString());
  EXPECT_EQ(Text("lblAThexcode"), "228");
  Click("cmdATKlartextclear");
  EXPECT_EQ(Text("lblAThexcode"), "");
}

TEST_F(AtPageTest, APairCanBeTypedByCharacterOrCode) {
  StartOnPage();
  std::string titles;
  for (int column = 0; column < 4; ++column) {
    titles += List().headerData(column, Qt::Horizontal, Qt::DisplayRole).toString().toStdString();
  }
  EXPECT_EQ(titles, "TasteHex-CodeTasteHex-Code");
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
  StartOnPage();
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
  EXPECT_EQ(hint, "Für den Code 65 gibt es schon eine Zeile.");
  EXPECT_EQ(Pairs(), (AtPairs{{65, 97}, {66, 98}}));
}

TEST_F(AtPageTest, WarnsOfRowsOutOfOrderAndSendsThemAsTheyAre) {
  StartOnPage();
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
  StartOnPage();
  terminal.Answer("E?F", "1000;", kSoon);
  Click("cmdSetATTab");
  page->SaveATTab();
  EXPECT_FALSE(page->ShownTable());
  ASSERT_EQ(person.messages.size(), 3U);
  for (const auto& shown : person.messages) {
    EXPECT_EQ(shown.text, "Die Tabelle ist leer / CreateATTab");
  }
  EXPECT_EQ(port.written, "\033E?F");
  EXPECT_TRUE(person.prompts.empty());
}

TEST_F(AtPageTest, ReportsWhatTheTerminalDoesNotTake) {
  StartOnPage();
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
  const AtPairs before = Pairs();
  Click("cmdATUebernehmen");
  EXPECT_EQ(Pairs(), (AtPairs{{65, 97}}));
  person.Done().Undo();
  EXPECT_EQ(Pairs(), before);
  terminal.Answer("EA?", "leer;", kSoon);
  Click("cmdATRead");
  EXPECT_FALSE(Find("cmdATUebernehmen").isEnabled());
  EXPECT_EQ(port.written.find("EAK"), std::string::npos);
}

TEST_F(AtPageTest, KeepsTablesAndShowsThemAgain) {
  StartOnPage();
  List().SetPairs({{65, 97}});
  Type("txtATTastNr", "4");
  person.inputs = {"Übung 'eins'"};
  page->SaveATTab();
  EXPECT_EQ(person.prompts.back(), "Bezeichnung für diese Tastaturtabelle :|(neuer Name)");
  page->NewATTab();
  EXPECT_EQ(Pairs(), AtPairs{});
  Choose("cboATTabBez", "Übung 'eins'");
  EXPECT_EQ(Pairs(), (AtPairs{{65, 97}}));
  EXPECT_EQ(Text("txtATTastNr"), "4");
  EXPECT_EQ(Stored(kTables, "wert"), "\033EWK4,41,61;");
  EXPECT_EQ(Stored(kTables, "ausgang") + Stored(kTables, "eingang"), "00");
  page->DeleteTable();
  EXPECT_EQ(person.questions.back(), "Umkodiertabelle 'Übung 'eins'' löschen ?");
}

TEST_F(AtPageTest, WhatIsBeingTypedIsSaved) {
  StartOnPage();
  auto& list = Find<QTableView>("ctlATTabListe");
  list.setFocus();
  TypeCell(0, AtList::OldKey, "A");
  list.edit(List().index(0, AtList::NewKey));
  auto* const editor = list.viewport()->findChild<QLineEdit*>();
  ASSERT_EQ(QApplication::focusWidget(), editor);
  editor->setText(QStringLiteral("a"));
  person.inputs = {"eins"};
  EXPECT_TRUE(FinishEditing());
  page->SaveATTab();
  EXPECT_EQ(Pairs(), (AtPairs{{65, 97}}));
  EXPECT_EQ(Chosen("cboATTabBez"), "eins");
  // What is no code is refused before anything begins.
  list.edit(List().index(0, AtList::NewCode));
  qobject_cast<QLineEdit*>(QApplication::focusWidget())->setText(QStringLiteral("999"));
  Forget();
  Click("cmdSetATTab");
  EXPECT_EQ(Written(), "");
  EXPECT_EQ(hint, "Ein Code ist eine Zahl von 0 bis 255.");
  EXPECT_TRUE(list.hasFocus());
}

TEST_F(AtPageTest, AHalfTypedRowIsNeitherSentNorLost) {
  StartOnPage();
  List().SetPairs({{65, 97}});
  TypeCell(1, AtList::OldKey, "B");
  page->SaveATTab();
  Click("cmdSetATTab");
  EXPECT_FALSE(page->ShownTable());
  EXPECT_EQ(Written(), "");
  EXPECT_TRUE(person.prompts.empty());
  EXPECT_EQ(person.beeps, 3);
  EXPECT_EQ(Find<QTableView>("ctlATTabListe").currentIndex(), List().index(1, AtList::NewKey));
}

TEST_F(AtPageTest, RowsAreSavedInAFormThatHoldsThem) {
  StartOnPage();
  List().SetPairs({{200, 1}, {65, 97}, {70, 70}, {0, 255}});
  person.inputs = {"eins", "eins"};
  page->SaveATTab();
  EXPECT_EQ(Pairs(), (AtPairs{{0, 255}, {65, 97}, {70, 70}, {200, 1}}));
  EXPECT_NE(person.questions.at(0).find(": 70."), std::string::npos);
  person.answers = {true};
  page->SaveATTab();
  EXPECT_EQ(Pairs(), (AtPairs{{0, 255}, {65, 97}, {200, 1}}));
  EXPECT_TRUE(page->Records().DraftNames().empty());
  EXPECT_EQ(ReadAtTable(Stored(kTables, "wert")), Pairs());
  // A draft that is saved when the program ends.
  const std::string count = Stored(kTables, "lfdnr");
  List().SetPairs({{67, 99}, {65, 97}});
  EXPECT_TRUE(page->Records().SaveDrafts());
  EXPECT_EQ(ReadAtTable(Stored(kTables, "wert")), (AtPairs{{65, 97}, {67, 99}}));
  EXPECT_EQ(Stored(kTables, "lfdnr"), count);
}

TEST_F(AtPageTest, TabAndArrowsGoFromCellToCell) {
  StartOnPage();
  auto& list = Find<QTableView>("ctlATTabListe");
  list.setFocus();
  list.setCurrentIndex(List().index(0, AtList::OldKey));
  const auto press = [](int key, const char* text = "") {
    QKeyEvent event(QEvent::KeyPress, key, Qt::NoModifier, QString::fromUtf8(text));
    QApplication::sendEvent(QApplication::focusWidget(), &event);
    QApplication::processEvents();
  };
  for (const char* letter : {"q", "w", "e", "r"}) {
    press(0, letter);
    press(Qt::Key_Tab);
    press(Qt::Key_Tab);
  }
  EXPECT_EQ(Pairs(), (AtPairs{{'q', 'w'}, {'e', 'r'}}));
  EXPECT_EQ(list.currentIndex(), List().index(2, AtList::OldKey));
  press(Qt::Key_Up);
  press(Qt::Key_Right);
  press(Qt::Key_Right);
  press(0, "x");
  press(Qt::Key_Up);
  EXPECT_EQ(Pairs(), (AtPairs{{'q', 'w'}, {'e', 'x'}}));
  EXPECT_EQ(list.currentIndex(), List().index(0, AtList::NewKey));
}

}  // namespace
}  // namespace kelvo
