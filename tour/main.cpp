#include <QApplication>
#include <QDir>
#include <QInputDialog>
#include <QMessageBox>
#include <QSlider>
#include <cstdio>

#include "link/tabs.h"
#include "tour/album.h"
#include "tour/bus_tour.h"
#include "tour/live_program.h"
#include "tour/simulator_process.h"
#include "tour/window_driver.h"

// The tour: the real windows, drawn off-screen, do the main jobs against the real simulator and
// leave a picture of each step.

namespace kelvo {
namespace {

class Tour {
 public:
  Tour(LiveProgram& program, SimulatorProcess& simulator, Album& album)
      : simulator_(simulator), album_(album), window_(program.Start()), driver_(window_) {}

  void Run() {
    Connect();
    Interfaces();
    Status();
    Macro();
    Drawing();
    TextAndKeyboards();
    Eeprom();
    Traffic();
    Ports();
    driver_.OnDialog([](QDialog& dialog) { WindowDriver::Press(dialog, QStringLiteral("Nein")); });
    window_.close();
  }

 private:
  void Step(const char* text) { album_.Step(text); }
  void Shoot(QWidget& window, const char* name) { album_.Shoot(window, name); }
  void ShootDisplay(const char* name) { simulator_.Picture(album_.File(name)); }

  void Show(Tab tab) { driver_.ShowTab(static_cast<int>(tab)); }

  // The simulated Terminal answers a query behind everything that was sent before.
  void TerminalIsThrough() { driver_.Click(QStringLiteral("cmdGetFreeBytes")); }

  void Connect() {
    Step("Das Programm startet und verbindet sich mit dem Simulator.");
    driver_.Until(QStringLiteral("first paint"), [this] {
      return driver_.Text(QStringLiteral("lblPort")).startsWith(QStringLiteral("Com 6"));
    });
    Shoot(window_, "willkommen");
  }

  void Interfaces() {
    Step("Die Seite Schnittstellen.");
    Show(Tab::Interfaces);
    Shoot(window_, "schnittstellen");
  }

  void Status() {
    Step("Version, Systeminformation, Adresse und Eingänge werden gelesen.");
    simulator_.Command(QStringLiteral("p1 165"));
    Show(Tab::Status);
    driver_.Click(QStringLiteral("cmdGetVersion"));
    driver_.Click(QStringLiteral("cmdGetAdresse"));
    driver_.Click(QStringLiteral("cmdGetPort"));
    driver_.Click(QStringLiteral("chkPortP0_0"));
    driver_.Click(QStringLiteral("chkPortP0_3"));
    driver_.Click(QStringLiteral("cmdSetPort"));
    Shoot(window_, "status");
  }

  void Macro() {
    Step("Ein Makro wird geschrieben und unter einem Namen gespeichert.");
    Show(Tab::Macros);
    driver_.Click(QStringLiteral("mnuDateiNeu"));
    driver_.Type(QStringLiteral("txtMakro"),
                 QStringLiteral("\x1bGC\x1bGP10,10;\x1bGR229,117;\x1bGP30,50;\x1bGF3;\x1bGZ2,2;"
                                "\x1bGA0;\x1bGTAnlage läuft\x04"));
    driver_.Type(QStringLiteral("txtMakroNr"), QStringLiteral("7"));
    Shoot(window_, "makro-entwurf");
    driver_.OnDialog([this](QDialog& dialog) {
      dynamic_cast<QInputDialog&>(dialog).setTextValue(QStringLiteral("Anlage läuft"));
      Shoot(dialog, "makro-name");
      WindowDriver::Press(dialog, QStringLiteral("OK"));
    });
    driver_.Click(QStringLiteral("mnuDateiSave"));

    Step("Das Makro wird in das Terminal geschrieben und ausgeführt.");
    ShootDisplay("display-vorher");
    driver_.Click(QStringLiteral("cmdSetMakro"));
    driver_.Type(QStringLiteral("txtMakroNrDisplay"), QStringLiteral("7"));
    driver_.Click(QStringLiteral("cmdPlayMakro"));
    Shoot(window_, "makro-ausgefuehrt");
    Show(Tab::Eeprom);
    TerminalIsThrough();
    ShootDisplay("display-nachher");
  }

  void Drawing() {
    Step("Im Editor wird gezeichnet, dann geht die Zeichnung zum Terminal.");
    Show(Tab::Drawing);
    driver_.Click(QStringLiteral("cmdGrafik"));
    auto& editor = driver_.FindWindow(QStringLiteral("frmGrafik"));
    WindowDriver hands(editor);
    auto& canvas = hands.Find(QStringLiteral("Display"));
    hands.Find<QSlider>(QStringLiteral("ctlZoom")).setValue(3);
    editor.resize(1120, 640);
    const auto drag = [&](const char* tool, QPoint from, QPoint to) {
      hands.Click(QString::fromUtf8(tool));
      WindowDriver::Drag(canvas, from, to);
    };
    drag("toolRechteck", {30, 30}, {420, 210});
    drag("toolEllipse", {260, 60}, {400, 180});
    drag("toolLinie", {40, 200}, {240, 50});
    Shoot(editor, "grafik-editor");
    editor.close();
    Shoot(window_, "zeichnung");
    driver_.Click(QStringLiteral("mnuBearbeitenSend"));
    Show(Tab::Eeprom);
    TerminalIsThrough();
    ShootDisplay("display-zeichnung");
  }

  void TextAndKeyboards() {
    Step("Text und Tastaturen.");
    Show(Tab::Text);
    Shoot(window_, "text");
    Show(Tab::AtKeyboard);
    Shoot(window_, "at-tastatur");
    Show(Tab::MatrixKeyboard);
    driver_.Click(QStringLiteral("mnuDateiNeu"));
    driver_.Type(QStringLiteral("txtTastMatrix_0"), QStringLiteral("A"));
    driver_.Click(QStringLiteral("cmdMatrixEnable"));
    Show(Tab::Eeprom);
    TerminalIsThrough();
    Show(Tab::MatrixKeyboard);
    simulator_.Command(QStringLiteral("key 2 3 press"));
    driver_.Until(QStringLiteral("key"), [this] {
      return driver_.Text(QStringLiteral("txtTastMatrix_26")) == QStringLiteral("$A3");
    });
    Shoot(window_, "matrix-tastatur");
    Show(Tab::Eeprom);
  }

  void Eeprom() {
    Step("Die Konfiguration wird gespeichert, dann wird das EEPROM gelöscht.");
    driver_.Click(QStringLiteral("cmdSetConfig"));
    Shoot(window_, "eeprom");
    driver_.OnDialog([this](QDialog& dialog) {
      Shoot(dialog, "eeprom-frage");
      WindowDriver::Press(dialog, QStringLiteral("Ja"));
    });
    driver_.OnDialog([](QDialog& dialog) { WindowDriver::Press(dialog, QStringLiteral("Ja")); });
    driver_.Click(QStringLiteral("cmdClearEEprom"));
    Shoot(window_, "eeprom-geloescht");
  }

  void Traffic() {
    Step("Der Datenverkehr wird mitgelesen.");
    driver_.Click(QStringLiteral("mnuAnsichtDatenverkehr"));
    Show(Tab::Status);
    driver_.Click(QStringLiteral("cmdGetVersion"));
    driver_.Click(QStringLiteral("cmdGetAdresse"));
    Show(Tab::Macros);
    driver_.Choose(QStringLiteral("cboMakro"), QStringLiteral("Begrüßung"));
    driver_.Click(QStringLiteral("cmdSetMakro"));
    auto& traffic = driver_.Find(QStringLiteral("frmDatenverkehr"));
    Shoot(traffic, "datenverkehr");
    traffic.close();
  }

  void Ports() {
    Step("Die Anschlüsse.");
    driver_.OnDialog([this](QDialog& dialog) {
      Shoot(dialog, "anschluesse");
      WindowDriver::Press(dialog, QStringLiteral("Abbrechen"));
    });
    driver_.Click(QStringLiteral("mnuOptionenAnschluesse"));
  }

  SimulatorProcess& simulator_;
  Album& album_;
  frmhaupt& window_;
  WindowDriver driver_;
};

void OneTerminal(Album& album) {
  LiveProgram program(QStringLiteral(KELVO_PROGRAM_DIR), QStringLiteral(KELVO_DELIVERED_DATABASE));
  SimulatorProcess simulator(program.Folder());
  Tour(program, simulator, album).Run();
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
  std::printf("Die Bilder liegen in %s\n", QDir(pictures).absolutePath().toUtf8().constData());
  return 0;
}

}  // namespace
}  // namespace kelvo

int main(int argc, char** argv) {
  QApplication application(argc, argv);
  QApplication::setApplicationDisplayName(QStringLiteral("kelvo"));
  QApplication::setQuitOnLastWindowClosed(false);
  try {
    return kelvo::RunTour(argc > 1 ? QString::fromLocal8Bit(argv[1])
                                   : QStringLiteral("tour-pictures"));
  } catch (const std::exception& error) {
    std::fprintf(stderr, "Der Rundgang ist gescheitert: %s\n", error.what());
    return 1;
  }
}
