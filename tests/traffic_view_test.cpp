#include <QAbstractItemView>
#include <QClipboard>
#include <QHeaderView>
#include <QMessageBox>
#include <QTableView>
#include <QWindow>

#include "shell/traffic_view.h"
#include "tests/window_fixture.h"

namespace kelvo {
namespace {

using testing_world::milliseconds;

class TrafficViewTest : public WindowTest {
 protected:
  QAbstractItemModel& Table() { return *Find<QTableView>("ctlVerkehr").model(); }
  std::string Cell(int row, int column) {
    return Table().index(row, column).data().toString().toStdString();
  }
  std::string Row(int row) {
    return Cell(row, TrafficModel::Meaning) + "|" + Cell(row, TrafficModel::Took) + "|" +
           Cell(row, TrafficModel::Result) + "|" + Cell(row, TrafficModel::Hex);
  }
  void Ask() { Click("cmdGetAdresse"); }
};

TEST_F(TrafficViewTest, OpensOnWhatHasBeenAndGoesOn) {
  Start();
  terminal.Answer("\x1b?A", "?A5;", milliseconds(30));
  Ask();
  Trigger("mnuAnsichtDatenverkehr");
  ASSERT_EQ(Table().rowCount(), 2);
  EXPECT_EQ(Row(0), "Adresse abfragen|||1B 3F 41");
  EXPECT_EQ(Row(1), "↳ Adresse abfragen|30,0 ms|beantwortet|3F 41 35 3B");
  loop.After(milliseconds(40), [&] { EXPECT_EQ(Table().rowCount(), 4); });
  Ask();
  EXPECT_EQ(Table().rowCount(), 4);
  Click("cmdVerkehrPause");
  Ask();
  EXPECT_EQ(Table().rowCount(), 4);
  EXPECT_EQ(Text("lblVerkehr"), "4 von 6 Einträgen – Pause");
  Click("cmdVerkehrPause");
  EXPECT_EQ(Table().rowCount(), 6);
  Find("frmDatenverkehr").hide();
  Ask();
  Trigger("mnuAnsichtDatenverkehr");
  EXPECT_EQ(Table().rowCount(), 8);
}

TEST_F(TrafficViewTest, ShowsWhatIsChosenAndLeadsToTheLastFailure) {
  Start();
  Trigger("mnuAnsichtDatenverkehr");
  Click("cmdVerkehrStoerung");
  EXPECT_EQ(Text("lblVerkehr"), "Keine Störung ist aufgezeichnet.");
  Ask();
  EXPECT_EQ(Row(0), "Adresse abfragen|500,0 ms|⚠ keine Antwort|1B 3F 41");
  terminal.Answer("\x1b?A", "?A5;");
  Ask();
  Click("cmdDovuAktivieren");
  const std::pair<const char*, int> kinds[] = {{"Abfragen", 3},
                                               {"bestätigte Befehle", 0},
                                               {"übrige Befehle", 1},
                                               {"unverlangt Empfangenes", 0},
                                               {"nur Störungen", 1}};
  for (const auto& [kind, rows] : kinds) {
    Choose("cboVerkehrArt", kind);
    EXPECT_EQ(Table().rowCount(), rows) << kind;
  }
  Choose("cboVerkehrRichtung", "Terminal → PC");
  EXPECT_EQ(Table().rowCount(), 0);
  Click("cmdVerkehrAlles");
  EXPECT_EQ(Table().rowCount(), 4);
  // A question and its answer stay together.
  Type("txtVerkehrFilter", "41 35");
  EXPECT_EQ(Table().rowCount(), 2);
  Ask();
  EXPECT_EQ(Table().rowCount(), 4);
  Type("txtVerkehrFilter", "1B 3F");
  EXPECT_EQ(Table().rowCount(), 5);
  EXPECT_TRUE(Find("cmdVerkehrAlles").isEnabled());
  Click("cmdVerkehrLeeren");
  window->ShowTraffic(frmhaupt::TrafficAt::LastFailure);  // neither hides it
  EXPECT_EQ(Find<QTableView>("ctlVerkehr").currentIndex().row(), 0);
  EXPECT_EQ(Table().rowCount(), 6);
  EXPECT_FALSE(Find("cmdVerkehrAlles").isEnabled());
  Click("cmdVerkehrLeeren");
  EXPECT_EQ(Table().rowCount(), 0);
  Ask();
  EXPECT_EQ(Text("lblVerkehr"), "2 von 8 Einträgen, ältere ausgeblendet");
}

// Beside a box only its own windows can be used and come to the front.
TEST_F(TrafficViewTest, BelongsToTheBoxThatItIsOpenedFrom) {
  Start();
  Trigger("mnuAnsichtDatenverkehr");
  const auto owner = [this] { return Find("frmDatenverkehr").windowHandle()->transientParent(); };
  EXPECT_EQ(owner(), window->windowHandle());
  {
    QMessageBox box(window.get());
    box.open();
    window->ShowTraffic(frmhaupt::TrafficAt::LastFailure);
    EXPECT_EQ(owner(), box.windowHandle());
    EXPECT_TRUE(Find("frmDatenverkehr").isVisible());
  }
  Trigger("mnuAnsichtDatenverkehr");
  EXPECT_EQ(owner(), window->windowHandle());
}

TEST_F(TrafficViewTest, ALostDeviceIsTheLastFailureThatIsRecorded) {
  Start();
  Ask();
  loop.RunFor(milliseconds(60'000));
  port.Lose();
  window->ShowTraffic(frmhaupt::TrafficAt::LastFailure);
  ASSERT_EQ(Table().rowCount(), 2);
  EXPECT_EQ(Find<QTableView>("ctlVerkehr").currentIndex().row(), 1);
  EXPECT_EQ(Row(1), "Verbindung verloren: Das Gerät ist verschwunden||⚠ Anschluss geschlossen|");
  Choose("cboVerkehrArt", "Abfragen");
  EXPECT_EQ(Table().rowCount(), 1);
  Click("cmdVerkehrAlles");
  person.file = folder.Path("traffic.txt");
  Click("cmdVerkehrSpeichern");
  Click("cmdVerkehrOeffnen");
  EXPECT_EQ(Row(1), "Verbindung verloren: Das Gerät ist verschwunden||⚠ Anschluss geschlossen|");
}

TEST_F(TrafficViewTest, SavedTrafficIsOpenedAgain) {
  Start();
  terminal.Answer("\x1b?A", "?A5;", milliseconds(30));
  Ask();
  Trigger("mnuAnsichtDatenverkehr");
  person.file = folder.Path("traffic.txt");
  Click("cmdVerkehrSpeichern");
  EXPECT_EQ(Text("lblVerkehr"), "Gespeichert: " + *person.file);
  Find<QTableView>("ctlVerkehr").selectRow(1);
  Click("cmdVerkehrKopieren");
  EXPECT_EQ(QApplication::clipboard()->text().count(u'\n'), 1);
  Ask();
  Click("cmdVerkehrOeffnen");
  Ask();  // goes on behind the file
  EXPECT_EQ(Table().rowCount(), 2);
  EXPECT_EQ(Row(1), "↳ Adresse abfragen|30,0 ms|beantwortet|3F 41 35 3B");
  EXPECT_TRUE(Find("frmDatenverkehr").windowTitle().endsWith(QStringLiteral("traffic.txt")));
  Click("cmdVerkehrLeitung");
  EXPECT_EQ(Table().rowCount(), 6);
  Click("cmdVerkehrOeffnen");
  terminal.Answer("\x1b?A", "");
  Ask();
  Find("frmDatenverkehr").showMinimized();
  window->ShowTraffic(frmhaupt::TrafficAt::LastFailure);
  EXPECT_FALSE(Find("frmDatenverkehr").isMinimized());
  EXPECT_EQ(Row(Find<QTableView>("ctlVerkehr").currentIndex().row()),
            "Adresse abfragen|500,0 ms|⚠ keine Antwort|1B 3F 41");
  EXPECT_EQ(Table().rowCount(), 7);
  person.file = folder.Path("kelvo.mdb");
  Click("cmdVerkehrOeffnen");
  EXPECT_NE(person.LastMessage().find("keinen gespeicherten"), std::string::npos);
  person.file = folder.Path("no/such/folder.txt");
  Click("cmdVerkehrSpeichern");
  EXPECT_NE(person.LastMessage().find("nicht geschrieben"), std::string::npos);
  EXPECT_EQ(Table().rowCount(), 7);
}

TEST_F(TrafficViewTest, ColumnsAreAsWideAsTheyWere) {
  Start();
  Find<QTableView>("ctlVerkehr").setColumnWidth(TrafficModel::Meaning, 321);
  window->close();
  window.reset();
  Start();
  EXPECT_EQ(Find<QTableView>("ctlVerkehr").columnWidth(TrafficModel::Meaning), 321);
}

// The ring drops what is old in the middle of all this.
TEST(TrafficModelTest, RowsFollowTheRing) {
  TrafficRecord record(20'000);
  TrafficModel model;
  TrafficFilter filter;
  filter.setSourceModel(&model);
  model.Show(&record);
  record.SetListener([&](TrafficRecord::Number changed) { model.Follow(changed, true); });
  WallTime now{};
  for (int i = 0; i < 2000; ++i) {
    record.Append(now += milliseconds(1), Direction::ToTerminal, "\x1bGR" + std::to_string(i));
    ASSERT_EQ(filter.rowCount(), static_cast<int>(record.End() - record.Begin()));
  }
  EXPECT_GT(record.Begin(), 0u);
  const QString last =
      filter.index(filter.rowCount() - 1, TrafficModel::Readable).data().toString();
  EXPECT_TRUE(last.endsWith(QStringLiteral("GR1999")));
  record.Append(now, Direction::ToTerminal, std::string(18'700, 'x'));  // nothing else is left
  EXPECT_EQ(filter.rowCount(), 1);
}

}  // namespace
}  // namespace kelvo
