#include "tour/live_program.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <stdexcept>

#include "store/data_folder.h"

namespace kelvo {
namespace {

void Copy(const QString& from, const QString& to) {
  if (!QFile::copy(from, to)) throw std::runtime_error("cannot copy " + from.toStdString());
}

}  // namespace

LiveProgram::LiveProgram(const QString& programFolder, const QString& deliveredDatabase)
    : programFolder_(folder_.path()) {
  const QString target = folder_.path() + u'/';
  QDir().mkpath(target + QStringLiteral("fonts"));
  for (const QFileInfo& font :
       QDir(programFolder + QStringLiteral("/fonts")).entryInfoList(QDir::Files)) {
    Copy(font.filePath(), target + QStringLiteral("fonts/") + font.fileName());
  }
  Copy(programFolder + QStringLiteral("/kelvo-simulator"),
       target + QStringLiteral("kelvo-simulator"));
  const QString manual = QStringLiteral("/kelvo.hlp");
  if (QFile::exists(programFolder + manual)) Copy(programFolder + manual, folder_.path() + manual);
  Copy(deliveredDatabase, target + QStringLiteral("kelvo.mdb"));
}

LiveProgram::LiveProgram(const QString& installedFolder) : programFolder_(installedFolder) {
  qputenv("XDG_DATA_HOME", folder_.path().toUtf8());
  const std::string program = programFolder_.toStdString();
  if (DataFolder(program) == program) {
    throw std::runtime_error("not an installed program, its data would lie beside it: " + program);
  }
  TakeDeliveredDatabase(program, DataFolder(program));
}

LiveProgram::~LiveProgram() { loop_.Close(); }

frmhaupt& LiveProgram::Start() {
  const std::string program = programFolder_.toStdString();
  window_ = std::make_unique<frmhaupt>(Outside{
      com1_, loop_, tmrTimeout_, tmrRS485_, tmrSofort_, person_, program, DataFolder(program),
      MachinePorts, DescribeDevice,
      [this](std::function<std::string(int)> deviceOf) { com1_.SetDevices(std::move(deviceOf)); }});
  person_.SetWindow(window_.get());
  QObject::connect(window_.get(), &frmhaupt::Unloaded, window_.get(), [this] { loop_.Close(); });
  window_->show();
  return *window_;
}

}  // namespace kelvo
