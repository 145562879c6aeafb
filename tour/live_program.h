#pragma once

#include <QTemporaryDir>
#include <memory>

#include "shell/frmhaupt.h"
#include "shell/live_world.h"

namespace kelvo {

/// The program as `main` puts it together, with a fresh database in a temporary folder, so that an
/// operator's own stays as it is.
class LiveProgram {
 public:
  /// In a copy of the program's folder.
  LiveProgram(const QString& programFolder, const QString& deliveredDatabase);
  /// In an installed folder, as for an operator who may not write there and starts it for the
  /// first time: their data folder is in the temporary one. Says so to the simulator as well, by
  /// this process's environment.
  explicit LiveProgram(const QString& installedFolder);
  ~LiveProgram();

  /// The temporary folder.
  QString Folder() const { return folder_.path(); }
  /// Where the simulator is to be started.
  const QString& ProgramFolder() const { return programFolder_; }
  /// Builds and shows the main window; the port is opened at its first paint.
  frmhaupt& Start();
  QtSerialPort& Port() { return world_.com1; }
  QtEventLoop& Loop() { return world_.loop; }

 private:
  QTemporaryDir folder_;
  const QString programFolder_;
  LiveWorld world_;
  std::unique_ptr<frmhaupt> window_;
};

}  // namespace kelvo
