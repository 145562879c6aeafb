#pragma once

#include <QString>
#include <QTemporaryDir>

#include "base/side_program.h"

namespace kelvo {

/// A process of its own, told from every other one even when its number is given anew.
class SideProcess : public SideProgram {
 public:
  /// `program`: its path, which need not be UTF-8.
  explicit SideProcess(std::string program) : program_(std::move(program)) {}
  ~SideProcess() override;
  SideProcess(const SideProcess&) = delete;
  SideProcess& operator=(const SideProcess&) = delete;

  std::string Start() override;
  bool Running() const override;
  std::string Said() const override { return Written("said"); }
  std::string Complained() const override { return Written("complained"); }
  void End() override;

 private:
  QString File(const char* name) const { return folder_.filePath(QString::fromLatin1(name)); }
  std::string Written(const char* name) const;
  QString Program() const;
  void Forget();

  const std::string program_;
  QTemporaryDir folder_;
  int handle_ = -1;  // of the process
};

}  // namespace kelvo
