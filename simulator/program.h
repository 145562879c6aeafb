#pragma once

#include <QObject>
#include <QTimer>
#include <memory>
#include <optional>
#include <string>

#include "graphics/pixel_map.h"
#include "simulator/options.h"
#include "simulator/station.h"

class QSocketNotifier;

namespace kelvo::sim {

class SimulatorWindow;

/// The running program: the station, its files, and what the operator sees of it.
class Program : public QObject {
  Q_OBJECT

 public:
  /// The options' paths are complete; `signalHandle` becomes readable when the program is to end.
  /// Throws what Station throws.
  Program(const Options& options, int signalHandle);
  ~Program() override;

  /// Switches the Terminal on, says on standard output where the port is, and begins to serve it.
  void Start();

 private:
  void OnActivity();
  void Refresh();
  void SaveEeprom();
  void ReadCommands();
  void RunLine(const std::string& line);
  bool WritePng(const std::string& path);

  const Options options_;
  std::unique_ptr<Station> station_;
  std::unique_ptr<SimulatorWindow> window_;
  std::unique_ptr<QSocketNotifier> signals_;
  std::unique_ptr<QSocketNotifier> input_;
  std::string partialLine_;
  QTimer refresh_;
  QTimer save_;
  std::uint64_t savedRevision_ = 0;
  std::optional<PixelMap> writtenPicture_;
  bool writtenPowered_ = false;
};

}  // namespace kelvo::sim
