#pragma once

#include <QWidget>
#include <cstdint>
#include <map>
#include <memory>
#include <string>
#include <vector>

#include "simulator/station.h"

class QGridLayout;
class QLabel;
class QPushButton;

namespace kelvo::sim {

class DisplayView;
class SimulatorWindow;

/// All Terminals of a station: a wall of displays. Each has a button that opens its own window.
class WallWindow : public QWidget {
  Q_OBJECT

 public:
  /// The station must outlive the window.
  WallWindow(Station& station, const std::string& portPath);
  ~WallWindow() override;
  /// Shows the Terminals as they are now.
  void Refresh();
  /// The window of one Terminal (from 0).
  SimulatorWindow& Open(std::size_t terminal);

 Q_SIGNALS:
  /// The operator has changed something at a Terminal.
  void Operated();

 private:
  struct Tile {
    DisplayView* display;
    QPushButton* caption;
    std::uint64_t revision = ~std::uint64_t{0};
    bool powered = false;
  };

  Tile MakeTile(std::size_t terminal, QGridLayout& grid, int columns);

  Station& station_;
  std::string portPath_;
  std::vector<Tile> tiles_;
  std::map<std::size_t, std::unique_ptr<SimulatorWindow>> windows_;
};

}  // namespace kelvo::sim
