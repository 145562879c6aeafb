#include "tour/simulator_tour.h"

#include <string>

#include "simulator/wall_window.h"
#include "simulator/window.h"

namespace kelvo {
namespace {

// The port that the picture names; where it really lies is of no interest.
constexpr char kShownPort[] = "simulator.tty";

void Receive(sim::Terminal& terminal, const std::string& text) {
  for (const char byte : text) {
    terminal.Receive(static_cast<unsigned char>(byte), sim::Station::Now());
  }
}

std::string Frame(const std::string& title) {
  return "\x1bGC\x1bGR239,127;\x1bGP16,40;\x1bGF3;\x1bGZ2,2;\x1bGA0;\x1bGT" + title + '\x04';
}

}  // namespace

SimulatorTour::SimulatorTour(const QString& programFolder, Album& album) : album_(album) {
  fonts_.Load(programFolder.toStdString() + "/fonts");
}

void SimulatorTour::Run() {
  OneTerminal();
  Wall();
}

void SimulatorTour::OneTerminal() {
  album_.Step("Das Fenster des Simulators.");
  sim::Station station(folder_.filePath(QStringLiteral("one")).toStdString(), fonts_);
  sim::Terminal& terminal = *station.Add({});
  terminal.PowerOn(sim::Station::Now());
  Receive(terminal,
          "\x1b"
          "EWM1,Hallo\x03" +
              Frame("Pumpe l\xE4uft") + "\x1bMS4,4;\x1bMC2,10,35,240,15,5;\x1bME\x1b!P9;");
  sim::SimulatorWindow window(station, kShownPort, 0);
  window.Refresh();
  window.show();
  album_.Shoot(window, "simulator");
}

void SimulatorTour::Wall() {
  album_.Step("Eine Wand von Displays.");
  sim::Station station(folder_.filePath(QStringLiteral("wall")).toStdString(), fonts_);
  for (int address = 0; address < 4; ++address) {
    sim::TerminalSetup setup;
    setup.address = address;
    sim::Terminal& terminal = *station.Add(setup);
    terminal.PowerOn(sim::Station::Now());
    Receive(terminal, Frame("Pumpe " + std::to_string(address + 1)));
  }
  sim::WallWindow window(station, kShownPort);
  window.Refresh();
  window.show();
  album_.Shoot(window, "simulator-wand");
}

}  // namespace kelvo
