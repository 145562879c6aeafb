#include "simulator/program.h"

#include <unistd.h>

#include <QCoreApplication>
#include <QSocketNotifier>
#include <array>
#include <chrono>
#include <cstdio>
#include <iostream>
#include <stdexcept>
#include <utility>

#include "simulator/console.h"
#include "simulator/files.h"
#include "simulator/wall_window.h"
#include "simulator/window.h"
#include "store/data_folder.h"

namespace kelvo::sim {
namespace {

using namespace std::chrono_literals;

constexpr auto kRefreshPause = 40ms;  // what happens within is shown at once
constexpr auto kSavePause = 200ms;

DeviceFonts LoadFonts() {
  DeviceFonts fonts;
  const std::string folder = kelvo::ProgramFolder() + "/fonts";
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

Program::Program(const Options& options, std::vector<TerminalOptions> terminals,
                 std::optional<ReplayPlan> replay, int signalHandle)
    : options_(options), terminals_(std::move(terminals)), replay_(std::move(replay)) {
  station_ = std::make_unique<Station>(options_.port, LoadFonts());
  station_->Wire().SetPaced(options_.paced);
  station_->Wire().SetEcho(options_.lineEcho);
  station_->Wire().SetTurnAround(std::chrono::milliseconds(options_.turnAround));
  station_->SetHostFrame(options_.hostBits, options_.hostParity);
  AddTerminals();
  if (!options_.recordFile.empty()) station_->Record(options_.recordFile);

  refresh_.setSingleShot(true);
  save_.setSingleShot(true);
  connect(&refresh_, &QTimer::timeout, this, &Program::Refresh);
  connect(&save_, &QTimer::timeout, this, &Program::SaveEeprom);
  signals_ = std::make_unique<QSocketNotifier>(signalHandle, QSocketNotifier::Read);
  connect(signals_.get(), &QSocketNotifier::activated, QCoreApplication::instance(),
          &QCoreApplication::quit);
  if (options_.commands) {
    input_ = std::make_unique<QSocketNotifier>(STDIN_FILENO, QSocketNotifier::Read);
    connect(input_.get(), &QSocketNotifier::activated, this, &Program::ReadCommands);
  }
}

void Program::AddTerminals() {
  for (const TerminalOptions& one : terminals_) {
    Terminal& terminal = *station_->Add(one.setup);
    terminal.SetP1(one.p1);
    if (!one.eepromFile.empty()) LoadEepromFile(one.eepromFile, terminal.Memory());
    savedRevisions_.push_back(terminal.Memory().Revision());
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
  // What is acknowledged lies in the file, even if the program is killed in the next moment.
  if (options_.replayFile.empty()) {
    station_->SetAnswerHandler([this](Bus& bus) { SaveChanged(bus); });
  }
  station_->With([](Bus& bus, Line&, Time now) {
    for (std::size_t i = 0; i < bus.Count(); ++i) bus.At(i).PowerOn(now);
  });
  if (!options_.displayPng.empty() && !WriteDisplayFile()) {
    displayFileFails_ = true;
    throw std::runtime_error(NotWritten(options_.displayPng));
  }
  if (replay_) {
    status_ = 1;
    station_->Play(*std::exchange(replay_, std::nullopt));
  }
  if (options_.atOnce) {
    station_->PlayAtOnce();
    OnActivity();
  } else {
    station_->Start();
  }
  if (options_.window) ShowWindow();
  Refresh();
  if (options_.unplugged) station_->Unplug();
  if (!options_.port.empty()) std::cout << options_.port << std::endl;
}

void Program::EndReplay() {
  const std::optional<ReplayReport> report = station_->Played();
  if (!report) return;
  replayed_ = true;
  status_ = report->differences.empty() ? 0 : 1;
  std::cout << ReplayText(*report) << std::flush;
  if (options_.window) return;
  // Behind the start, which this may be a part of.
  QTimer::singleShot(0, QCoreApplication::instance(), &QCoreApplication::quit);
}

void Program::ShowWindow() {
  const auto show = [this](auto window) {
    using Window = std::remove_pointer_t<decltype(window)>;
    window_.reset(window);
    refreshWindow_ = [window] { window->Refresh(); };
    connect(window, &Window::Operated, this, &Program::OnActivity);
    window->show();
  };
  if (terminals_.size() == 1) {
    show(new SimulatorWindow(*station_, options_.port, 0));
  } else {
    show(new WallWindow(*station_, options_.port));
  }
}

void Program::OnActivity() {
  if (!refresh_.isActive()) refresh_.start(kRefreshPause);
}

void Program::Refresh() {
  station_->Acknowledge();
  const bool changed = station_->With([this](Bus& bus, Line&, Time) {
    for (std::size_t i = 0; i < bus.Count(); ++i) {
      if (bus.At(i).Memory().Revision() != savedRevisions_[i]) return true;
    }
    return false;
  });
  if (changed && !save_.isActive()) save_.start(kSavePause);
  if (!options_.displayPng.empty()) {
    const bool failed = !WriteDisplayFile();
    const bool said = std::exchange(displayFileFails_, failed);
    if (failed && !said)
      std::cerr << "kelvo-simulator: " << NotWritten(options_.displayPng) << '\n';
  }
  if (refreshWindow_) refreshWindow_();
  if (!options_.replayFile.empty() && !replayed_) EndReplay();
}

// What a capture writes stays out of the files, so that it plays again in the same way.
void Program::SaveEeprom() {
  if (!options_.replayFile.empty()) return;
  station_->With([this](Bus& bus, Line&, Time) { SaveChanged(bus); });
}

void Program::SaveChanged(Bus& bus) {
  for (std::size_t i = 0; i < bus.Count(); ++i) {
    const Eeprom& memory = bus.At(i).Memory();
    if (memory.Revision() == savedRevisions_[i]) continue;
    savedRevisions_[i] = memory.Revision();
    const std::string& path = terminals_[i].eepromFile;
    if (path.empty() || ReplaceFile(path, memory.Save())) continue;
    std::cerr << "kelvo-simulator: kann " << path << " nicht schreiben\n";
  }
}

// A blinking cursor is shown, so that the picture depends on what was received alone.
std::vector<WallTile> Program::Wall() {
  return station_->With([](Bus& bus, Line&, Time) {
    std::vector<WallTile> wall;
    for (std::size_t i = 0; i < bus.Count(); ++i) {
      const Terminal& terminal = bus.At(i);
      wall.push_back({terminal.Display().Picture(true), terminal.Powered(),
                      "Adresse " + std::to_string(terminal.Setup().address)});
    }
    return wall;
  });
}

std::string Program::NotWritten(const std::string& path) {
  const auto folder = FolderReason(path);
  return "kann " + path + " nicht schreiben" + (folder ? ": " + *folder : "");
}

bool Program::WriteDisplayFile() {
  const std::vector<WallTile> wall = Wall();
  if (wall == written_) return true;
  const bool written = WriteWallPng(wall, station_->Fonts(), options_.displayPng);
  if (written) written_ = wall;
  return written;
}

bool Program::WritePng(const std::string& path, std::optional<std::size_t> terminal) {
  std::vector<WallTile> wall = Wall();
  if (terminal) wall = {wall[*terminal]};
  const bool written = WriteWallPng(wall, station_->Fonts(), path);
  if (!written) std::cerr << "kelvo-simulator: " << NotWritten(path) << '\n';
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
  const ConsoleActions actions{
      [this](const std::string& path, std::optional<std::size_t> terminal) {
        return WritePng(path, terminal);
      },
      [] { QCoreApplication::quit(); }};
  std::cout << RunConsoleLine(line, *station_, actions) << std::endl;
  OnActivity();
}

}  // namespace kelvo::sim
