#pragma once

#include <QAction>
#include <QApplication>
#include <QStatusBar>
#include <QTabWidget>

#include "graphics/frmGrafik.h"
#include "shell/frmhaupt.h"
#include "shell/tabs.h"
#include "tests/controls_fixture.h"

namespace kelvo {

/// The real main window, for what spans pages.
class WindowTest : public ControlsTest {
 protected:
  WindowTest() {
    std::filesystem::create_directory_symlink(KELVO_PROGRAM_DIR "/fonts", folder.Path("fonts"));
  }
  QWidget& Root() override { return *window; }

  /// Starts the program and lets it come to its first paint.
  void Start() {
    window = std::make_unique<frmhaupt>(
        OutsideOf(*this, person, {folder.Path(), folder.Path()}, machine));
    bool loaded = false;
    QObject::connect(window.get(), &frmhaupt::Loaded, window.get(), [&] { loaded = true; });
    window->show();
    while (!loaded) QApplication::processEvents(QEventLoop::WaitForMoreEvents);
    Forget();
  }
  /// Starts the program on a page, which has been shown already.
  void StartOn(Tab tab) {
    Start();
    Show(tab);
    Forget();
  }

  void Show(Tab tab) { Find<QTabWidget>("cmdTab").setCurrentIndex(static_cast<int>(tab)); }
  void Trigger(const char* name) { Find<QAction>(name).trigger(); }
  /// The drawing's own window.
  static frmGrafik& Grafik() {
    for (QWidget* top : QApplication::topLevelWidgets()) {
      if (auto* editor = qobject_cast<frmGrafik*>(top)) return *editor;
    }
    throw std::runtime_error("no editor");
  }
  std::string InStatusBar() { return window->statusBar()->currentMessage().toStdString(); }

  Machine machine;
  std::unique_ptr<frmhaupt> window;
};

}  // namespace kelvo
