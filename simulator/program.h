#pragma once

#include <QObject>
#include <QTimer>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "simulator/options.h"
#include "simulator/picture.h"
#include "simulator/station.h"

class QSocketNotifier;
class QWidget;

namespace kelvo::sim {

/// The running program: the station, its Terminals' files, and what the operator sees of it.
class Program : public QObject {
  Q_OBJECT

 public:
  /// The options' paths are complete; `signalHandle` becomes readable when the program is to end.
  /// Throws what Station throws.
  Program(const Options& options, std::vector<TerminalOptions> terminals,
          std::optional<ReplayPlan> replay, int signalHandle);
  ~Program() override;

  /// Switches the Terminal on, says on standard output where the port is, and begins to serve it.
  void Start();
  /// What the program ends with: 0, or 1 when a capture that was played was answered differently or
  /// has not come to its end.
  int Status() const { return status_; }

 private:
  void AddTerminals();
  void EndReplay();
  void ShowWindow();
  void OnActivity();
  void Refresh();
  void SaveEeprom();
  /// The bus is locked.
  void SaveChanged(Bus& bus);
  void ReadCommands();
  void RunLine(const std::string& line);
  bool WritePng(const std::string& path, std::optional<std::size_t> terminal);
  bool WriteDisplayFile();
  /// Why a picture could not be written to that path, German.
  static std::string NotWritten(const std::string& path);
  std::vector<WallTile> Wall();

  const Options options_;
  const std::vector<TerminalOptions> terminals_;
  std::optional<ReplayPlan> replay_;  // to be played
  bool replayed_ = false;
  int status_ = 0;
  std::unique_ptr<Station> station_;
  std::unique_ptr<QWidget> window_;
  std::function<void()> refreshWindow_;
  std::unique_ptr<QSocketNotifier> signals_;
  std::unique_ptr<QSocketNotifier> input_;
  std::string partialLine_;
  QTimer refresh_;
  QTimer save_;
  std::vector<std::uint64_t> savedRevisions_;  // of each Terminal's EEPROM
  std::vector<WallTile> written_;
  bool displayFileFails_ = false;  // which has been said
};

}  // namespace kelvo::sim
