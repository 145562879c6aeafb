#include <QApplication>
#include <QDir>
#include <QLibraryInfo>
#include <QTranslator>
#include <cstdio>

#include "tour/album.h"
#include "tour/bus_tour.h"
#include "tour/live_program.h"
#include "tour/simulator_process.h"
#include "tour/simulator_tour.h"
#include "tour/terminal_tour.h"

// The tour: the real windows, drawn off-screen, do the main jobs against the real simulator and
// leave a picture of each step. The manual takes its pictures from here (help/pictures).

namespace kelvo {
namespace {

void OneTerminal(Album& album) {
  LiveProgram program(QStringLiteral(KELVO_PROGRAM_DIR), QStringLiteral(KELVO_DELIVERED_DATABASE));
  SimulatorProcess simulator(program.Folder());
  TerminalTour(program, simulator, album).Run();
}

void ManyTerminals(Album& album) {
  LiveProgram program(QStringLiteral(KELVO_PROGRAM_DIR), QStringLiteral(KELVO_DELIVERED_DATABASE));
  SimulatorProcess simulator(program.Folder(), BusTour::DescribeLine(program.Folder()));
  BusTour(program, simulator, album).Run();
}

int RunTour(const QString& pictures) {
  QDir().mkpath(pictures);
  Album album(QDir(pictures).absolutePath());
  OneTerminal(album);
  ManyTerminals(album);
  SimulatorTour(QStringLiteral(KELVO_PROGRAM_DIR), album).Run();
  std::printf("Die Bilder liegen in %s\n", QDir(pictures).absolutePath().toUtf8().constData());
  return 0;
}

}  // namespace
}  // namespace kelvo

int main(int argc, char** argv) {
  QApplication application(argc, argv);
  QApplication::setApplicationDisplayName(QStringLiteral("kelvo"));
  QApplication::setApplicationVersion(QStringLiteral(KELVO_VERSION));
  QApplication::setQuitOnLastWindowClosed(false);
  QTranslator german;
  if (german.load(QStringLiteral("qtbase_de"),
                  QLibraryInfo::path(QLibraryInfo::TranslationsPath))) {
    QApplication::installTranslator(&german);
  }
  try {
    return kelvo::RunTour(argc > 1 ? QString::fromLocal8Bit(argv[1])
                                   : QStringLiteral("tour-pictures"));
  } catch (const std::exception& error) {
    std::fprintf(stderr, "Der Rundgang ist gescheitert: %s\n", error.what());
    return 1;
  }
}
