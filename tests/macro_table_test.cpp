#include <QListWidget>
#include <QSplitter>
#include <QTableView>
#include <QTest>

#include "settings/macro_edit.h"
#include "settings/macro_page.h"
#include "tests/page_fixture.h"
#include "tests/test_fonts.h"

namespace kelvo {
namespace {

class MacroTableTest : public PageTest {
 protected:
  void StartOnPage() {
    page = &Put(new MacroPage(
        {exchange, person, state, Records("Makro"), Records("Default"), TestFonts()}));
    page->Records().SelectFirst();
    QApplication::processEvents();
  }
  QTableView& Table() { return Find<QTableView>("tblMakros"); }
  // The rows as the operator sees them.
  std::vector<std::string> Column(int column) {
    QApplication::processEvents();
    std::vector<std::string> cells;
    for (int row = 0; row < Table().model()->rowCount(); ++row) {
      cells.push_back(Table().model()->index(row, column).data().toString().toStdString());
    }
    return cells;
  }
  std::vector<std::string> Names() { return Column(MacroTableModel::Name); }
  std::string Current() {
    QApplication::processEvents();
    return Table().currentIndex().siblingAtColumn(0).data().toString().toStdString();
  }
  void Press(const char* name, Qt::Key key) { QTest::keyClick(&Find(name), key); }
  void Sort(int column, Qt::SortOrder order) { Table().sortByColumn(column, order); }

  using Strings = std::vector<std::string>;
  MacroPage* page = nullptr;
};

TEST_F(MacroTableTest, FollowsTheListAndTheListFollowsIt) {
  Sql("insert into Makro (typ, Bezeichnung, wert) values ('ATTab', 'Tabelle', 'x')");
  StartOnPage();
  EXPECT_EQ(Names(), (Strings{"Begrüßung", "Rahmen", "Display löschen", "Tabelle"}));
  EXPECT_EQ(Column(MacroTableModel::Kind).back(), "AT");
  EXPECT_EQ(Column(MacroTableModel::Number), (Strings{"1", "2", "3", ""}));
  EXPECT_EQ(Column(MacroTableModel::Length).at(2), "3");
  Choose("cboMakro", "Rahmen");
  EXPECT_EQ(Current(), "Rahmen");
  Press("tblMakros", Qt::Key_Down);
  EXPECT_EQ(Chosen("cboMakro"), "Display löschen");
  EXPECT_EQ(Editor("txtMakro"), "\x1bGC");
  Type("txtMakro", "neu");
  EXPECT_EQ(Current(), "* Display löschen");
  Press("tblMakros", Qt::Key_Up);
  Press("tblMakros", Qt::Key_Down);
  EXPECT_EQ(Editor("txtMakro"), "neu");
  Click("cmdMakroVerwerfen");
  EXPECT_EQ(Current(), "Display löschen");
  Click("chkMakroTyp_3");
  EXPECT_EQ(Names(), Strings{"Tabelle"});
  Click("chkMakroTyp_4");
  EXPECT_EQ(Names(), Strings{});
}

TEST_F(MacroTableTest, WhatIsStoredDeletedAndTakenBackIsSeen) {
  StartOnPage();
  page->NewMakro();
  Type("txtMakro", "\x1bGC\x1bGC");
  Type("txtMakroNr", "12");
  person.inputs = {"Zwölf"};
  page->SaveShown();
  EXPECT_EQ(Names().back() + Column(MacroTableModel::Number).back(), "Zwölf12");
  Press("tblMakros", Qt::Key_Return);
  EXPECT_TRUE(Find("txtMakro").hasFocus());
  person.answers = {false, true};
  Press("tblMakros", Qt::Key_Delete);
  EXPECT_EQ(Names().size(), 4u);
  Press("tblMakros", Qt::Key_Delete);
  EXPECT_EQ(person.questions.back(), "Makro 'Zwölf' löschen ?");
  EXPECT_EQ(Names().size(), 3u);
  person.Done().Undo();
  EXPECT_EQ(Current(), "Zwölf");
  Sql("update Makro set wert = 'xy' where Bezeichnung = 'Rahmen'");
  page->Shown();
  EXPECT_EQ(Column(MacroTableModel::Length).at(1), "2");
  EXPECT_EQ(Written(), "");
}

TEST_F(MacroTableTest, IsSearchedAndSorted) {
  Sql("insert into Makro (typ, Bezeichnung, nr_im_display, wert) values "
      "('Makro', 'Bild 10', 20, 'Ofen'), ('Makro', 'bild 9', 3, ''), ('Makro', 'Äpfel', 4, '')");
  StartOnPage();
  Sort(MacroTableModel::Name, Qt::AscendingOrder);
  EXPECT_EQ(Names(),
            (Strings{"Äpfel", "Begrüßung", "bild 9", "Bild 10", "Display löschen", "Rahmen"}));
  EXPECT_EQ(Current(), "Begrüßung");
  Sort(MacroTableModel::Number, Qt::DescendingOrder);
  EXPECT_EQ(Names().front(), "Bild 10");
  Sort(-1, Qt::AscendingOrder);
  EXPECT_EQ(Names().front(), "Begrüßung");
  auto& search = Find<QLineEdit>("txtMakroSuche");
  QTest::keyClick(page, Qt::Key_F, Qt::ControlModifier);
  EXPECT_TRUE(search.hasFocus());
  const std::pair<const char*, Strings> searches[] = {
      {"BILD", {"Bild 10", "bild 9"}}, {"ofen", {"Bild 10"}}, {"ÄPF", {"Äpfel"}}, {"qq", {}}};
  for (const auto& [text, names] : searches) {
    search.setText(QString::fromUtf8(text));
    EXPECT_EQ(Names(), names) << text;
  }
  EXPECT_EQ(Text("lblMakroAnzahl"), "0 von 6");
  EXPECT_EQ(Chosen("cboMakro"), "Begrüßung");  // a search alone shows nothing else
  search.setText("ild");
  Press("txtMakroSuche", Qt::Key_Down);
  EXPECT_EQ(Chosen("cboMakro"), "Bild 10");
  Press("txtMakroSuche", Qt::Key_Escape);
  EXPECT_EQ(Names().size(), 6u);
  EXPECT_EQ(Current(), "Bild 10");
}

TEST_F(MacroTableTest, SaysHowTheTextsStandToTheTerminal) {
  StartOnPage();
  EXPECT_EQ(Column(MacroTableModel::Terminal), Strings(3, "unbekannt"));
  InTerminal second = InTerminal::Same;
  page->SetInTerminal([&second](const MacroInQuestion& record) {
    if (record.typ != "Makro") return InTerminal::Unknown;
    if (record.number == 2) return second;
    return record.wire == "\x1bGC" ? InTerminal::Changed : InTerminal::Absent;
  });
  EXPECT_EQ(Column(MacroTableModel::Terminal), (Strings{"nicht", "gleich", "geändert"}));
  second = InTerminal::Unknown;
  page->TerminalChanged();
  EXPECT_EQ(Column(MacroTableModel::Terminal).at(1), "unbekannt");
}

TEST_F(MacroTableTest, MacrosAreFoundByTheirNumbersWhateverTheListShows) {
  StartOnPage();
  Type("txtMakro",
       "\x1b"
       "ECM2;\x1b"
       "ECM77;");
  QApplication::processEvents();
  auto& remarks = Find<QListWidget>("lstMakroHinweise");
  Click("chkMakroTyp_2");
  Type("txtMakro",
       "\x1b"
       "ECM2;\x1b"
       "ECM77;");
  QApplication::processEvents();
  ASSERT_EQ(remarks.count(), 1);
  EXPECT_NE(remarks.item(0)->text().indexOf("Makro 77"), -1);
}

TEST_F(MacroTableTest, ThousandsOfRecordsAreNoTrouble) {
  Sql("with recursive n(i) as (select 1 union all select i + 1 from n where i < 5000) "
      "insert into Makro (typ, Bezeichnung, nr_im_display, wert) "
      "select 'Makro', 'Text ' || i, i % 256, hex(zeroblob(100)) from n");
  StartOnPage();
  EXPECT_EQ(Names().size(), 5003u);
  Find<QLineEdit>("txtMakroSuche").setText("text 499");
  EXPECT_EQ(Names().size(), 11u);
  page->Shown();
  EXPECT_EQ(Names().size(), 11u);
}

TEST_F(MacroTableTest, TheDivisionOfThePageIsRemembered) {
  StartOnPage();
  page->resize(1000, 640);
  auto& panes = Find<QSplitter>("splMakros");
  panes.setSizes({0, 900});
  const QByteArray arrangement = page->Arrangement();
  panes.setSizes({300, 600});
  page->Arrange(arrangement);
  EXPECT_EQ(panes.sizes().front(), 0);
  page->Arrange("nonsense");
  page->Arrange({});
  EXPECT_EQ(panes.sizes().front(), 0);
}

}  // namespace
}  // namespace kelvo
