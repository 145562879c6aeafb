#include <gtest/gtest.h>
#include <malloc.h>
#include <sys/resource.h>

#include <QApplication>
#include <QElapsedTimer>
#include <QLineEdit>
#include <QListWidget>
#include <QMessageBox>
#include <QSpinBox>
#include <QTimer>
#include <filesystem>
#include <iostream>
#include <numeric>
#include <random>

#include "graphics/wmf.h"
#include "tests/drawing_samples.h"
#include "tests/fire/fire_count.h"
#include "tests/fire/presser.h"
#include "tests/fire/scenes.h"
#include "tour/live_program.h"
#include "tour/simulator_process.h"

// Hours of mixed use of the real window over a real pseudo-terminal against the simulator's
// process: what it takes of the machine stays the same. KELVO_FIRE=120 minutes; else each use
// twice.

namespace kelvo {
namespace {

namespace fs = std::filesystem;

constexpr int kPatience = 120'000;  // ms for one use; only a broken program needs it
constexpr double kMostGrowth = 5;   // MB, behind the first part
constexpr double kFirstMinutes = 10;

const QString kFolder = QStringLiteral(KELVO_PROGRAM_DIR);

/// Steps that belong together.
using Use = std::vector<Scene>;
const std::vector<Use> kUses = {
    {{"version", Tab::Status, "cmdGetVersion"}},
    {{"write", Tab::Macros, "cmdSetMakro"}},
    {{"proof", Tab::Macros, "cmdSetMakroGeprueft"}},
    {{"free bytes", Tab::Eeprom, "cmdGetFreeBytes"}},
    {{"text", Tab::Text, "cmdGetText"}},
    {{"quick search", Tab::Terminals, "cmdDovuSchnellsuche"},
     {"select", Tab::Terminals, "cmdDovuAktivieren"}},
    {{"erase", Tab::Eeprom, "cmdClearEEprom", true, "Ja Nein"}},
    {{"load", Tab::Drawing, "mnuDateiLoad", true, ":drawing.wmf"}},
    {{"send", Tab::Drawing, "cmdGrafikSenden"}},
    {{"send to many", Tab::Drawing, "mnuDovuSenden", true,
      "cmdDovuAlleAktiv cmdSenden ?cmdSenden cmdAbbruch"},
     {"select", Tab::Terminals, "cmdDovuAktivieren"}},
    {{"compare", Tab::Eeprom, "mnuAnsichtVergleich", false,
      "cmdVergleichLesen ?cmdVergleichLesen cmdVergleichSchliessen"}},
    {{"sheet", Tab::Terminals, "mnuDateiDatenblatt", false,
      "?cmdDatenblattPdf cmdDatenblattSchliessen"}},
    {{"import", Tab::Macros, "mnuDateiImportieren", true, ":halle.kelvo cmdImportAusfuehren"},
     {"undo", Tab::Macros, "mnuBearbeitenRueckgaengig"}},
    {{"new record", Tab::Macros, "cmdToolbar_6"},
     {"delete", Tab::Macros, "cmdToolbar_12", true, "Ja"}},
    {{"ports", Tab::Interfaces, "mnuOptionenAnschluesse", true, "Abbrechen"}},
    {{"traffic", Tab::Macros, "mnuAnsichtDatenverkehr"}},
    {{"help", Tab::Macros, "mnuHilfe_Seite"}},
};

struct Taken {
  double megabytes = 0;  // that the system has given
  std::ptrdiff_t handles = 0;
  std::ptrdiff_t files = 0;
};

class LongUseTest : public testing::Test {
 protected:
  void Start() {
    const std::string folder = program.Folder().toStdString();
    PrepareScenes(folder);
    std::ofstream(folder + "/bus.txt") << "address=5\naddress=6\n";
    std::ofstream(folder + "/drawing.wmf", std::ios::binary)
        << WriteWmf({Boxed(Kind::Rectangle, {20, 100}, {5, 90}, false)}, 240, 128).bytes;
    simulator = std::make_unique<SimulatorProcess>(
        program.Folder(),
        QStringList{QStringLiteral("--bus"), QString::fromStdString(folder) + "/bus.txt"});
    window = &program.Start();
    Until([this] { return program.Port().IsOpen(); }, "connection");
    Do({"history", Tab::Terminals, "mnuAnsichtVerlauf"});
    window->findChild<QSpinBox*>(QStringLiteral("ctlUpDownAdrDovu"))->setValue(5);
    window->findChild<QLineEdit*>(QStringLiteral("txtmaxDovu"))->setText(QStringLiteral("7"));
    Do({"select", Tab::Terminals, "cmdDovuAktivieren"});
  }
  void Do(const Scene& scene) {
    SCOPED_TRACE(scene.what);
    bool through = false;
    ShowPageOf(scene, *window);
    const testing_world::Presser presser(scene.then, program.Folder(), [&] { through = true; });
    Begin(scene, *window);
    Until([&] { return through && QApplication::activeModalWidget() == nullptr; }, scene.what);
    ++uses;
  }
  template <typename Done>
  void Until(Done done, const char* what) {
    QElapsedTimer elapsed;
    elapsed.start();
    QTimer tick;  // something may be true without any event
    tick.start(5);
    while (!done() && elapsed.elapsed() < kPatience) {
      QApplication::processEvents(QEventLoop::WaitForMoreEvents);
    }
    EXPECT_TRUE(done()) << what << Windows();
  }
  /// What stands on the screen, and which of its buttons can be pressed.
  static std::string Windows() {
    std::string text;
    for (const QWidget* const top : QApplication::topLevelWidgets()) {
      if (!top->isVisible()) continue;
      text += '\n' + top->objectName().toStdString();
      if (top == QApplication::activeModalWidget()) text += " (modal)";
      if (auto* const box = qobject_cast<const QMessageBox*>(top))
        text += box->text().toStdString();
      if (qobject_cast<const QDialog*>(top) == nullptr) continue;
      for (const auto* const button : top->findChildren<QAbstractButton*>()) {
        if (button->isVisible() && button->isEnabled()) {
          text += ' ' + button->objectName().toStdString();
        }
      }
    }
    return text;
  }
  std::string Failures() const {
    const auto& list = *window->findChild<QListWidget*>(QStringLiteral("ctlVerlauf"));
    std::string text;
    for (const QListWidgetItem* const item : list.findItems("✗", Qt::MatchContains)) {
      text += item->text().toStdString() + '\n';
    }
    return text;
  }
  Taken Now() const {
    QApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    malloc_trim(0);
    std::ifstream file("/proc/self/statm");
    long all = 0;
    long resident = 0;
    file >> all >> resident;
    const auto count = [](const std::string& folder) {
      return std::distance(fs::directory_iterator(folder), fs::directory_iterator());
    };
    return {static_cast<double>(resident) * 4096 / 1e6, count("/proc/self/fd"),
            count(program.Folder().toStdString())};
  }
  /// Share of the processor, in percent, when nobody does anything.
  static double IdleLoad(int seconds) {
    const auto used = [] {
      rusage all{};
      getrusage(RUSAGE_SELF, &all);
      return static_cast<double>(all.ru_utime.tv_sec + all.ru_stime.tv_sec) +
             static_cast<double>(all.ru_utime.tv_usec + all.ru_stime.tv_usec) / 1e6;
    };
    const double before = used();
    bool over = false;
    QTimer::singleShot(1000 * seconds, [&over] { over = true; });
    while (!over) QApplication::processEvents(QEventLoop::WaitForMoreEvents);
    return 100 * (used() - before) / seconds;
  }

  LiveProgram program{kFolder, QStringLiteral(KELVO_DELIVERED_DATABASE)};
  std::unique_ptr<SimulatorProcess> simulator;
  frmhaupt* window = nullptr;
  int uses = 0;
};

TEST_F(LongUseTest, TakesNoMoreOfTheMachineThanAtItsBeginning) {
  const double minutes = testing_world::LongFire() ? testing_world::FireCount(0) : 0;
  std::mt19937 random(testing_world::FireSeed());
  QElapsedTimer clock;
  clock.start();
  const auto passed = [&clock] { return static_cast<double>(clock.elapsed()) / 60'000; };
  Start();
  std::optional<Taken> first;
  std::vector<std::size_t> order(kUses.size());
  std::iota(order.begin(), order.end(), 0);
  for (int round = 1; round <= 2 || passed() < minutes; ++round) {
    for (const std::size_t use : order) {
      for (const Scene& scene : kUses[use]) Do(scene);
      EXPECT_EQ(Failures(), "") << kUses[use].front().what;
      if (HasFailure()) return;
    }
    std::shuffle(order.begin(), order.end(), random);
    if (!first && passed() >= std::min(kFirstMinutes, minutes / 3)) first = Now();
  }
  const Taken last = Now();
  std::cout << uses << " uses in " << passed() << " min: " << first->megabytes << " MB, then "
            << last.megabytes << " MB; " << first->handles << " handles, then " << last.handles
            << "; " << first->files << " files, then " << last.files << "\n";
  EXPECT_LE(last.handles, first->handles);
  EXPECT_LE(last.files, first->files);
  if (minutes < 2 * kFirstMinutes) return;
  EXPECT_LT(last.megabytes - first->megabytes, kMostGrowth);
  const double idle = IdleLoad(20);
  std::cout << "idle: " << idle << " % of the processor\n";
  EXPECT_LT(idle, 0.1);
}

}  // namespace
}  // namespace kelvo
