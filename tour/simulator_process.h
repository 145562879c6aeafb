#pragma once

#include <QProcess>
#include <QString>
#include <QStringList>

namespace kelvo {

/// The real simulator, without a window, driven by lines on its standard input.
class SimulatorProcess {
 public:
  /// Starts `programFolder`/kelvo-simulator and waits until its port is there. Throws
  /// std::runtime_error when it does not come up.
  explicit SimulatorProcess(const QString& programFolder, const QStringList& options = {});
  ~SimulatorProcess();
  SimulatorProcess(const SimulatorProcess&) = delete;
  SimulatorProcess& operator=(const SimulatorProcess&) = delete;

  /// Sends one line and returns the answer; throws when that is not "ok …".
  QString Command(const QString& line);
  /// Saves the Terminal's display.
  void Picture(const QString& file) { Command(QStringLiteral("png ") + file); }

 private:
  QString ReadLine();

  QProcess process_;
};

}  // namespace kelvo
