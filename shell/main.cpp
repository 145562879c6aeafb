#include <QApplication>
#include <QIcon>
#include <QLibraryInfo>
#include <QTimer>
#include <QTranslator>
#include <memory>
#include <string>

#include "adapters/interruption.h"
#include "shell/frmhaupt.h"
#include "shell/live_world.h"
#include "shell/splash.h"
#include "store/data_folder.h"
#include "widgets/indicator_style.h"

namespace {

// Builds the main window, or says why the database cannot be used.
std::unique_ptr<kelvo::frmhaupt> MakeMainWindow(kelvo::LiveWorld& world) {
  const std::string program = kelvo::ProgramFolder();
  try {
    return world.MakeMainWindow({.program = program, .data = kelvo::DataFolder(program)});
  } catch (const std::exception& error) {
    world.person.Message(error.what(), kelvo::Icon::Exclamation, {}, {});
    return nullptr;
  }
}

}  // namespace

int main(int argc, char** argv) {
  QApplication application(argc, argv);
  QApplication::setStyle(new kelvo::IndicatorStyle);
  QApplication::setApplicationName(QStringLiteral("kelvo"));
  QApplication::setApplicationDisplayName(QStringLiteral("kelvo"));
  QApplication::setApplicationVersion(QStringLiteral(KELVO_VERSION));
  QApplication::setDesktopFileName(QStringLiteral("kelvo"));
  QApplication::setWindowIcon(QIcon(QStringLiteral(":/kelvo.png")));
  QApplication::setQuitOnLastWindowClosed(false);
  QTranslator german;
  if (german.load(QStringLiteral("qtbase_de"),
                  QLibraryInfo::path(QLibraryInfo::TranslationsPath))) {
    QApplication::installTranslator(&german);
  }

  kelvo::LiveWorld world;  // outlives the windows and exec()
  std::unique_ptr<kelvo::frmhaupt> window;
  kelvo::Interruption interruption;
  kelvo::Splash splash;
  // Told to end before there is a window, beside a box that says why there will be none.
  interruption.SetHandler([] { QApplication::exit(1); });
  QObject::connect(&splash, &kelvo::Splash::Active, &application, [&] {
    QApplication::processEvents();
    window = MakeMainWindow(world);
    if (window == nullptr) return QApplication::exit(1);
    QObject::connect(window.get(), &kelvo::frmhaupt::FirstSeen, &splash, &QWidget::close);
    QObject::connect(window.get(), &kelvo::frmhaupt::Unloaded, &application,
                     [] { QApplication::exit(0); });
    interruption.SetHandler([&window] { window->EndNow(); });
    window->show();
  });
  splash.show();
  return QApplication::exec();
}
