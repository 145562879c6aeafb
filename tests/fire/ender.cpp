#include <unistd.h>

#include <QApplication>
#include <QTimer>
#include <chrono>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "adapters/interruption.h"
#include "shell/frmhaupt.h"
#include "shell/live_world.h"
#include "tests/fire/presser.h"
#include "tests/fire/pulled_line.h"
#include "tests/fire/scenes.h"

// The real window at a line where nobody answers, which begins a scene and is ended so long after
// it has come as far as it goes: by its cross, by Ctrl+Q, or by whoever hears "ready".
//
//   fire_ender PROGRAM_FOLDER DATA_FOLDER SCENE MICROSECONDS cross|quit|signal

namespace kelvo {
namespace {

class Ender {
 public:
  Ender(frmhaupt& window, const Scene& scene, const std::vector<std::string>& arguments)
      : window_(window),
        scene_(scene),
        folder_(QString::fromStdString(arguments.at(2))),
        moment_(std::chrono::ceil<std::chrono::milliseconds>(
            std::chrono::microseconds(std::stoi(arguments.at(4))))),
        way_(arguments.at(5)) {}

  void Play() {
    through_.emplace(scene_.then, folder_,
                     [this] { QTimer::singleShot(moment_, &window_, [this] { End(); }); });
    ShowPageOf(scene_, window_);
    Begin(scene_, window_);
  }

 private:
  void End() {
    if (*scene_.end != 0) questioned_.emplace(scene_.end, folder_, [] {});
    if (write(STDOUT_FILENO, "ready\n", 6) != 6) std::_Exit(4);
    if (way_ == "cross") window_.close();
    if (way_ == "quit") window_.findChild<QAction*>(QStringLiteral("mnuDateiEnd"))->trigger();
  }

  frmhaupt& window_;
  const Scene& scene_;
  QString folder_;
  std::chrono::milliseconds moment_;
  std::string way_;
  std::optional<testing_world::Presser> through_;
  std::optional<testing_world::Presser> questioned_;
};

int Run(QApplication& application, const std::vector<std::string>& arguments) {
  testing_world::PulledLine line(arguments.at(2) + "/simulator.tty");
  LiveWorld world;  // outlives the windows and exec()
  const auto window = world.MakeMainWindow({.program = arguments.at(1), .data = arguments.at(2)});
  Interruption interruption;
  interruption.SetHandler([&window] { window->EndNow(); });
  QObject::connect(window.get(), &frmhaupt::Unloaded, &application, [] { QApplication::exit(0); });
  const Scene& scene = kScenes[std::stoul(arguments.at(3))];
  Ender ender(*window, scene, arguments);
  QObject::connect(window.get(), &frmhaupt::Loaded, window.get(), [&] {
    if (scene.held) line.Stop();
    QTimer::singleShot(0, window.get(), [&ender] { ender.Play(); });
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
