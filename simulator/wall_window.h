#pragma once

#include <QWidget>
#include <cstdint>
#include <map>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "simulator/station.h"

class QGridLayout;
class QLabel;
class QPushButton;
class QScrollArea;

namespace kelvo::sim {

class DisplayView;
class LineLabel;
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

  bool eventFilter(QObject* watched, QEvent* event) override;

 Q_SIGNALS:
  /// The operator has changed something at a Terminal.
  void Operated();

 private:
  struct Tile {
    DisplayView* display;
    QPushButton* caption;
    std::optional<std::uint64_t> revision{};  // of what it shows
    bool powered = false;
  };
  /// What there is to be shown of a Terminal.
  struct Seen {
    TerminalSetup setup;
    std::uint64_t revision;
    bool powered;
  };

  Tile MakeTile(std::size_t terminal);
  void Arrange();
  void ShowDisplay(std::size_t terminal, const Seen& seen);

  Station& station_;
  std::string portPath_;
  LineLabel* line_;
  std::vector<Tile> tiles_;
  QScrollArea* area_ = nullptr;
  QGridLayout* grid_ = nullptr;
  int columns_ = 0;
  std::map<std::size_t, std::unique_ptr<SimulatorWindow>> windows_;
};

}  // namespace kelvo::sim
