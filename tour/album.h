#pragma once

#include <QString>
#include <QWidget>
#include <cstdio>

#include "tour/window_driver.h"

namespace kelvo {

/// The pictures of a tour, numbered by its steps, and what is said to them.
class Album {
 public:
  explicit Album(QString folder) : folder_(std::move(folder)) {}

  const QString& Folder() const { return folder_; }
  void Step(const char* text) { std::printf("%2d  %s\n", ++step_, text); }
  /// The file of the present step's picture; says where it is.
  QString File(const char* name) const {
    const QString file = QStringLiteral("%1/%2-%3.png")
                             .arg(folder_)
                             .arg(step_, 2, 10, QLatin1Char('0'))
                             .arg(QString::fromUtf8(name));
    std::printf("      %s\n", file.toUtf8().constData());
    return file;
  }
  void Shoot(QWidget& window, const char* name) const { WindowDriver::Picture(window, File(name)); }

 private:
  QString folder_;
  int step_ = 0;
};

}  // namespace kelvo
