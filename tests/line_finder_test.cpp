#include "interfaces/line_finder.h"

#include <QDialog>
#include <QTimer>
#include <QTreeWidget>

#include "interfaces/interface_page.h"
#include "tests/fakes/bus_world.h"
#include "tests/page_fixture.h"

namespace kelvo {
namespace {

using testing_world::BusWorld;
using testing_world::milliseconds;
using testing_world::nanoseconds;

// The line hears the PC as its port is set.
void FollowSettings(testing_world::VirtualPort& port, sim::Line& line) {
  port.onSetUp = [&](const std::string& settings) {
    const QStringList parts = QString::fromStdString(settings).split(u',');
    sim::HostFraming framing;
    framing.baud = parts[0].toInt();
    framing.parity = static_cast<int>(std::string("NSOE").find(parts[1].toStdString()));
    framing.bits = parts[2].toInt();
    framing.stopBits = parts[3].toInt();
    line.SetHostFraming(framing);
    port.characterTime = nanoseconds(10'000'000'000 / framing.baud);
  };
}

struct FinderWorld : BusWorld {
  FinderWorld() { FollowSettings(port, line.line); }
  // What was found, or the report.
  std::string Find(int address = 255) {
    seconds = Duration([&] {
                results = finder.Run(address, Handshaking::XOnXOff, [](const LineResult&) {});
              }) /
              1000;
    return FinderReport(results, address, finder.Stopped());
  }
  LineFinder finder{exchange, com1};
  std::vector<LineResult> results;
  double seconds = 0;
};

TEST(LineFinderTest, EachRateIsFoundSoon) {
  for (const ListEntry& rate : ComEntries(ComBaud1)) {
    FinderWorld world;
    world.Add({.address = 7, .baud = rate.number});
    EXPECT_EQ(world.Find(),
              "Gefunden: Das Terminal antwortet mit " + std::string(rate.text) + ",N,8,1.");
    EXPECT_LT(world.seconds, 5);
    EXPECT_LE(world.results.size(), kUsualTries);
  }
}

TEST(LineFinderTest, OtherFramesAreFoundInAMinute) {
  const std::pair<InterfaceNumbers, const char*> frames[] = {{{4800, 3, 8, 1, 0}, "4800,E,8,1"},
                                                             {{1200, 2, 7, 1, 0}, "1200,O,7,1"}};
  for (const auto& [numbers, settings] : frames) {
    FinderWorld world;
    world.Add({});
    world.com1.SetUp("19200,N,8,1", Handshaking::XOnXOff);
    world.exchange.SendString(SetInterface1(numbers));
    ASSERT_FALSE(world.exchange.SendString(WriteConfig()).Failed());
    world.exchange.SendString(Restart());
    world.loop.RunFor(std::chrono::seconds(5));
    EXPECT_EQ(world.Find(), std::string("Gefunden: Das Terminal antwortet mit ") + settings + ".");
    EXPECT_LT(world.seconds, 60);
  }
}

TEST(LineFinderTest, SaysWhatNothingMeans) {
  FinderWorld world;
  EXPECT_NE(world.Find(3).find("nur die Adresse 3"), std::string::npos);
  EXPECT_EQ(world.results.size(), 96u);
  EXPECT_LT(world.seconds, 60);
  world.Add({.version = "2.10", .address = 1});
  world.Add({.version = "1.95x", .address = 2});
  EXPECT_NE(world.Find().find("mehrere Terminals zugleich"), std::string::npos);
  EXPECT_EQ(world.Find(2), "Gefunden: Das Terminal antwortet mit 19200,N,8,1.");
  world.port.refusal = "geht nicht";
  world.Find();
  EXPECT_EQ(HeardText(world.results.at(0)), "kann das Gerät nicht");
  EXPECT_LT(world.seconds, 0.001);
}

class FindDialogTest : public PageTest {
 protected:
  FindDialogTest() {
    FollowSettings(port, line.line);
    line.bus.Add({.baud = 2400}, fonts)->PowerOn(loop.Now());
    page = &Put(new InterfacePage(
        {exchange, com1, portControl, person, Records("Schnittstelle"), Records("Default"), {}}));
    page->SelectStoredRecord();
    portControl.FormLoading = false;
    page->OpenChosenPort();
  }
  void Search() {
    QTimer::singleShot(0, shown.get(), [this] {
      Click("cmdSuchen");
      rows = Find<QTreeWidget>("ctlSuchenListe").topLevelItemCount();
      report = Text("lblSuchenErgebnis");
      Find<QDialog>("frmVerbindungSuchen").reject();
    });
    Click("cmdVerbindungSuchen");
  }
  PortControl portControl{com1, person};
  DeviceFonts fonts;
  testing_world::SimulatedLine line{loop, port};
  InterfacePage* page = nullptr;
  int rows = 0;
  std::string report;
};

TEST_F(FindDialogTest, SetsAndStoresNothingBeforeYes) {
  Search();
  EXPECT_EQ(rows, 5);
  EXPECT_EQ(person.questions.size(), 1u);
  EXPECT_TRUE(report.ends_with("Nicht übernommen, der Anschluss ist wie vorher.")) << report;
  EXPECT_EQ(port.settings, "19200,N,8,1");
  EXPECT_EQ(Chosen("cboCom_0"), "19200");
  EXPECT_EQ(Stored("Schnittstelle", "Baud1"), "19200");
  Click("cmdVerbinden");
  Search();
  EXPECT_FALSE(port.IsOpen()) << "as it was";
  person.answers = {true};
  Search();
  EXPECT_TRUE(port.IsOpen());
  EXPECT_EQ(port.settings, "2400,N,8,1");
  EXPECT_EQ(Stored("Schnittstelle", "Baud1"), "2400");
  EXPECT_EQ(Text("lblAnschluss"), "");
  EXPECT_TRUE(report.ends_with("2400,N,8,1. Übernommen.")) << report;
  EXPECT_EQ(Text("lblSuchenAnschluss"), "Com 6: 2400,N,8,1");
}

TEST_F(FindDialogTest, IsStoppedAndLeavesThePortAsItWas) {
  loop.After(milliseconds(700), [this] { Find<QDialog>("frmVerbindungSuchen").reject(); });
  Search();
  EXPECT_EQ(rows, 2);
  EXPECT_EQ(report, "Abgebrochen, bis dahin nichts gefunden.");
  EXPECT_EQ(port.settings, "19200,N,8,1");
  loop.After(milliseconds(700), [this] { port.Lose(); });
  Search();
  const std::string gone = "Das Gerät ist verschwunden; die Suche ist zu Ende.";
  EXPECT_EQ(report, gone);
  EXPECT_TRUE(page->OpenAgain());
  // It may also be noticed by the next setting, and by the one that is to be restored.
  for (const auto& [lostAt, times] : {std::pair("4800,N,8,1", 1), std::pair("19200,N,8,1", 2)}) {
    port.onSetUp = [&, at = std::string(lostAt), left = times](const std::string& to) mutable {
      if (to == at && --left == 0) port.Lose();
    };
    Search();
    EXPECT_TRUE(person.messages.empty()) << person.LastMessage();
    EXPECT_FALSE(port.IsOpen());
    EXPECT_EQ(report == gone, times == 1) << report;
    port.onSetUp = {};
    EXPECT_TRUE(page->OpenAgain());
  }
}

TEST_F(FindDialogTest, AdvisesToAskOneAddressOnceTheUsualRatesHaveFailed) {
  line.bus.Add({.address = 1, .baud = 2400}, fonts)->PowerOn(loop.Now());
  line.bus.Add({.version = "1.95x", .address = 2, .baud = 2400}, fonts)->PowerOn(loop.Now());
  std::string early;
  std::string advice;
  loop.After(milliseconds(2000), [&] { early = Text("lblSuchenErgebnis"); });
  loop.After(milliseconds(8000), [&] {
    advice = Text("lblSuchenErgebnis");
    Click("cmdSuchenSchliessen");
  });
  Search();
  EXPECT_EQ(early, "");
  EXPECT_NE(advice.find("Am Bus antworten darauf alle Terminals zugleich"), std::string::npos);
  EXPECT_NE(report.find("mit der Adresse eines einzelnen"), std::string::npos) << report;
}

}  // namespace
}  // namespace kelvo
