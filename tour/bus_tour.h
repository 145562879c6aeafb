#pragma once

#include "tour/album.h"
#include "tour/live_program.h"
#include "tour/simulator_process.h"

namespace kelvo {

/// Several Terminals on one line: they are searched, stored, and sent a drawing.
class BusTour {
 public:
  /// Writes the description of the line into `folder` and returns the simulator's options for it.
  static QStringList DescribeLine(const QString& folder);

  BusTour(LiveProgram& program, SimulatorProcess& simulator, Album& album);
  void Run();

 private:
  void Search();
  void Draw();
  void Send();
  void Select(int address);
  void Equip();
  /// Clicks what opens a dialog that stays.
  void Open(const char* button);
  void WriteToMany();
  void Compare();

  SimulatorProcess& simulator_;
  Album& album_;
  frmhaupt& window_;
  WindowDriver driver_;
};

}  // namespace kelvo
