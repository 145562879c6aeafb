#include "bus/search_page.h"

#include <QAbstractItemModel>
#include <QShortcut>
#include <QSpinBox>
#include <QTableView>
#include <QTreeWidget>

#include "tests/fakes/simulated_terminal.h"
#include "tests/page_fixture.h"

namespace kelvo {
namespace {

using testing_world::milliseconds;

class SearchPageTest : public PageTest {
 protected:
  void Begin(std::initializer_list<sim::TerminalSetup> setups = {}) {
    for (const sim::TerminalSetup& setup : setups) {
      line.bus.Add(setup, fonts)->PowerOn(loop.Now());
    }
    port.characterTime = testing_world::nanoseconds(520'833);
    page = &Put(new SearchPage({exchange, loop, person, state, Records("Optionen"),
                                Records("select * from DOVU Order by Adresse"),
                                [this] {
                                  port.Close();
                                  return port.Open() == PortOk;
                                },
                                com1}));
    page->Refresh();
  }
  void Search(const char* last) {
    Type("txtmaxDovu", last);
    Click("cmdDovusuchen");
  }
  void QuickSearch(const char* last) {
    Type("txtmaxDovu", last);
    Click("cmdDovuSchnellsuche");
  }
  QTreeWidget& Results() { return Find<QTreeWidget>("ctlDovuSuchListe"); }
  std::string Result(int address) {
    const QTreeWidgetItem& item = *Results().topLevelItem(address);
    std::string text = item.checkState(0) == Qt::Checked ? "*" : "";
    for (int column = 0; column < 4; ++column) text += item.text(column).toStdString() + "|";
    return text;
  }
  QAbstractItemModel& List() { return *Find<QTableView>("ctlDovuListe").model(); }
  std::string Stored(int row) {
    std::string text;
    for (int column = 0; column < 4; ++column) {
      text += List().index(row, column).data().toString().toStdString() + "|";
    }
    return text;
  }
  bool Edit(int row, int column, const QVariant& value, int role = Qt::EditRole) {
    const bool stored = List().setData(List().index(row, column), value, role);
    QApplication::processEvents();
    return stored;
  }

  DeviceFonts fonts;
  testing_world::SimulatedLine line{loop, port};
  SearchPage* page = nullptr;
};

TEST_F(SearchPageTest, EachAddressHasItsRow) {
  Begin({{.address = 0}, {.version = "1.0", .address = 1}, {.address = 3}, {.address = 3}});
  Search("3");
  ASSERT_EQ(Results().topLevelItemCount(), 4);
  EXPECT_EQ(Result(0), "*(Anzeige Nr.0)|ok|?A0|ja|");
  EXPECT_EQ(Result(1), "*(Anzeige Nr.1)|ok|?A1|nein|");
  EXPECT_EQ(Result(2), "(Anzeige Nr.2)|nicht vorhanden|TimeOut|nein|");
  EXPECT_EQ(Result(3).substr(0, 31), "(Anzeige Nr.3)|Fehler/Kollision");
  EXPECT_EQ(Results().topLevelItem(3)->foreground(1).color(), QColor(255, 0, 0));
  EXPECT_TRUE(Results().topLevelItem(2)->toolTip(0).startsWith(QStringLiteral("Stille")));
  for (const int shown : {0, 3}) {
    EXPECT_TRUE(Results().topLevelItem(shown)->toolTip(0).contains(QStringLiteral("240 x 128")));
  }
  EXPECT_EQ(Text("lblDovuStand"),
            "Alle 4 Adressen gefragt: 2 gefunden, 1 Fehler/Kollision. "
            "Adresse 3: Dort antworten vermutlich mehrere Terminals zugleich.");
  Search("0");
  EXPECT_EQ(Results().topLevelItemCount(), 1);
}

TEST_F(SearchPageTest, LimitIsBroughtIntoItsRangeWhenItIsLeft) {
  Begin();
  EXPECT_EQ(Text("txtmaxDovu"), "253");
  const std::pair<const char*, const char*> cases[] = {
      {"256", "255"}, {"-3", "0"}, {"12a", "12"}, {"", "0"}, {"7.9", "7"}, {"255", "255"}};
  for (const auto& [typed, shown] : cases) {
    Type("txtmaxDovu", typed);
    Leave("txtmaxDovu");
    EXPECT_EQ(Text("txtmaxDovu"), shown);
  }
}

TEST_F(SearchPageTest, ResultsAreTakenOverOnceAndStayAsTheyAreStored) {
  Begin({{.address = 0}, {.version = "1.0", .address = 2}});
  Search("2");
  Click("cmdDovuUebernehmen");
  ASSERT_EQ(List().rowCount(), 2);
  EXPECT_EQ(Stored(0), "0|(Anzeige Nr.0)|ja|ja|");
  EXPECT_EQ(Stored(1), "2|(Anzeige Nr.2)|ja|nein|");
  Edit(1, 1, QStringLiteral("Halle 3, Tür"));
  Click("cmdDovuUebernehmen");
  EXPECT_EQ(List().rowCount(), 2);
  EXPECT_EQ(PageTest::Stored("DOVU", "Bezeichnung", 1), "Halle 3, Tür");
  EXPECT_EQ(Text("lblDovuStand"), "0 übernommen, 2 waren schon gespeichert.");
}

TEST_F(SearchPageTest, StoredTerminalsAreEditedInPlace) {
  Sql("insert into DOVU values (3, 'a', 1, 1), (9, 'b', 1, 1)");
  Begin();
  EXPECT_TRUE(Edit(1, 1, QStringLiteral("Pult")));
  EXPECT_TRUE(Edit(1, 2, Qt::Unchecked, Qt::CheckStateRole));
  for (const char* address : {"255", "0"}) EXPECT_TRUE(Edit(1, 0, QString::fromUtf8(address)));
  EXPECT_EQ(PageTest::Stored("DOVU", "Bezeichnung", 1), "Pult");
  EXPECT_EQ(PageTest::Stored("DOVU", "aktiv", 1), "0");
  EXPECT_EQ(PageTest::Stored("DOVU", "Checksum", 1), "1");
  EXPECT_TRUE(Edit(1, 3, Qt::Unchecked, Qt::CheckStateRole));
  EXPECT_EQ(PageTest::Stored("DOVU", "Adresse", 1), "0");
  for (const char* address : {"256", "-1", "", "x", "3"}) {
    EXPECT_FALSE(Edit(1, 0, QString::fromUtf8(address))) << address;
    EXPECT_NE(person.LastMessage().find("Adresse"), std::string::npos);
    person.messages.clear();
  }
  EXPECT_EQ(PageTest::Stored("DOVU", "Adresse", 1), "0");
  // A refused one ends the action that was about to begin, and the list keeps the keys.
  auto& list = Find<QTableView>("ctlDovuListe");
  list.setFocus();
  list.edit(List().index(1, 0));
  qobject_cast<QLineEdit*>(QApplication::focusWidget())->setText(QStringLiteral("256"));
  Click("cmdDovuNeu");
  EXPECT_TRUE(person.prompts.empty());
  EXPECT_TRUE(list.hasFocus());
  page->Refresh();
  EXPECT_EQ(Stored(0), "0|Pult|nein|nein|");
}

TEST_F(SearchPageTest, TerminalIsAddedByHandUnlessItsAddressIsBadOrTaken) {
  Sql("insert into DOVU values (0, 'a', 1, 1), (9, 'b', 1, 1)");
  Begin();
  person.inputs = {"5", "Pult"};
  Click("cmdDovuNeu");
  EXPECT_EQ(person.prompts[0], "Adresse des neuen Terminals (0 … 255)|1");
  EXPECT_EQ(Stored(1), "5|Pult|ja|ja|");
  EXPECT_EQ(Find<QTableView>("ctlDovuListe").currentIndex().row(), 1);
  for (const char* address : {"9", "256", "x"}) {
    person.messages.clear();
    person.inputs = {address, "Pult"};
    Click("cmdDovuNeu");
    QApplication::processEvents();
    EXPECT_NE(person.LastMessage().find("Adresse"), std::string::npos) << address;
  }
  person.inputs = {"7", std::nullopt};
  Click("cmdDovuNeu");
  EXPECT_EQ(List().rowCount(), 3);
}

TEST_F(SearchPageTest, AllAreDeletedAfterAQuestion) {
  Sql("insert into DOVU values (3, 'a', 1, 1), (9, 'b', 1, 1)");
  Begin();
  Click("cmdClearDovuData");
  EXPECT_EQ(List().rowCount(), 2);
  person.answers = {true};
  Click("cmdClearDovuData");
  EXPECT_EQ(List().rowCount(), 0);
  EXPECT_EQ(person.questions.size(), 2U);
}

TEST_F(SearchPageTest, SearchShowsItsProgressAndCanBeStopped) {
  Begin({{.address = 0}});
  std::string progress;
  loop.After(milliseconds(1400), [&] {
    EXPECT_FALSE(Find("cmdDovusuchen").isEnabled());
    EXPECT_FALSE(Find("cmdDovuUebernehmen").isEnabled());
    EXPECT_FALSE(Find("cmdClearDovuData").isEnabled());
    EXPECT_TRUE(Find("cmdDovuAbbrechen").hasFocus());
    auto& bar = Find<QProgressBar>("ctlDovuFortschritt");
    progress = bar.format().toStdString();
    Q_EMIT page->findChild<QShortcut*>()->activated();
  });
  Find("cmdDovusuchen").setFocus();
  Search("99");
  EXPECT_TRUE(Find("cmdDovusuchen").hasFocus());
  EXPECT_EQ(progress.substr(0, 61),
            "Adresse 3 von 99, 1 gefunden, 0 Fehler/Kollision, noch etwa 3");
  EXPECT_EQ(Results().topLevelItemCount(), 4);
  EXPECT_TRUE(Find("cmdDovusuchen").isEnabled());
  EXPECT_TRUE(Find("cmdDovuUebernehmen").isEnabled());
  EXPECT_EQ(tmrTimeout.Interval(), milliseconds(1000));
}

TEST_F(SearchPageTest, ResultIsExportedAsText) {
  Begin({{.address = 0}});
  Search("1");
  person.file = folder.Path("suche.txt");
  Click("cmdDovuExport");
  const std::string text = testing_world::ReadFile(folder.Path("suche.txt"));
  EXPECT_NE(text.find("(Anzeige Nr.0)\tok\t?A0\tja\t"), std::string::npos) << text;
  EXPECT_NE(text.find("(Anzeige Nr.1)\tnicht vorhanden\tTimeOut\tnein\tStille"), std::string::npos);
  person.file = folder.Path("no/such/folder.txt");
  Click("cmdDovuExport");
  EXPECT_NE(person.LastMessage().find("kann nicht geschrieben werden"), std::string::npos);
}

TEST_F(SearchPageTest, QuickSearchShowsTheSameAndCorrectsWhatWasDoubtful) {
  Begin(
      {{.address = 0}, {.address = 2}, {.address = 2}, {.address = 3, .fault = sim::Fault::Slow}});
  QuickSearch("5");
  std::string quick;
  for (int address = 0; address <= 5; ++address) quick += Result(address);
  EXPECT_EQ(Results().topLevelItemCount(), 6);
  Search("5");
  std::string usual;
  for (int address = 0; address <= 5; ++address) usual += Result(address);
  EXPECT_EQ(quick, usual);
  QuickSearch("0");
  EXPECT_EQ(Text("lblDovuStand"), "Alle 1 Adressen gefragt: 1 gefunden, 0 Fehler/Kollision.");
}

}  // namespace
}  // namespace kelvo
