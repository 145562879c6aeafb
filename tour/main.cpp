#include <QApplication>
#include <QDir>
#include <QLibraryInfo>
#include <QTranslator>
#include <cstdio>
#include <memory>
#include <stdexcept>

#include "tour/album.h"
#include "tour/bus_tour.h"
#include "tour/capture.h"
#include "tour/live_program.h"
#include "tour/simulator_process.h"
#include "tour/simulator_tour.h"
#include "tour/terminal_tour.h"

// The tour: the real windows, drawn off-screen, do the main jobs against the real simulator and
// leave a picture of each step: kelvo-tour [FOLDER OF THE PICTURES [FOLDER OF AN INSTALLED KELVO]].
// The manual takes its pictures from here (help/pictures).

namespace kelvo {
namespace {

// The program that was installed in `folder`; otherwise the one that was built.
std::unique_ptr<LiveProgram> MakeProgram(const QString& folder) {
  if (!folder.isEmpty()) return std::make_unique<LiveProgram>(folder);
  return std::make_unique<LiveProgram>(QStringLiteral(KELVO_PROGRAM_DIR),
                                       QStringLiteral(KELVO_DELIVERED_DATABASE));
}

// What the tour has sent is played to Terminals as new as those were.
void Replay(LiveProgram& program, Album& album, const char* name, const QStringList& options) {
  album.Step("Die Mitschrift wird abgespielt, und alle Antworten sind dieselben.");
  const QString file = album.Folder() + u'/' + QString::fromUtf8(name);
  const PlayedCapture played = PlayCapture(program.ProgramFolder(), file, options);
  std::printf("%s", played.text.toUtf8().constData());
  if (played.status != 0) throw std::runtime_error("the capture was answered differently");
}

void OneTerminal(LiveProgram& program, Album& album) {
  {
    SimulatorProcess simulator(program.ProgramFolder());
    TerminalTour(program, simulator, album).Run();
  }
  // The inputs that the simulator was told to have.
  Replay(program, album, "mitschrift-terminal.txt",
         {QStringLiteral("--p1"), QStringLiteral("165")});
}

void ManyTerminals(LiveProgram& program, Album& album) {
  const QStringList line = BusTour::DescribeLine(program.Folder());
  {
    SimulatorProcess simulator(program.ProgramFolder(), line);
    BusTour(program, simulator, album).Run();
  }
  Replay(program, album, "mitschrift-bus.txt", line);
}

int RunTour(const QString& pictures, const QString& installedFolder) {
  QDir().mkpath(pictures);
  Album album(QDir(pictures).absolutePath());
  OneTerminal(*MakeProgram(installedFolder), album);
  const std::unique_ptr<LiveProgram> program = MakeProgram(installedFolder);
  ManyTerminals(*program, album);
  SimulatorTour(program->ProgramFolder(), album).Run();
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
  const QStringList words = QApplication::arguments();
  try {
    return kelvo::RunTour(words.value(1, QStringLiteral("tour-pictures")), words.value(2));
  } catch (const std::exception& error) {
    std::fprintf(stderr, "Der Rundgang ist gescheitert: %s\n", error.what());
    return 1;
  }
}
