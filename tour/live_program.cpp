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
}

LiveProgram::~LiveProgram() { world_.loop.Close(); }

frmhaupt& LiveProgram::Start() {
  const std::string program = programFolder_.toStdString();
  window_ = world_.MakeMainWindow({.program = program, .data = DataFolder(program)});
  // The off-screen display is smaller than those that people have.
  window_->resize(1024, 768);
  window_->show();
  return *window_;
}

}  // namespace kelvo
