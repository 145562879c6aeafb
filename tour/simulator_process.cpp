#include "tour/simulator_process.h"

#include <stdexcept>

namespace kelvo {
namespace {

// Generous: it bounds a failure, not the work.
constexpr int kLimitMilliseconds = 30000;

}  // namespace

SimulatorProcess::SimulatorProcess(const QString& programFolder, const QStringList& options) {
  process_.setProcessChannelMode(QProcess::ForwardedErrorChannel);
  process_.start(
      programFolder + QStringLiteral("/kelvo-simulator"),
      QStringList{QStringLiteral("--no-window"), QStringLiteral("--commands")} + options);
  if (ReadLine().isEmpty()) throw std::runtime_error("the simulator did not start");
}

SimulatorProcess::~SimulatorProcess() {
  process_.closeWriteChannel();
  process_.terminate();
  process_.waitForFinished(kLimitMilliseconds);
}

QString SimulatorProcess::ReadLine() {
  while (!process_.canReadLine()) {
    if (!process_.waitForReadyRead(kLimitMilliseconds)) return {};
  }
  return QString::fromUtf8(process_.readLine()).trimmed();
}

QString SimulatorProcess::Command(const QString& line) {
  process_.write(line.toUtf8() + '\n');
  const QString answer = ReadLine();
  if (!answer.startsWith(QStringLiteral("ok"))) {
    throw std::runtime_error("simulator: " + line.toStdString() + ": " + answer.toStdString());
  }
  return answer;
}

}  // namespace kelvo
