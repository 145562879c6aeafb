#include "simulator/window.h"

namespace kelvo::sim {

SimulatorWindow::SimulatorWindow(Station& station, const std::string&) : station_(station) {}

void SimulatorWindow::Refresh() {}

}  // namespace kelvo::sim
