#include <gtest/gtest.h>

#include <QFile>
#include <QTimer>
#include <QTreeWidget>

#include "link/tabs.h"
#include "tour/live_program.h"
#include "tour/simulator_process.h"
#include "tour/window_driver.h"

// The real window over a real pseudo-terminal against a line of several simulated Terminals.

namespace kelvo {
namespace {

QString Q(const char* text) { return QString::fromUtf8(text); }

class BusLiveTest : public testing::Test {
 protected:
  void Start(const char* bus) {
    const QString name = program.Folder() + Q("/bus.txt");
    QFile file(name);
    ASSERT_TRUE(file.open(QIODevice::WriteOnly));
    file.write(bus);
    file.close();
    simulator = std::make_unique<SimulatorProcess>(program.Folder(), QStringList{Q("--bus"), name});
    driver = std::make_unique<WindowDriver>(program.Start());
    driver->Until(Q("connection"), [this] { return program.Port().IsOpen(); });
    driver->ShowTab(static_cast<int>(Tab::Terminals));
  }
  void Search(const char* last) {
    driver->Type(Q("txtmaxDovu"), Q(last));
    driver->Click(Q("cmdDovusuchen"));
  }
  std::string Verdicts() {
    std::string verdicts;
    auto& list = driver->Find<QTreeWidget>(Q("ctlDovuSuchListe"));
    for (int i = 0; i < list.topLevelItemCount(); ++i) {
      verdicts += list.topLevelItem(i)->text(1).toStdString() + "|";
    }
    return verdicts;
  }

  LiveProgram program{QStringLiteral(KELVO_PROGRAM_DIR), QStringLiteral(KELVO_DELIVERED_DATABASE)};
  std::unique_ptr<SimulatorProcess> simulator;
  std::unique_ptr<WindowDriver> driver;
};

TEST_F(BusLiveTest, TerminalsAreFoundStoredAndSentADrawing) {
  Start("address=0\naddress=1\naddress=1\naddress=3 fault=silent\naddress=4 version=1.0\n");
  Search("4");
  EXPECT_EQ(Verdicts(), "ok|Fehler/Kollision|nicht vorhanden|nicht vorhanden|ok|");
  driver->Click(Q("cmdDovuUebernehmen"));
  bool shown = false;
  driver->OnDialog([&shown](QDialog&) { shown = true; });
  driver->Click(Q("cmdDovuSenden"));
  driver->Until(Q("dialog"), [&shown] { return shown; });
  driver->Click(Q("cmdSenden"));
  EXPECT_TRUE(driver->Text(Q("lblErgebnis"))
                  .startsWith(Q("1 gut, 0 falsch, 0 ohne Antwort, 1 Terminal ohne Prüfung.")));
  EXPECT_EQ(simulator->Command(Q("@5 status")).left(21), Q("ok power=on selected="));
}

TEST_F(BusLiveTest, DevicePulledOutEndsTheSearch) {
  Start("address=0\n");
  bool said = false;
  driver->OnDialog([&said](QDialog& dialog) {
    said = true;
    dialog.reject();
  });
  QTimer::singleShot(1500, driver.get(), [this] { simulator->Command(Q("unplug")); });
  Search("255");
  EXPECT_TRUE(driver->Text(Q("lblDovuStand")).startsWith(Q("Die Verbindung ging verloren")));
  driver->Until(Q("message"), [&said] { return said; });
}

}  // namespace
}  // namespace kelvo
