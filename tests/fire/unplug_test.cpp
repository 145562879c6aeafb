#include <gtest/gtest.h>
#include <sys/resource.h>

#include <QApplication>
#include <QDialog>
#include <QElapsedTimer>
#include <QMessageBox>
#include <QPointer>
#include <QTimer>
#include <iostream>
#include <random>

#include "shell/frmhaupt.h"
#include "shell/live_world.h"
#include "tests/fakes/temporary_folder.h"
#include "tests/fire/fire_count.h"
#include "tests/fire/presser.h"
#include "tests/fire/pulled_line.h"
#include "tests/fire/scenes.h"

// The real window at a real pseudo-terminal whose other end goes away at any moment.

namespace kelvo {
namespace {

using std::chrono::microseconds;

constexpr int kPatience = 20'000;  // ms; only a broken program needs it
const QString kLoss = QStringLiteral("ist verloren gegangen");

class UnplugTest : public testing::Test {
 protected:
  UnplugTest() {
    folder.AddDatabase();
    PrepareScenes(folder.Path());
    line.emplace(folder.Path("simulator.tty"));
    window = world.MakeMainWindow({.program = KELVO_PROGRAM_DIR, .data = folder.Path()});
    world.tmrReturn.SetInterval(std::chrono::milliseconds(50));
    QObject::connect(&watch, &QTimer::timeout, &watch, [this] { Watch(); });
    window->resize(1024, 768);
    window->show();
    Until([this] { return world.com1.IsOpen(); });
  }
  ~UnplugTest() override {
    watch.stop();
    world.loop.Close();
    for (QWidget* top : QApplication::topLevelWidgets()) top->hide();
  }

  template <typename Done>
  static bool Until(Done done) {
    QElapsedTimer elapsed;
    elapsed.start();
    QTimer tick;  // something may be true without any event
    tick.start(5);
    while (!done() && elapsed.elapsed() < kPatience) {
      QApplication::processEvents(QEventLoop::WaitForMoreEvents);
    }
    return done();
  }
  static std::vector<QDialog*> Dialogs() {
    std::vector<QDialog*> dialogs;
    for (QWidget* top : QApplication::topLevelWidgets()) {
      auto* const dialog = qobject_cast<QDialog*>(top);
      if (dialog != nullptr && dialog->isVisible()) dialogs.push_back(dialog);
    }
    return dialogs;
  }
  static bool LossIsShown() {
    const auto all = Dialogs();
    return std::any_of(all.begin(), all.end(), [](QDialog* dialog) {
      auto* const box = qobject_cast<QMessageBox*>(dialog);
      // What has failed by it may have been said first.
      return box != nullptr && (box->text() + box->informativeText()).contains(kLoss);
    });
  }
  static std::string AllBoxes() {
    std::string all;
    for (QDialog* const dialog : Dialogs()) {
      auto* const box = qobject_cast<QMessageBox*>(dialog);
      all += "[" + (box != nullptr ? box->text() : dialog->windowTitle()).toStdString() + "]";
    }
    return all;
  }

  /// Goes through the scene and has the device pulled out so long after that, or before. When
  /// the loss is said it is plugged in again, and behind all boxes the port has to come back.
  void Play(const Scene& scene, microseconds moment) {
    ShowPageOf(scene, *window);
    said = back = false;
    if (scene.held) line->Stop();
    const auto pull = [this, moment] {
      QTimer::singleShot(std::chrono::ceil<std::chrono::milliseconds>(moment), &watch,
                         [this] { Pull(); });
    };
    const QString at = QString::fromStdString(folder.Path());
    std::optional<testing_world::Presser> through;
    if (moment < microseconds(0)) {
      Pull();
    } else {
      through.emplace(scene.then, at, pull);
    }
    Begin(scene, *window);
    EXPECT_TRUE(Until([this] { return back && Dialogs().empty(); }))
        << scene.what << ", " << moment.count() << " us, said: " << said << ", " << AllBoxes();
    watch.stop();
  }
  void Pull() {
    line->Pull();
    pulled.start();
    watch.start(2);
  }
  // While the scene's handler may still be on the stack.
  void Watch() {
    if (!said && LossIsShown()) {
      said = true;
      slowest = std::max(slowest, pulled.elapsed());
      line->Plug();
    }
    back = back || (said && world.com1.IsOpen());
    // Also when nothing comes, so that the test ends.
    if (!back && pulled.elapsed() < kPatience / 2) return;
    EXPECT_TRUE(back) << "a box keeps it from coming back: " << AllBoxes();
    for (QDialog* const dialog : Dialogs()) dialog->reject();
  }
  /// Share of the processor, in percent, that the program takes when nobody does anything.
  static double Load(int wholeSeconds) {
    rusage before{};
    rusage after{};
    getrusage(RUSAGE_SELF, &before);
    bool over = false;
    QTimer::singleShot(1000 * wholeSeconds, [&over] { over = true; });
    while (!over) QApplication::processEvents(QEventLoop::WaitForMoreEvents);
    getrusage(RUSAGE_SELF, &after);
    const auto seconds = [](const rusage& used) {
      return static_cast<double>(used.ru_utime.tv_sec + used.ru_stime.tv_sec) +
             static_cast<double>(used.ru_utime.tv_usec + used.ru_stime.tv_usec) / 1e6;
    };
    return 100 * (seconds(after) - seconds(before)) / wholeSeconds;
  }

  testing_world::TemporaryFolder folder;
  std::optional<testing_world::PulledLine> line;
  LiveWorld world;
  std::unique_ptr<frmhaupt> window;
  QTimer watch;
  QElapsedTimer pulled;
  bool said = false;
  bool back = false;
  qint64 slowest = 0;  // ms until the loss was said
};

TEST_F(UnplugTest, ALossIsSaidUnderItsNameWhateverGoesOnAndTheDeviceComesBack) {
  const int count = testing_world::FireCount(static_cast<int>(std::size(kScenes)));
  std::mt19937 random(testing_world::FireSeed());
  for (int i = 0; i < count && !HasFailure(); ++i) {
    const Scene& scene = kScenes[static_cast<std::size_t>(i) % std::size(kScenes)];
    const bool before = random() % 4 == 0;
    Play(scene, microseconds(before ? -1 : std::uniform_int_distribution(0, 150'000)(random)));
  }
  std::cout << count << " times unplugged, the loss said within " << slowest << " ms at most\n";
  if (testing_world::LongFire()) {
    EXPECT_LE(slowest, 250);
  }
}

TEST_F(UnplugTest, AProgramThatHasNothingToDoRests) {
  if (!testing_world::LongFire()) {
    GTEST_SKIP() << "a measure, for a machine that does nothing else";
  }
  Load(2);  // what has been begun ends
  const double idle = Load(10);
  line->Pull();
  ASSERT_TRUE(Until([] { return LossIsShown(); }));
  world.tmrReturn.SetInterval(kReturnInterval);
  Load(1);
  const double lost = Load(10);
  std::cout << "processor: " << idle << " % idle, " << lost << " % without its device\n";
  EXPECT_LT(idle, 0.1);
  EXPECT_LT(lost, 1);
  line->Plug();
  EXPECT_TRUE(Until([this] { return world.com1.IsOpen(); }));
}

}  // namespace
}  // namespace kelvo
