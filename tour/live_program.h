#pragma once

#include <QTemporaryDir>
#include <memory>

#include "shell/frmhaupt.h"
#include "shell/machine_ports.h"
#include "shell/qt_event_loop.h"
#include "shell/qt_operator.h"
#include "shell/qt_serial_port.h"

namespace kelvo {

/// The program as `main` puts it together, in a copy of the program's folder, so that an
/// operator's own database stays as it is.
class LiveProgram {
 public:
  /// Copies the folder with a fresh database.
  LiveProgram(const QString& programFolder, const QString& deliveredDatabase);
  ~LiveProgram();

  QString Folder() const { return folder_.path(); }
  /// Builds and shows the main window; the port is opened at its first paint.
  frmhaupt& Start();
  QtSerialPort& Port() { return com1_; }
  QtEventLoop& Loop() { return loop_; }

 private:
  QTemporaryDir folder_;
  QtEventLoop loop_;
  QtTimer tmrTimeout_{loop_, std::chrono::milliseconds(2000), false};
  QtTimer tmrRS485_{loop_, std::chrono::milliseconds(300), true, QtTimer::Ticks::OnDemand};
  QtTimer tmrSofort_{loop_, std::chrono::milliseconds(500), false};
  QtSerialPort com1_{loop_};
  QtOperator person_{loop_};
  std::unique_ptr<frmhaupt> window_;
};

}  // namespace kelvo
