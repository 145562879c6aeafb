#include <poll.h>
#include <signal.h>
#include <sys/syscall.h>
#include <unistd.h>

#include <QFile>
#include <QFileInfo>
#include <QProcess>
#include <cerrno>
#include <cstring>
#include <filesystem>

#include "adapters/side_process.h"

namespace kelvo {

SideProcess::~SideProcess() { Forget(); }

std::string SideProcess::Start() {
  const QString program = Program();
  if (!QFileInfo::exists(program)) return "Die Datei fehlt.";
  Forget();
  QProcess process;
  process.setProgram(program);
  // The files are its own from then on: it can go on writing when this program has ended.
  process.setStandardInputFile(QProcess::nullDevice());
  process.setStandardOutputFile(File("said"));
  process.setStandardErrorFile(File("complained"));
  qint64 number = 0;
  if (!process.startDetached(&number)) return process.errorString().toStdString();
  handle_ = static_cast<int>(syscall(SYS_pidfd_open, static_cast<pid_t>(number), 0));
  return handle_ < 0 && errno != ESRCH ? std::strerror(errno) : std::string();
}

// Where its name is no text there is a link to it that has one.
QString SideProcess::Program() const {
  const QString name = QString::fromStdString(program_);
  if (name.toStdString() == program_) return name;
  std::error_code there;
  std::filesystem::create_symlink(program_, File("program").toStdString(), there);
  return File("program");
}

bool SideProcess::Running() const {
  pollfd entry{handle_, POLLIN, 0};
  return handle_ >= 0 && poll(&entry, 1, 0) == 0;
}

void SideProcess::End() {
  if (Running()) syscall(SYS_pidfd_send_signal, handle_, SIGTERM, nullptr, 0);
}

std::string SideProcess::Written(const char* name) const {
  QFile file(File(name));
  return file.open(QIODevice::ReadOnly) ? file.readAll().toStdString() : std::string();
}

void SideProcess::Forget() {
  if (handle_ >= 0) close(handle_);
  handle_ = -1;
  for (const char* name : {"said", "complained"}) QFile::remove(File(name));
}

}  // namespace kelvo
