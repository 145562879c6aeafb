#pragma once

#include <memory>

#include "adapters/qt_serial_port.h"
#include "adapters/side_process.h"
#include "adapters/window_loop.h"
#include "link/link_world.h"
#include "shell/outside.h"
#include "shell/qt_operator.h"

namespace kelvo {

class frmhaupt;

/// The real world outside, through the toolkit.
struct LiveWorld : LinkWorld<WindowLoop, QtTimer, QtSerialPort> {
  QtOperator person{loop};
  std::unique_ptr<SideProcess> simulator;

  /// Builds the main window over it; its closing ends every wait. Takes the delivered database at
  /// the first start, and only shows it where it cannot be copied. Throws std::exception with a
  /// German text when the database cannot be used.
  std::unique_ptr<frmhaupt> MakeMainWindow(Folders folders);
};

}  // namespace kelvo
