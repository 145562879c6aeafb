#pragma once

#include <QLabel>
#include <string>

#include "simulator/station.h"

namespace kelvo::sim {

/// Says who is at the other end of the line: the port's path, or a capture and how it went.
class LineLabel : public QLabel {
  Q_OBJECT

 public:
  /// The station must outlive it. No path: a capture is played.
  LineLabel(Station& station, const std::string& portPath);
  void Refresh();

 private:
  Station& station_;
  bool final_;  // nothing will change any more
};

}  // namespace kelvo::sim
