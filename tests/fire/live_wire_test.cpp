// The real program over a real pseudo-terminal against the simulator's process: on a good line
// nothing fails, however busy the machine is. More of it: KELVO_FIRE=3000 actions.

#include <gtest/gtest.h>

#include <QLabel>
#include <QListWidget>
#include <QSpinBox>
#include <QTreeWidget>
#include <array>
#include <cstdlib>
#include <fstream>
#include <functional>
#include <iostream>
#include <random>

#include "shell/tabs.h"
#include "tour/live_program.h"
#include "tour/simulator_process.h"
#include "tour/window_driver.h"

namespace kelvo::fire {
namespace {

QString Q(const char* text) { return QString::fromUtf8(text); }

class LiveWire : public testing::Test {
 protected:
  void Start() {
    const QString bus = program.Folder() + Q("/bus.txt");
    std::ofstream(bus.toStdString()) << "address=1\naddress=3\n";
    simulator = std::make_unique<SimulatorProcess>(program.Folder(), QStringList{Q("--bus"), bus});
    driver = std::make_unique<WindowDriver>(program.Start());
    driver->Until(Q("connection"), [this] { return program.Port().IsOpen(); });
    driver->Click(Q("mnuAnsichtVerlauf"));
    Search("cmdDovusuchen");
    driver->Click(Q("cmdDovuUebernehmen"));
    driver->ShowTab(static_cast<int>(Tab::Macros));
    driver->Type(Q("txtMakro"), Q("\x1bGCHallo"));
    driver->Type(Q("txtMakroNr"), Q("7"));
  }
  void Press(Tab tab, const char* button) {
    driver->ShowTab(static_cast<int>(tab));
    driver->Click(Q(button));
  }
  void Select() {
    driver->Find<QSpinBox>(Q("ctlUpDownAdrDovu")).setValue(3);
    driver->Click(Q("cmdDovuAktivieren"));
  }
  // Both are found, and nobody else.
  void Search(const char* button) {
    driver->ShowTab(static_cast<int>(Tab::Terminals));
    driver->Type(Q("txtmaxDovu"), Q("4"));
    driver->Click(Q(button));
    EXPECT_EQ(Column("ctlDovuSuchListe", 1),
              "nicht vorhanden|ok|nicht vorhanden|ok|nicht vorhanden|");
    Select();
  }
  void SendToMany() {
    driver->ShowTab(static_cast<int>(Tab::Terminals));
    driver->OnDialog([](QDialog&) {});
    driver->Click(Q("cmdDovuSenden"));
    driver->Click(Q("cmdSenden"));
    const std::string good = driver->Text(Q("lblErgebnis")).toStdString();
    EXPECT_TRUE(good.starts_with("2 gut, 0 falsch, 0 ohne Antwort")) << good;
    driver->Click(Q("cmdAbbruch"));
    Select();
  }
  std::string Column(const char* list, int column) {
    const auto& tree = driver->Find<QTreeWidget>(Q(list));
    std::string text;
    for (int row = 0; row < tree.topLevelItemCount(); ++row) {
      text += tree.topLevelItem(row)->text(column).toStdString() + "|";
    }
    return text;
  }
  std::string History() {
    const auto& list = driver->Find<QListWidget>(Q("ctlVerlauf"));
    std::string text;
    for (int row = 0; row < list.count(); ++row)
      text += list.item(row)->text().toStdString() + '\n';
    return text;
  }

  LiveProgram program{QStringLiteral(KELVO_PROGRAM_DIR), QStringLiteral(KELVO_DELIVERED_DATABASE)};
  std::unique_ptr<SimulatorProcess> simulator;
  std::unique_ptr<WindowDriver> driver;
};

// A box that opens is thrown by the driver.
TEST_F(LiveWire, MixedActionsOnAGoodLineAreToldRight) {
  const char* const more = std::getenv("KELVO_FIRE");
  const int actions = more != nullptr ? std::atoi(more) : 12;
  const std::array<std::function<void()>, 9> all = {
      [this] { Press(Tab::Status, "cmdGetVersion"); },
      [this] { Press(Tab::Eeprom, "cmdSetConfig"); },
      [this] { Press(Tab::Eeprom, "cmdGetFreeBytes"); },
      [this] { Press(Tab::Macros, "cmdSetMakro"); },
      [this] { Press(Tab::Macros, "cmdSetMakroGeprueft"); },
      [this] { Press(Tab::Text, "cmdGetText"); },
      [this] { Press(Tab::Text, "cmdVerbindungPruefen"); },
      [this] { Search("cmdDovuSchnellsuche"); },
      [this] { SendToMany(); },
  };
  Start();
  std::minstd_rand random(1);
  for (int i = 0; i < actions && !HasFailure(); ++i) {
    all[random() % all.size()]();
    EXPECT_EQ(History().find("✗"), std::string::npos) << "action " << i << '\n' << History();
  }
  std::cout << "real program on a good line: " << actions << " actions\n";
}

}  // namespace
}  // namespace kelvo::fire
