#pragma once

#include <QTimer>
#include <QWidget>
#include <string>

#include "simulator/keypad_panel.h"
#include "simulator/memory_panel.h"
#include "simulator/settings_panel.h"
#include "simulator/station.h"

class QListView;
class QPushButton;
class QStringListModel;

namespace kelvo::sim {

class DisplayView;
class LineLabel;
class PortPanel;

/// One Terminal of a station, as one would have it on the desk.
class SimulatorWindow : public QWidget {
  Q_OBJECT

 public:
  /// The station must outlive the window.
  SimulatorWindow(Station& station, const std::string& portPath, std::size_t terminal);
  /// Shows the Terminal as it is now.
  void Refresh();

 Q_SIGNALS:
  /// The operator has changed something at the Terminal.
  void Operated();

 protected:
  void changeEvent(QEvent* event) override;
  void showEvent(QShowEvent* event) override;
  void hideEvent(QHideEvent* event) override;

 private:
  /// What the window shows, taken from the Terminal in one go.
  struct Snapshot {
    bool powered = false;
    PixelMap picture;
    bool blinks = false;
    int p0 = 0;
    int p1 = 0;
    std::optional<MemoryPanel::Contents> memory;  // nothing while it is as before
    KeypadPanel::Keys keys;
    SettingsPanel::Settings settings;
    std::uint64_t logCount = 0;
    QStringList log;  // empty while logCount is as before
  };

  QWidget* CreateLeft(const std::string& portPath);
  QWidget* CreateRight();
  QWidget* CreateSwitches();
  Snapshot Take();
  void ShowLog(const Snapshot& now);
  void RunBlinking(bool blinks);
  void SetPower(bool on);
  void PressKey(int row, int column);
  void Reset();
  void Apply(const SettingsPanel::Settings& settings);

  Station& station_;
  const std::size_t terminal_;  // its place on the line
  DisplayView* display_;
  LineLabel* line_;
  PortPanel* ports_;
  KeypadPanel* keypad_;
  SettingsPanel* settings_;
  QPushButton* power_;
  QPushButton* reset_;
  MemoryPanel* memory_;
  QListView* log_;
  QStringListModel* logModel_;
  std::uint64_t logCount_ = 0;
  QTimer blink_;
  bool lit_ = true;
};

}  // namespace kelvo::sim
