#include "tour/capture.h"

#include <QFile>
#include <QFileDialog>
#include <QProcess>

namespace kelvo {
namespace {

// Generous: it bounds a failure, not the work.
constexpr int kPlayMilliseconds = 120000;

}  // namespace

void SaveCapture(WindowDriver& driver, const QString& file) {
  QFile::remove(file);
  driver.Click(QStringLiteral("mnuAnsichtDatenverkehr"));
  driver.OnDialog([&file](QDialog& dialog) {
    dynamic_cast<QFileDialog&>(dialog).selectFile(file);
    dialog.accept();
  });
  driver.Click(QStringLiteral("cmdVerkehrSpeichern"));
  driver.Find(QStringLiteral("frmDatenverkehr")).close();
}

PlayedCapture PlayCapture(const QString& programFolder, const QString& file,
                          const QStringList& options) {
  QProcess simulator;
  simulator.setProcessChannelMode(QProcess::MergedChannels);
  simulator.start(
      programFolder + QStringLiteral("/kelvo-simulator"),
      QStringList{QStringLiteral("--fast"), QStringLiteral("--replay"), file} + options);
  if (!simulator.waitForFinished(kPlayMilliseconds)) return {};
  if (simulator.exitStatus() != QProcess::NormalExit) return {};
  return {simulator.exitCode(), QString::fromUtf8(simulator.readAll())};
}

}  // namespace kelvo
