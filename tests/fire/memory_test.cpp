#include <gtest/gtest.h>
#include <malloc.h>

#include <QApplication>
#include <QDialog>
#include <QTimer>
#include <iostream>

#include "shell/frmhaupt.h"
#include "shell/live_world.h"
#include "tests/fakes/temporary_folder.h"
#include "tests/fire/fire_count.h"
#include "tests/fire/presser.h"
#include "tests/fire/scenes.h"

// Hours of use: what each kind of use leaves behind in the memory of the real window, without a
// line.

namespace kelvo {
namespace {

constexpr int kWarmUp = 8;
constexpr char kFilter[] = "Projekt (kelvo) |*.kelvo";
constexpr double kMost = 4096;  // bytes for each use; what caches grow by is less

class MemoryTest : public testing::Test {
 protected:
  MemoryTest() {
    folder.AddDatabase();
    PrepareScenes(folder.Path());
    window = world.MakeMainWindow({.program = KELVO_PROGRAM_DIR, .data = folder.Path()});
    QObject::connect(&closing, &QTimer::timeout, &closing, [] {
      if (testing_world::Presser::Any()) return;
      for (QWidget* top : QApplication::topLevelWidgets()) {
        if (auto* const dialog = qobject_cast<QDialog*>(top); dialog && dialog->isVisible()) {
          dialog->reject();
        }
      }
    });
    closing.start(0);
    bool loaded = false;
    QObject::connect(window.get(), &frmhaupt::Loaded, [&loaded] { loaded = true; });
    window->resize(1024, 768);
    window->show();
    while (!loaded) QApplication::processEvents(QEventLoop::WaitForMoreEvents);
  }
  ~MemoryTest() override {
    closing.stop();
    world.loop.Close();
    for (QWidget* top : QApplication::topLevelWidgets()) top->hide();
  }
  QString Folder() const { return QString::fromStdString(folder.Path()); }
  static void Settle() {
    QApplication::processEvents();
    QApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    QApplication::processEvents();
  }
  static std::size_t Allocated() {
    Settle();
    return mallinfo2().uordblks;
  }
  /// Bytes that each use leaves behind, once it has been done some times.
  static double Growth(int uses, const std::function<void()>& use) {
    for (int i = 0; i < kWarmUp; ++i) use();
    const std::size_t before = Allocated();
    for (int i = 0; i < uses; ++i) use();
    return (static_cast<double>(Allocated()) - static_cast<double>(before)) / uses;
  }

  testing_world::TemporaryFolder folder;
  LiveWorld world;
  Operator& person = world.person;
  std::unique_ptr<frmhaupt> window;
  QTimer closing;
};

TEST_F(MemoryTest, NoUseLeavesAnythingBehind) {
  const int uses = testing_world::FireCount(12);
  const auto press = [this](const char* what, Tab tab, const char* button) {
    const Scene scene{what, tab, button};
    return [this, scene] {
      ShowPageOf(scene, *window);
      Begin(scene, *window);
      Settle();
    };
  };
  const std::pair<const char*, std::function<void()>> all[] = {
      {"pages",
       [this] {
         for (int page = 0; page < kTabCount; ++page) {
           ShowPageOf({"", static_cast<Tab>(page), ""}, *window);
           QApplication::processEvents();
         }
       }},
      {"a message", [this] { person.Message("Text"); }},
      {"a question", [this] { person.Ask("Text ?"); }},
      {"an input", [this] { person.Input("Text", "x"); }},
      {"no file is opened", press("", Tab::Drawing, "mnuDateiLoad")},
      {"no file is saved", [this] { person.SaveFile("Titel", "Text (txt) |*.txt"); }},
      {"a file is opened",
       [this] {
         const testing_world::Presser chooser(":halle.kelvo", Folder(), [] {});
         EXPECT_TRUE(person.OpenFile("Titel", kFilter));
       }},
      {"a file is saved",
       [this] {
         const testing_world::Presser chooser(":neu.kelvo", Folder(), [] {});
         EXPECT_TRUE(person.SaveFile("Titel", kFilter));
       }},
      {"a new record", press("", Tab::Macros, "cmdToolbar_6")},
      {"the ports", press("", Tab::Interfaces, "mnuOptionenAnschluesse")},
      {"the export", press("", Tab::Macros, "mnuDateiExportieren")},
      {"the data sheet", press("", Tab::Macros, "mnuDateiDatenblatt")},
  };
  for (const auto& [what, use] : all) {
    const double growth = Growth(uses, use);
    std::cout << "  " << what << ": " << static_cast<long>(growth) << " bytes a use\n";
    EXPECT_LT(growth, kMost) << what;
  }
  std::cout << std::size(all) << " kinds of use, " << uses << " times each\n";
}

}  // namespace
}  // namespace kelvo
