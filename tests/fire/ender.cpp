#include <unistd.h>

#include <QApplication>
#include <QTimer>
#include <chrono>
#include <memory>
#include <string>
#include <vector>

#include "adapters/interruption.h"
#include "shell/frmhaupt.h"
#include "shell/live_world.h"
#include "tests/fire/pulled_line.h"
#include "tests/fire/scenes.h"

// The real window at a line where nobody answers, which begins a scene and is ended in the middle
// of it: by its cross, by Ctrl+Q, or by whoever hears "ready".
//
//   fire_ender PROGRAM_FOLDER DATA_FOLDER SCENE MICROSECONDS cross|quit|signal

namespace kelvo {
namespace {

int Run(QApplication& application, const std::vector<std::string>& arguments) {
  const testing_world::PulledLine line(arguments.at(2) + "/simulator.tty");
  LiveWorld world;  // outlives the windows and exec()
  const auto window = world.MakeMainWindow({.program = arguments.at(1), .data = arguments.at(2)});
  Interruption interruption;
  interruption.SetHandler([&window] { window->EndNow(); });
  QObject::connect(window.get(), &frmhaupt::Unloaded, &application, [] { QApplication::exit(0); });
  const Scene& scene = kScenes[std::stoul(arguments.at(3))];
  const auto moment = std::chrono::ceil<std::chrono::milliseconds>(
      std::chrono::microseconds(std::stoi(arguments.at(4))));
  const std::string way = arguments.at(5);
  QObject::connect(window.get(), &frmhaupt::Loaded, window.get(), [&] {
    QTimer::singleShot(moment, window.get(), [&window, way] {
      if (write(STDOUT_FILENO, "ready\n", 6) != 6) std::_Exit(4);
      if (way == "cross") window->close();
      if (way == "quit") window->findChild<QAction*>(QStringLiteral("mnuDateiEnd"))->trigger();
    });
    QTimer::singleShot(0, window.get(), [&scene, &window] {
      ShowPageOf(scene, *window);
      Begin(scene, *window);
    });
  });
  window->resize(1024, 768);
  window->show();
  return QApplication::exec();
}

}  // namespace
}  // namespace kelvo

int main(int argc, char** argv) {
  QApplication application(argc, argv);
  QApplication::setQuitOnLastWindowClosed(false);
  return kelvo::Run(application, {argv, argv + argc});
}
