#include "simulator/program.h"

#include <unistd.h>

#include <QCoreApplication>
#include <QSocketNotifier>
#include <array>
#include <chrono>
#include <cstdio>
#include <iostream>

#include "simulator/console.h"
#include "simulator/files.h"
#include "simulator/picture.h"
#include "simulator/window.h"

namespace kelvo::sim {
namespace {

using namespace std::chrono_literals;

constexpr auto kRefreshPause = 40ms;  // what happens within is shown at once
constexpr auto kSavePause = 200ms;

DeviceFonts LoadFonts() {
  DeviceFonts fonts;
  const std::string folder = ProgramFolder() + "/fonts";
  for (const int number : fonts.Load(folder)) {
    std::cerr << "kelvo-simulator: Schrift " << number << " fehlt in " << folder << '\n';
  }
  return fonts;
}

void LoadEepromFile(const std::string& path, Eeprom& eeprom) {
  if (LoadEeprom(path, eeprom) == EepromFile::Damaged) {
    std::cerr << "kelvo-simulator: " << path << " ist kein brauchbares EEPROM; es beginnt leer\n";
  }
}

}  // namespace

Program::Program(const Options& options, int signalHandle) : options_(options) {
  station_ = std::make_unique<Station>(options_.port, LoadFonts());
  station_->Wire().SetPaced(options_.paced);
  station_->Wire().SetEcho(options_.lineEcho);
  Terminal& terminal = *station_->Add(options_.terminal);
  terminal.SetP1(options_.p1);
  LoadEepromFile(options_.eepromFile, terminal.Memory());
  savedRevision_ = terminal.Memory().Revision();

  refresh_.setSingleShot(true);
  save_.setSingleShot(true);
  connect(&refresh_, &QTimer::timeout, this, &Program::Refresh);
  connect(&save_, &QTimer::timeout, this, &Program::SaveEeprom);
  signals_ = std::make_unique<QSocketNotifier>(signalHandle, QSocketNotifier::Read);
  connect(signals_.get(), &QSocketNotifier::activated, qApp, &QCoreApplication::quit);
  if (options_.commands) {
    input_ = std::make_unique<QSocketNotifier>(STDIN_FILENO, QSocketNotifier::Read);
    connect(input_.get(), &QSocketNotifier::activated, this, &Program::ReadCommands);
  }
}

Program::~Program() {
  Refresh();
  SaveEeprom();
  window_.reset();
}

void Program::Start() {
  station_->SetActivityHandler(
      [this] { QMetaObject::invokeMethod(this, &Program::OnActivity, Qt::QueuedConnection); });
  station_->With([](Bus& bus, Line&, Time now) { bus.At(0).PowerOn(now); });
  station_->Start();
  if (options_.window) {
    window_ = std::make_unique<SimulatorWindow>(*station_, options_.port);
    connect(window_.get(), &SimulatorWindow::Operated, this, &Program::OnActivity);
    window_->show();
  }
  Refresh();
  if (options_.unplugged) station_->Unplug();
  std::cout << options_.port << std::endl;
}

void Program::OnActivity() {
  if (!refresh_.isActive()) refresh_.start(kRefreshPause);
}

void Program::Refresh() {
  station_->Acknowledge();
  const std::uint64_t revision =
      station_->With([](Bus& bus, Line&, Time) { return bus.At(0).Memory().Revision(); });
  if (revision != savedRevision_ && !save_.isActive()) save_.start(kSavePause);
  if (!options_.displayPng.empty()) WritePng(options_.displayPng);
  if (window_) window_->Refresh();
}

void Program::SaveEeprom() {
  std::string file;
  const bool changed = station_->With([&](Bus& bus, Line&, Time) {
    const Eeprom& memory = bus.At(0).Memory();
    if (memory.Revision() == savedRevision_) return false;
    savedRevision_ = memory.Revision();
    file = memory.Save();
    return true;
  });
  if (changed && !ReplaceFile(options_.eepromFile, file)) {
    std::cerr << "kelvo-simulator: kann " << options_.eepromFile << " nicht schreiben\n";
  }
}

// A blinking cursor is shown, so that the picture depends on what was received alone.
bool Program::WritePng(const std::string& path) {
  PixelMap picture;
  const bool powered = station_->With([&picture](Bus& bus, Line&, Time) {
    picture = bus.At(0).Display().Picture(true);
    return bus.At(0).Powered();
  });
  const bool isDisplayFile = path == options_.displayPng;
  if (isDisplayFile && writtenPicture_ == picture && writtenPowered_ == powered) return true;
  const bool written = WriteLcdPng(picture, powered, path);
  if (!written) std::cerr << "kelvo-simulator: kann " << path << " nicht schreiben\n";
  if (isDisplayFile && written) {
    writtenPicture_ = picture;
    writtenPowered_ = powered;
  }
  return written;
}

void Program::ReadCommands() {
  std::array<char, 4096> buffer;
  const ssize_t count = read(STDIN_FILENO, buffer.data(), buffer.size());
  if (count <= 0) {
    input_->setEnabled(false);
    QCoreApplication::quit();
    return;
  }
  partialLine_.append(buffer.data(), static_cast<std::size_t>(count));
  for (std::size_t end; (end = partialLine_.find('\n')) != std::string::npos;) {
    const std::string line = partialLine_.substr(0, end);
    partialLine_.erase(0, end + 1);
    RunLine(line);
  }
}

void Program::RunLine(const std::string& line) {
  const ConsoleActions actions{[this](const std::string& path) { return WritePng(path); },
                               [] { QCoreApplication::quit(); }};
  std::cout << RunConsoleLine(line, *station_, actions) << std::endl;
  OnActivity();
}

}  // namespace kelvo::sim
