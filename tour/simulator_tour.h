#pragma once

#include <QTemporaryDir>

#include "graphics/device_font.h"
#include "tour/album.h"

namespace kelvo {

/// The simulator's own windows: one Terminal, and a wall of them. They stand in this process, so
/// that they can be photographed; what the Terminals show they have received.
class SimulatorTour {
 public:
  SimulatorTour(const QString& programFolder, Album& album);
  void Run();

 private:
  void OneTerminal();
  void Wall();

  Album& album_;
  DeviceFonts fonts_;
  QTemporaryDir folder_;
};

}  // namespace kelvo
