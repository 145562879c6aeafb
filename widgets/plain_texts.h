#pragma once

#include <QObject>

namespace kelvo {

/// As long as it lives, every label and tool tip of the program shows its text as it is. A name
/// from the database, a file or the line that looks like markup would otherwise be taken for it,
/// and could make the program open whatever it points at. A label with markup of its own says so
/// (`Qt::RichText`). Labels, titles, the status bar, lists and tables show all texts `Tamed`.
class PlainTexts : public QObject {
 public:
  PlainTexts();

 protected:
  bool eventFilter(QObject* watched, QEvent* event) override;
};

}  // namespace kelvo
