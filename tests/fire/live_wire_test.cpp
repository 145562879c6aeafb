// The real program over a real pseudo-terminal against the simulator's process: on a good line
// nothing fails, however busy the machine is, unless that has kept the simulator from answering in
// time, which its record tells. More of it: KELVO_FIRE=3000 actions.

#include <gtest/gtest.h>

#include <QLabel>
#include <QListWidget>
#include <QSpinBox>
#include <QTreeWidget>
#include <array>
#include <chrono>
#include <fstream>
#include <functional>
#include <iostream>
#include <map>
#include <random>
#include <set>
#include <sstream>

#include "link/capture_text.h"
#include "link/intervals.h"
#include "shell/tabs.h"
#include "tests/fire/fire_count.h"
#include "tour/capture.h"
#include "tour/live_program.h"
#include "tour/simulator_process.h"
#include "tour/window_driver.h"

namespace kelvo::fire {
namespace {

QString Q(const char* text) { return QString::fromUtf8(text); }

std::string FileText(const QString& path) {
  std::ostringstream text;
  text << std::ifstream(path.toStdString(), std::ios::binary).rdbuf();
  return text.str();
}

/// What a capture tells: all that was sent, and what of it was answered.
struct Wire {
  struct Answered {
    std::size_t begin;  ///< of the question's line, in `sent`
    std::size_t end;
    WallTime time;  ///< of the answer
  };

  explicit Wire(const std::string& capture) {
    std::vector<std::size_t> ends;
    EachCaptureLine(capture, [&](std::string_view text, std::size_t) {
      const auto line = ReadCaptureLine(text);
      if (!line) return;
      if (line->direction == Direction::ToTerminal) {
        starts[sent.size()] = line->time;
        sent += line->characters;
      } else if (line->linesBack > 0 && line->linesBack <= ends.size()) {
        const std::size_t end = ends[ends.size() - line->linesBack];
        answers.push_back({std::prev(starts.lower_bound(end))->first, end, line->time});
      }
      ends.push_back(sent.size());
    });
  }

  std::string sent;
  std::map<std::size_t, WallTime> starts;  // when what begins there was sent
  std::vector<Answered> answers;
};

class LiveWire : public testing::Test {
 protected:
  void Start() {
    const QString bus = program.Folder() + Q("/bus.txt");
    std::ofstream(bus.toStdString()) << "address=1\naddress=3\n";
    simulator = std::make_unique<SimulatorProcess>(
        program.Folder(), QStringList{Q("--bus"), bus, Q("--record"), record});
    driver = std::make_unique<WindowDriver>(program.Start());
    driver->Until(Q("connection"), [this] { return program.Port().IsOpen(); });
    driver->Click(Q("mnuAnsichtVerlauf"));
  }
  void Prepare() {
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
    const std::string found = Column("ctlDovuSuchListe", 1);
    if (found != "nicht vorhanden|ok|nicht vorhanden|ok|nicht vorhanden|") wrong += found + '\n';
    Select();
  }
  void SendToMany() {
    driver->ShowTab(static_cast<int>(Tab::Terminals));
    driver->OnDialog([](QDialog&) {});
    driver->Click(Q("cmdDovuSenden"));
    driver->Click(Q("cmdSenden"));
    const std::string good = driver->Text(Q("lblErgebnis")).toStdString();
    if (!good.starts_with("2 gut, 0 falsch, 0 ohne Antwort")) wrong += good + '\n';
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
  // What went wrong since the last call stands in the history.
  void ReadHistory() {
    auto& list = driver->Find<QListWidget>(Q("ctlVerlauf"));
    std::set<std::string> failures;
    for (int row = 0; row < list.count(); ++row) {
      const std::string line = list.item(row)->text().toStdString();
      if (line.find("✗") == std::string::npos) continue;
      failures.insert(line);
      if (!told.contains(line)) wrong += line + '\n';
    }
    told = failures;
  }
  // Does it, and notes whether anything was told wrong.
  void Do(int number, const std::function<void()>& action) {
    const auto from = std::chrono::floor<std::chrono::milliseconds>(program.Loop().WallClock());
    wrong.clear();
    try {
      action();
    } catch (const std::runtime_error& box) {
      wrong += box.what() + std::string("\n");
      Select();
    }
    ReadHistory();
    if (wrong.empty()) return;
    const QString capture = program.Folder() + Q("/mitschrift.txt");
    SaveCapture(*driver, capture);
    suspects.push_back(
        {"action " + std::to_string(number) + '\n' + wrong, from, FileText(capture)});
  }
  // Whether an answer since then came too late, counted from the moment at which the program has
  // handed over its question.
  static bool AnsweredLate(const Wire& there, const Wire& here, WallTime from) {
    const std::size_t before = there.sent.find(here.sent);
    EXPECT_NE(before, std::string::npos) << "what arrived is not what was sent";
    return std::any_of(there.answers.begin(), there.answers.end(), [&](const Wire::Answered& one) {
      if (one.time < from || one.begin < before) return false;
      const WallTime asked = std::prev(here.starts.upper_bound(one.begin - before))->second;
      return one.time - asked > kQueryInterval + kCharacter * (one.end - one.begin);
    });
  }
  // How many were excused.
  int Judge() {
    simulator.reset();
    const Wire there(FileText(record));
    int late = 0;
    for (const Suspect& suspect : suspects) {
      const bool excused = AnsweredLate(there, Wire(suspect.capture), suspect.from);
      EXPECT_TRUE(excused) << suspect.wrong
                           << suspect.capture.substr(
                                  suspect.capture.size() -
                                  std::min<std::size_t>(suspect.capture.size(), 4000));
      if (excused) ++late;
    }
    return late;
  }

  static constexpr std::chrono::microseconds kCharacter{521};  // 19200 baud
  struct Suspect {
    std::string wrong;
    WallTime from;
    std::string capture;
  };
  std::string wrong;           // what was told in the present action
  std::set<std::string> told;  // failures that stand in the history
  std::vector<Suspect> suspects;
  LiveProgram program{QStringLiteral(KELVO_PROGRAM_DIR), QStringLiteral(KELVO_DELIVERED_DATABASE)};
  const QString record = program.Folder() + Q("/leitung.txt");
  std::unique_ptr<SimulatorProcess> simulator;
  std::unique_ptr<WindowDriver> driver;
};

// A box that opens is thrown by the driver.
TEST_F(LiveWire, MixedActionsOnAGoodLineAreToldRight) {
  const int actions = testing_world::FireCount(12);
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
  Do(-1, [this] { Prepare(); });
  std::minstd_rand random(testing_world::FireSeed());
  for (int i = 0; i < actions && !HasFailure(); ++i) Do(i, all[random() % all.size()]);
  const int late = Judge();
  std::cout << "real program on a good line: " << actions << " actions, " << late
            << " with an answer that came too late\n";
}

}  // namespace
}  // namespace kelvo::fire
