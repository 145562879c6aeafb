#include <QApplication>
#include <QIcon>
#include <QLibraryInfo>
#include <QTimer>
#include <QTranslator>
#include <memory>
#include <string>

#include "adapters/machine_ports.h"
#include "adapters/qt_event_loop.h"
#include "adapters/qt_serial_port.h"
#include "shell/frmhaupt.h"
#include "shell/qt_operator.h"
#include "shell/splash.h"
#include "store/data_folder.h"

namespace {

constexpr std::chrono::milliseconds timeoutInterval{2000};
constexpr std::chrono::milliseconds pauseInterval{300};
constexpr std::chrono::milliseconds sendInterval{500};

// Builds the main window, or says why the database cannot be used.
std::unique_ptr<kelvo::frmhaupt> MakeMainWindow(const kelvo::Outside& outside) {
  try {
    kelvo::TakeDeliveredDatabase(outside.programFolder, outside.dataFolder);
    return std::make_unique<kelvo::frmhaupt>(outside);
  } catch (const std::exception& error) {
    outside.person.Message(error.what(), kelvo::Icon::Exclamation);
    return nullptr;
  }
}

}  // namespace

int main(int argc, char** argv) {
  QApplication application(argc, argv);
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

  // All of this outlives the windows and exec().
  kelvo::QtEventLoop loop;
  kelvo::QtTimer tmrTimeout(loop, timeoutInterval, false);
  kelvo::QtTimer tmrRS485(loop, pauseInterval, true, kelvo::QtTimer::Ticks::OnDemand);
  kelvo::QtTimer tmrSofort(loop, sendInterval, false);
  kelvo::QtSerialPort com1(loop);
  kelvo::QtOperator person(loop);
  const std::string programFolder = QApplication::applicationDirPath().toStdString();
  const kelvo::Outside outside{
      com1,
      loop,
      tmrTimeout,
      tmrRS485,
      tmrSofort,
      person,
      programFolder,
      kelvo::DataFolder(programFolder),
      kelvo::MachinePorts,
      kelvo::DescribeDevice,
      [&com1](std::function<std::string(int)> deviceOf) { com1.SetDevices(std::move(deviceOf)); }};

  std::unique_ptr<kelvo::frmhaupt> window;
  kelvo::Splash splash;
  QObject::connect(&splash, &kelvo::Splash::Active, &application, [&] {
    QApplication::processEvents();
    window = MakeMainWindow(outside);
    if (window == nullptr) return QApplication::exit(1);
    person.SetWindow(window.get());
    QObject::connect(window.get(), &kelvo::frmhaupt::FirstSeen, &splash, &QWidget::close);
    QObject::connect(window.get(), &kelvo::frmhaupt::Unloaded, &application, [&loop] {
      loop.Close();
      QApplication::exit(0);
    });
    window->show();
  });
  splash.show();
  return QApplication::exec();
}
