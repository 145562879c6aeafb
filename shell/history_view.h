#pragma once

#include <QWidget>

#include "link/chronicle.h"

class QListWidget;

namespace kelvo {

/// The window "Verlauf": what has been done lately and what came of it, with its times.
class HistoryView : public QWidget {
  Q_OBJECT

 public:
  HistoryView(const Chronicle& chronicle, QWidget* parent);

  /// A line has been added.
  void Refresh();
  void Present();

 private:
  const Chronicle& chronicle_;
  QListWidget* ctlVerlauf;
};

/// "✓ Makro 5 gelöscht, bestätigt": the sign tells a failure without colour.
QString HistoryWords(const Chronicle::Line& line);

}  // namespace kelvo
