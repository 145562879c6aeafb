#pragma once

#include <functional>
#include <string>

#include "shell/outside.h"

namespace kelvo {

/// "Simulator starten": starts the simulated Terminal beside the program, unless one is there
/// already, and connects the program to it.
class SimulatorDesk {
 public:
  /// Opens the port behind which a device stands, and says what kept it from that.
  using Connect = std::function<bool(const std::string& device)>;
  SimulatorDesk(const Outside& outside, Connect connect)
      : outside_(outside), connect_(std::move(connect)) {}

  /// True when the program is connected to it afterwards; else the operator has been told why not.
  bool Start();
  /// Ends it if it is this program's own.
  void End();

 private:
  bool Launch(const std::string& device);
  void AwaitPort(const SideProgram& simulator);
  bool Refuse(const std::string& reason);

  const Outside& outside_;
  Connect connect_;
  bool starting_ = false;
};

}  // namespace kelvo
