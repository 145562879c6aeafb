#pragma once

#include <QWidget>
#include <string>

#include "simulator/station.h"

namespace kelvo::sim {

/// The Terminal as one would have it on the desk.
class SimulatorWindow : public QWidget {
  Q_OBJECT

 public:
  SimulatorWindow(Station& station, const std::string& portPath);
  /// Shows the Terminal as it is now.
  void Refresh();

 Q_SIGNALS:
  /// The operator has changed something at the Terminal.
  void Operated();

 private:
  Station& station_;
};

}  // namespace kelvo::sim
