#pragma once

#include <QString>
#include <QStringList>

#include "tour/window_driver.h"

namespace kelvo {

/// Saves all that has crossed the line, as the operator does.
void SaveCapture(WindowDriver& driver, const QString& file);

struct PlayedCapture {
  int status = -1;  ///< what the simulator ended with; -1: it did not end by itself
  QString text;     ///< what it said
};
/// Lets the simulator of this folder play a capture, at once.
PlayedCapture PlayCapture(const QString& programFolder, const QString& file,
                          const QStringList& options = {});

}  // namespace kelvo
